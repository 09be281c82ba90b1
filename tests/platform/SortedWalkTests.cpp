#include <filesystem>
#include <set>

#include "Platform/posix/SortedNames.h"
#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/VolumeTraits.h"

namespace quarn::contract {
namespace {

using List = std::vector<std::string>;

/// What a walk in path order shows beside every promise of a walk, of which `WalkTests` asks it as well.
class SortedWalk : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, SortedWalk, testing::ValuesIn(fileSystemsThatWalkTheDisk()),
                         nameOf<Subject<FileSystem>>);

class Collector : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    order.emplace_back(item.relativePath());
    return order.back() == skipped ? WalkStep::skipDescendants : WalkStep::proceed;
  }
  WalkStep failed(const Path& item, const PlatformError& error) override {
    order.push_back(item.lastComponent() + ": " + std::to_string(error.code));
    return WalkStep::proceed;
  }

  List order;
  std::string skipped;
};

List walked(const FileSystem& files, const Path& root, Hidden hidden = Hidden::included) {
  Collector collector;
  files.walkSorted(root, hidden, collector);
  return collector.order;
}

/// "/" counts as lower than every byte that a name can hold.
const List namesAroundTheSlash = {"Foo",       "Foo/ x", "Foo/Foo", "Foo/x", "Foo bar",
                                  "Foo bar/x", "Foo!",   "Foo-",    "Foo-x", "Foo.app",
                                  "Foo0",      "FooA",   "Foob",    "Foo~",  "Foo\xC3\xA9"};

TEST_P(SortedWalk, followsEachFolderDirectlyByItsContents) {
  const ScratchFolder scratch;
  for (auto name = namesAroundTheSlash.rbegin(); name != namesAroundTheSlash.rend(); ++name) {
    if (*name == "Foo" || *name == "Foo bar")
      scratch.folder(*name);
    else
      scratch.write(*name);
  }
  EXPECT_EQ(walked(files(), scratch.path()), namesAroundTheSlash);
}

TEST_P(SortedWalk, goesByTheBytesOfNamesAndNotByLetters) {
  const ScratchFolder scratch;
  List names = {"10", "2", "A", "C", "_", "b", "d", "\xE6\x97\xA5"};
  if (traitsOf(scratch).anyBytes) names.emplace_back("\xFF\xFE");
  for (auto name = names.rbegin(); name != names.rend(); ++name) scratch.write(*name);
  EXPECT_EQ(walked(files(), scratch.path()), names);
}

TEST_P(SortedWalk, sortsAFolderOfManyNames) {
  const ScratchFolder scratch;
  std::set<std::string> names;
  // More than one call of the system returns.
  for (int number = 0; number < 5'000; ++number) {
    names.insert(std::to_string(number) + std::string(40, 'x'));
    scratch.write(std::to_string(number) + std::string(40, 'x'));
  }
  EXPECT_EQ(walked(files(), scratch.path()), List(names.begin(), names.end()));
}

TEST_P(SortedWalk, showsTheSiblingsAfterEverythingBelow) {
  const ScratchFolder scratch;
  scratch.write("a/a/x");
  scratch.write("a/b");
  scratch.write("b");
  makeDeepTree(scratch.at("a/a"), 40);
  List expected = {"a", "a/a"};
  std::string path = "a/a";
  for (int depth = 0; depth < 40; ++depth) expected.push_back(path += "/d");
  for (int depth = 0; depth < 40; ++depth) {
    expected.push_back(path + "/f");
    path.resize(path.size() - 2);
  }
  expected.insert(expected.end(), {"a/a/x", "a/b", "b"});
  EXPECT_EQ(walked(files(), scratch.path()), expected);
}

TEST_P(SortedWalk, skipsAFolderOrWhatIsHiddenAndKeepsTheOrder) {
  const ScratchFolder scratch;
  for (const char* name : {"a/x", "b/y", "c", ".d/z"}) scratch.write(name);
  Collector collector;
  collector.skipped = "a";
  files().walkSorted(scratch.path(), Hidden::skipped, collector);
  EXPECT_EQ(collector.order, (List{"a", "b", "b/y", "c"}));
}

TEST_P(SortedWalk, tellsOfAFolderThatMayNotBeReadInItsPlace) {
  const ScratchFolder scratch;
  for (const char* name : {"a", "closed/x", "z"}) scratch.write(name);
  ::chmod(scratch.at("closed").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              EXPECT_EQ(walked(files(), scratch.path()), (List{"a", "closed", "closed: 257", "z"}));
            }),
            "");
}

TEST_P(SortedWalk, leavesOutTheRestOfAFolderThatIsLostMeanwhile) {
  const ScratchFolder scratch;
  scratch.folder("root");
  makeDeepTree(scratch.at("root"), 40);
  struct Mover : Collector {
    explicit Mover(const ScratchFolder& folder) : scratch(folder) {}
    WalkStep visit(const WalkItem& item) override {
      // So deep that the third folder has been closed. Neither the way up nor the way down leads to it now.
      if (!scratch.stands("third") && item.relativePath().size() > 2 * 35) {
        std::filesystem::rename(scratch.at("root/d/d/d/d"), scratch.at("fourth"));
        std::filesystem::rename(scratch.at("root/d/d/d"), scratch.at("third"));
      }
      return Collector::visit(item);
    }
    const ScratchFolder& scratch;
  } mover(scratch);
  files().walkSorted(scratch / "root", Hidden::included, mover);
  ASSERT_GT(mover.order.size(), 3u);
  EXPECT_EQ(List(mover.order.end() - 4, mover.order.end()), (List{"d/d/d/d/f", "d: 260", "d/d/f", "d/f"}));
}

TEST(FakeTreeInOrder, showsItsListInPathOrder) {
  doubles::FakeTree tree(hostPlatform().files);
  for (auto name = namesAroundTheSlash.rbegin(); name != namesAroundTheSlash.rend(); ++name)
    tree.items.push_back(doubles::FakeTree::file(*name, 0));
  EXPECT_EQ(walked(tree, Path("/anywhere")), namesAroundTheSlash);
}

List takenFrom(SortedNames& names) {
  List taken;
  while (const auto entry = names.take()) taken.emplace_back(entry->name);
  return taken;
}

TEST(SortedNames, keepANameThatWasReadTwiceOnce) {
  SortedNames names;
  names.beginLevel();
  for (const char* name : {"b", "a", "b", "aa", "a"}) names.add({name, FileKind::regular});
  names.sortLevel();
  EXPECT_EQ(takenFrom(names), (List{"a", "aa", "b"}));
}

TEST(SortedNames, ofAFolderWaitForThoseOfItsChild) {
  SortedNames names;
  names.beginLevel();
  names.add({"a", FileKind::folder});
  names.add({"b", std::nullopt});
  names.sortLevel();
  EXPECT_STREQ(names.take()->name, "a");
  names.beginLevel();
  names.add({"x", FileKind::regular});
  names.sortLevel();
  EXPECT_EQ(takenFrom(names), List{"x"});
  names.beginLevel();
  names.sortLevel();
  EXPECT_EQ(takenFrom(names), List{});
  const auto last = names.take();
  EXPECT_STREQ(last->name, "b");
  EXPECT_FALSE(last->kind);
  EXPECT_EQ(takenFrom(names), List{});
}

}  // namespace
}  // namespace quarn::contract
