#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sys/stat.h>
#include <utility>

#include "QuarnCore/installer/Snapshotter.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/FakeTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

using List = std::vector<std::string>;

FileSnapshot captured(const List& roots, const Platform& platform = hostPlatform()) {
  std::vector<Path> paths;
  for (const std::string& root : roots) paths.emplace_back(root);
  return Snapshotter::capture(platform, paths);
}

List listed(const FileSnapshot& snapshot) {
  List list;
  for (PathSet::Cursor at(snapshot.paths); at.next();) list.emplace_back(at.path());
  EXPECT_EQ(snapshot.count(), list.size());
  return list;
}

List pathsOf(const List& roots) {
  return listed(captured(roots));
}

TEST(SnapshotRoots, areTheFoldersThatPackagesWriteTo) {
  const doubles::FakePlaces places(Path("/Users/other"));
  const std::vector<Path> expected = {Path("/Applications"),
                                      Path("/Users/other/Applications"),
                                      Path("/Library/Application Support"),
                                      Path("/Library/LaunchAgents"),
                                      Path("/Library/LaunchDaemons"),
                                      Path("/Library/PrivilegedHelperTools"),
                                      Path("/Users/other/Library/Application Support"),
                                      Path("/Users/other/Library/LaunchAgents")};
  EXPECT_EQ(Snapshotter::defaultRoots(places), expected);
}

TEST(Snapshots, holdTheRootAndEverythingBelowItInsideBundlesToo) {
  scene::makeFolder("/Applications/Empty");
  scene::write("/Applications/Foo.app/Contents/PlugIns/Bar.bundle/Contents/x", "");
  EXPECT_EQ(
      pathsOf({"/Applications"}),
      (List{"/Applications", "/Applications/Empty", "/Applications/Foo.app", "/Applications/Foo.app/Contents",
            "/Applications/Foo.app/Contents/PlugIns", "/Applications/Foo.app/Contents/PlugIns/Bar.bundle",
            "/Applications/Foo.app/Contents/PlugIns/Bar.bundle/Contents",
            "/Applications/Foo.app/Contents/PlugIns/Bar.bundle/Contents/x", "/Applications/Utilities"}));
}

TEST(Snapshots, leaveOutHiddenItemsAndAllBelowThem) {
  const ScratchFolder scratch;
  scratch.write(".hidden/inside");
  scratch.write("seen/.DS_Store");
  scratch.write("seen/..odd");
  EXPECT_EQ(pathsOf({scratch.text()}), (List{scratch.text(), scratch.at("seen")}));
  EXPECT_EQ(pathsOf({scratch.at(".hidden")}), (List{scratch.at(".hidden"), scratch.at(".hidden/inside")}))
      << "a root is looked at whatever its name";
}

TEST(Snapshots, followNoLinks) {
  const ScratchFolder scratch;
  scratch.write("elsewhere/secret");
  scratch.folder("root");
  scratch.link("root/loop", ".");
  scratch.link("root/out", "../elsewhere");
  scratch.link("root/dangling", "nothing");
  EXPECT_EQ(pathsOf({scratch.at("root")}), (List{scratch.at("root"), scratch.at("root/dangling"),
                                                 scratch.at("root/loop"), scratch.at("root/out")}));
}

TEST(Snapshots, holdOfARootThatIsNoFolderOnlyItself) {
  const ScratchFolder scratch;
  scratch.write("folder/inside");
  scratch.write("file");
  scratch.link("link", "folder");
  scratch.link("to file", "file");
  for (const char* name : {"file", "link", "to file"})
    EXPECT_EQ(pathsOf({scratch.at(name)}), List{scratch.at(name)});
}

TEST(Snapshots, ofNothingThatExistsAreEmpty) {
  const ScratchFolder scratch;
  scratch.link("dangling", "nothing");
  scratch.write("file");
  EXPECT_EQ(captured({}), FileSnapshot());
  EXPECT_EQ(captured({scratch.at("missing"), scratch.at("dangling"), scratch.at("file/x"), "",
                      scratch.at("missing/../file")}),
            FileSnapshot());
}

TEST(Snapshots, standardizeTheirRoots) {
  const ScratchFolder scratch;
  scratch.write("a/x");
  scratch.folder("b");
  scratch.link("link", "a");
  const List expected = {scratch.at("a"), scratch.at("a/x")};
  for (const char* root : {"a/", "./a", "b/../a", "/a//", "b/../link/../a"})
    EXPECT_EQ(pathsOf({scratch.at(root)}), expected) << root;
}

TEST(Snapshots, countOnceWhatSeveralRootsHold) {
  const ScratchFolder scratch;
  for (const char* name : {"a/b/c/d", "a/.hidden/e", "a/b c/f", "a b/g"}) scratch.write(name);
  scratch.link("a/b/link", "../.hidden");
  const auto at = [&scratch](const char* name) { return scratch.at(name); };
  const List everything = {at("a"),     at("a/.hidden"), at("a/.hidden/e"), at("a/b"),
                           at("a/b/c"), at("a/b/c/d"),   at("a/b/link"),    at("a/b/link/e"),
                           at("a/b c"), at("a/b c/f"),   at("a b"),         at("a b/g")};
  List roots = {at("a"),         at("a/b"),        at("a/b/c"), at("a/b"),
                at("a/.hidden"), at("a/b/link/e"), at("a b"),   at("a")};
  std::mt19937 random(3);
  for (int round = 0; round < 20; ++round) {
    std::shuffle(roots.begin(), roots.end(), random);
    EXPECT_EQ(pathsOf(roots), everything);
  }
}

TEST(Snapshots, ofTheRootOfTheDiskHaveNoDoubledSlash) {
  doubles::FakeTree tree(hostPlatform().files);
  tree.items = {doubles::FakeTree::folder("a", {}), doubles::FakeTree::file("a/b", 0)};
  EXPECT_EQ(listed(captured({"/"}, replacing({.files = &tree}))), (List{"/", "/a", "/a/b"}));
}

TEST(Snapshots, lookIntoWhatIsMountedInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "drives are no mounts in this room";
  scene::write(scene::drive + "/on the drive", "");
  const List found = pathsOf({"/Volumes"});
  EXPECT_EQ(std::count(found.begin(), found.end(), scene::drive + "/on the drive"), 1);
}

/// Everything below a root as another walk finds it.
std::set<std::string> seenBelow(const std::string& root) {
  std::set<std::string> seen = {root};
  if (fs::is_symlink(root) || !fs::is_directory(root)) return seen;
  for (const auto& item : fs::directory_iterator(root)) {
    if (!item.path().filename().string().starts_with(".")) seen.merge(seenBelow(item.path().string()));
  }
  return seen;
}

List hostileNames() {
  return {"Foo",        "Foo bar", "Foo-",      "Foo.app",   "Foo!",
          "line\nfeed", "\n",      "tab\there", "\xFF\xFE",  "caf\xC3\xA9",
          " ",          "-",       "*",         ".hidden",   "..x",
          "\x01",       "\x7F",    "a\\b",      "\"'$(id)`", std::string(scene::longestName(), 'n')};
}

void grow(const std::string& folder, std::mt19937& random, int depth) {
  for (const std::string& name : hostileNames()) {
    const std::string item = folder + "/" + name;
    switch (random() % 9) {
      case 0:
        std::ofstream(item) << "x";
        break;
      case 1:
        fs::create_symlink(random() % 2 ? "." : "nothing", item);
        break;
      case 2:
        ::mkfifo(item.c_str(), 0600);
        break;
      case 3:
      case 4:
        fs::create_directory(item);
        if (depth > 0) grow(item, random, depth - 1);
        break;
      default:
        break;
    }
  }
}

TEST(Snapshots, holdWhatASetOfTextsWouldHoldAndDifferAsItWould) {
  std::mt19937 random(5);
  std::set<std::string> before;
  FileSnapshot snapshotBefore;
  std::size_t differences = 0;
  for (int round = 0; round < 25; ++round) {
    scene::shell("rm -rf /Users/me/tree && mkdir /Users/me/tree");
    grow("/Users/me/tree", random, 3);
    const std::set<std::string> after = seenBelow("/Users/me/tree");
    const FileSnapshot snapshotAfter = captured({"/Users/me/tree"});
    const List found = listed(snapshotAfter);
    ASSERT_EQ(std::set<std::string>(found.begin(), found.end()), after);
    List added;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(added));
    ASSERT_EQ(Snapshotter::added(snapshotBefore, snapshotAfter), added);
    differences += added.size();
    before = after;
    snapshotBefore = snapshotAfter;
  }
  EXPECT_GT(differences, 1'000u);
}

TEST(AddedPaths, areSortedByteByByte) {
  const ScratchFolder scratch;
  const FileSnapshot before = captured({scratch.text()});
  for (const char* name : {"Foo/x", "Foo bar", "Foo.app", "foo", "\xC3\xA9"}) scratch.write(name);
  EXPECT_EQ(Snapshotter::added(before, captured({scratch.text()})),
            (List{scratch.at("Foo"), scratch.at("Foo bar"), scratch.at("Foo.app"), scratch.at("Foo/x"),
                  scratch.at("foo"), scratch.at("\xC3\xA9")}))
      << "a space and a dot come before the slash";
}

TEST(AddedPaths, areOnlyThoseThatAppeared) {
  const ScratchFolder scratch;
  for (const char* name : {"changed", "gone/x", "kind"}) scratch.write(name);
  const FileSnapshot before = captured({scratch.text()});
  fs::remove_all(scratch.at("gone"));
  fs::remove(scratch.at("kind"));
  scratch.folder("kind");
  scratch.write("changed", "other content");
  scratch.write("new");
  EXPECT_EQ(Snapshotter::added(before, captured({scratch.text()})), List{scratch.at("new")});
  EXPECT_EQ(Snapshotter::added(before, before), List{});
  EXPECT_EQ(Snapshotter::added(before, FileSnapshot()), List{});
}

/// An error that ends a root, and what must not follow from that.
struct EndedRoot : testing::Test {
  ScratchFolder scratch;
  EndedRoot() {
    for (const char* name : {"root/a", "root/closed/x", "root/z/y", "other/b"}) scratch.write(name);
    ::chmod(scratch.at("root/closed").c_str(), 0);
    ::chmod(scratch.text().c_str(), 0755);
  }
  List roots() const { return {scratch.at("root"), scratch.at("other")}; }
};

TEST_F(EndedRoot, aFolderThatMayNotBeReadEndsItsRootAndNoOther) {
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const FileSnapshot snapshot = captured(roots());
              EXPECT_EQ(listed(snapshot),
                        (List{scratch.at("other"), scratch.at("other/b"), scratch.at("root"),
                              scratch.at("root/a"), scratch.at("root/closed")}));
              EXPECT_TRUE(snapshot.knows(scratch.at("root/b")));
              EXPECT_FALSE(snapshot.knows(scratch.at("root/closed/x")));
              EXPECT_FALSE(snapshot.knows(scratch.at("root/z")));
              EXPECT_TRUE(snapshot.knows(scratch.at("root z")));
            }),
            "");
}

TEST_F(EndedRoot, whatWasUnseenBeforeIsNotTakenForAdded) {
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const FileSnapshot before = captured(roots());
              ::chmod(scratch.at("root/closed").c_str(), 0755);
              for (const char* name : {"root/0", "root/zz", "other/new"}) scratch.write(name);
              EXPECT_EQ(Snapshotter::added(before, captured(roots())),
                        (List{scratch.at("other/new"), scratch.at("root/0")}));
            }),
            "");
}

TEST_F(EndedRoot, whatIsUnseenAfterwardsIsNotReported) {
  EXPECT_EQ(child::failuresWithoutRights([&] {
              ::chmod(scratch.at("root/closed").c_str(), 0755);
              const FileSnapshot before = captured(roots());
              scratch.write("root/0");
              scratch.write("root/zz");
              ::chmod(scratch.at("root/closed").c_str(), 0);
              EXPECT_EQ(Snapshotter::added(before, captured(roots())), List{scratch.at("root/0")});
            }),
            "");
}

TEST_F(EndedRoot, thatCannotBeReadAtAllIsAllThatIsKnownOfIt) {
  ::chmod(scratch.at("root").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const FileSnapshot snapshot = captured({scratch.at("root")});
              EXPECT_EQ(listed(snapshot), List{scratch.at("root")});
              EXPECT_FALSE(snapshot.knows(scratch.at("root/a")));
            }),
            "");
}

TEST_F(EndedRoot, isNoEndToARootInside) {
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const FileSnapshot snapshot =
                  captured({scratch.at("root"), scratch.at("root/closed"), scratch.at("root/z")});
              EXPECT_EQ(listed(snapshot),
                        (List{scratch.at("root"), scratch.at("root/a"), scratch.at("root/closed"),
                              scratch.at("root/z"), scratch.at("root/z/y")}));
              EXPECT_EQ(snapshot.unseen,
                        (std::vector<UnseenPart>{{scratch.at("root"), scratch.at("root/closed")},
                                                 {scratch.at("root/closed"), scratch.at("root/closed")}}));
            }),
            "");
}

/// Shows "a", meets an error at it and, if it may go on, shows "b".
class MeetsAnError : public FileSystemDecorator {
 public:
  MeetsAnError(FileSystem& inner, int code) : FileSystemDecorator(inner), code_(code) {}
  void walkSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    doubles::FakeTree a(hostPlatform().files), b(hostPlatform().files);
    a.items.push_back(doubles::FakeTree::folder("a", {}));
    b.items.push_back(doubles::FakeTree::file("b", 0));
    a.walkSorted(root, hidden, visitor);
    const PlatformError error(cocoaErrorDomain, code_, "told");
    if (visitor.failed(root.appending("a"), error) == WalkStep::proceed) b.walkSorted(root, hidden, visitor);
  }

 private:
  int code_;
};

TEST(Snapshots, areEndedByAnErrorButNotByAFolderThatIsRemovedMeanwhile) {
  scene::makeFolder("/Users/me/root");
  for (const bool isGone : {false, true}) {
    MeetsAnError files(hostPlatform().files,
                       isGone ? CocoaErrorCode::fileReadNoSuchFile : CocoaErrorCode::fileReadUnknown);
    const FileSnapshot snapshot = captured({"/Users/me/root"}, replacing({.files = &files}));
    List expected = {"/Users/me/root", "/Users/me/root/a"};
    if (isGone) expected.emplace_back("/Users/me/root/b");
    EXPECT_EQ(listed(snapshot), expected);
    EXPECT_EQ(snapshot.knows("/Users/me/root/b"), isGone);
  }
}

/// One look at an item itself, or at what it leads to, fails.
class LooksAwayOnce : public FileSystemDecorator {
 public:
  LooksAwayOnce(std::string item, bool follows)
      : FileSystemDecorator(hostPlatform().files), item_(std::move(item)), follows_(follows) {}
  bool exists(const Path& path) const override {
    return follows_ && fails(path) ? false : FileSystemDecorator::exists(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (!follows_ && fails(path))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "told");
    return FileSystemDecorator::attributes(path);
  }

 private:
  bool fails(const Path& path) const { return path.text() == item_ && !std::exchange(hasFailed_, true); }

  const std::string item_;
  const bool follows_;
  mutable bool hasFailed_ = false;
};

TEST(Snapshots, takeNothingForNewBelowARootThatCouldNotBeLookedAtBefore) {
  scene::write("/Users/me/root/old", "");
  const std::vector<Path> roots = {Path("/Users/me/root")};
  for (const bool follows : {false, true}) {
    LooksAwayOnce files("/Users/me/root", follows);
    const Platform platform = replacing({.files = &files});
    const FileSnapshot before = Snapshotter::capture(platform, roots);
    EXPECT_EQ(Snapshotter::added(before, Snapshotter::capture(platform, roots)), List()) << follows;
  }
}

}  // namespace
}  // namespace quarn
