#include <algorithm>
#include <dirent.h>
#include <map>
#include <set>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"

namespace quarn::contract {
namespace {

class Walk : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, Walk, testing::ValuesIn(fileSystemsThatWalkTheDisk()),
                         nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(InOrder, Walk, testing::Values(alwaysSorted()), nameOf<Subject<FileSystem>>);

/// Keeps what it is shown and answers as told.
class Collector : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    order.emplace_back(item.relativePath());
    kinds[order.back()] = item.kind();
    const auto answer = answers.find(order.back());
    return answer == answers.end() ? WalkStep::proceed : answer->second;
  }
  WalkStep failed(const Path& item, const PlatformError& error) override {
    failures.push_back(item.text() + ": " + std::to_string(error.code));
    return answerToFailure;
  }
  std::set<std::string> found() const { return {order.begin(), order.end()}; }

  std::vector<std::string> order;
  std::map<std::string, FileKind> kinds;
  std::map<std::string, WalkStep> answers;
  std::vector<std::string> failures;
  WalkStep answerToFailure = WalkStep::proceed;
};

using Names = std::set<std::string>;

TEST_P(Walk, showsEverythingBelowTheRootOnce) {
  ScratchFolder scratch;
  scratch.write("a/b/file");
  scratch.write("a/.hidden/x");
  scratch.folder("empty");
  Collector collector;
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.found(), (Names{"a", "a/b", "a/b/file", "a/.hidden", "a/.hidden/x", "empty"}));
  EXPECT_EQ(collector.order.size(), 6u);
  EXPECT_TRUE(collector.failures.empty());
}

TEST_P(Walk, showsAFolderBeforeItsContents) {
  ScratchFolder scratch;
  for (const char* name : {"a/b/c/f", "a/d/e", "g/h"}) scratch.write(name);
  Collector collector;
  files().walk(scratch.path(), Hidden::included, collector);
  std::set<std::string> seen{""};
  for (const auto& path : collector.order) {
    const std::size_t slash = path.rfind('/');
    EXPECT_TRUE(seen.count(slash == std::string::npos ? "" : path.substr(0, slash))) << path;
    seen.insert(path);
  }
  EXPECT_EQ(seen, (Names{"", "a", "a/b", "a/b/c", "a/b/c/f", "a/d", "a/d/e", "g", "g/h"}));
}

TEST_P(Walk, tellsKindsWithoutFollowingLinks) {
  ScratchFolder scratch;
  scratch.write("file");
  scratch.write("folder/inside");
  scratch.link("toFolder", "folder");
  scratch.link("dangling", "none");
  scratch.link("loop", ".");
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  if (!makeSocket(scratch.at("socket"))) GTEST_SKIP() << "sockets can't be made on this volume";
  Collector collector;
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.kinds, (std::map<std::string, FileKind>{{"file", FileKind::regular},
                                                              {"folder", FileKind::folder},
                                                              {"folder/inside", FileKind::regular},
                                                              {"toFolder", FileKind::symbolicLink},
                                                              {"dangling", FileKind::symbolicLink},
                                                              {"loop", FileKind::symbolicLink},
                                                              {"fifo", FileKind::unknown},
                                                              {"socket", FileKind::socket}}));
}

TEST_P(Walk, leavesOutHiddenNamesWithAllBelow) {
  ScratchFolder scratch;
  scratch.write(".git/deep/file");
  scratch.write("seen/.DS_Store");
  scratch.write("seen/file");
  for (const Hidden hidden : {Hidden::skipped, Hidden::skippedDots}) {
    Collector collector;
    files().walk(scratch.path(), hidden, collector);
    EXPECT_EQ(collector.found(), (Names{"seen", "seen/file"}));
  }
}

TEST_P(Walk, skippingAFolderLeavesItsSiblings) {
  ScratchFolder scratch;
  scratch.write("a/inside/deep");
  scratch.write("b/inside");
  scratch.write("file");
  Collector collector;
  collector.answers = {{"a", WalkStep::skipDescendants}, {"file", WalkStep::skipDescendants}};
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.found(), (Names{"a", "b", "b/inside", "file"}));
}

TEST_P(Walk, stopsAtOnce) {
  ScratchFolder scratch;
  for (int i = 0; i < 50; ++i) scratch.write("folder/" + std::to_string(i));
  Collector collector;
  collector.answers = {{"folder/7", WalkStep::stop}};
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.order.back(), "folder/7");
}

TEST_P(Walk, followsALinkAsRoot) {
  ScratchFolder scratch;
  scratch.write("folder/file");
  scratch.link("link", "folder");
  Collector collector;
  files().walk(scratch / "link", Hidden::included, collector);
  EXPECT_EQ(collector.found(), Names{"file"});
}

TEST_P(Walk, tellsAMissingRootOnce) {
  ScratchFolder scratch;
  scratch.link("dangling", "none");
  for (const char* name : {"none", "dangling"}) {
    Collector collector;
    files().walk(scratch / name, Hidden::included, collector);
    EXPECT_EQ(collector.failures, std::vector<std::string>{scratch.at(name) + ": 260"});
    EXPECT_TRUE(collector.order.empty());
  }
}

TEST_P(Walk, aFileAsRootHasNothingBelowIt) {
  ScratchFolder scratch;
  scratch.write("file");
  Collector collector;
  files().walk(scratch / "file", Hidden::included, collector);
  EXPECT_TRUE(collector.order.empty());
  EXPECT_TRUE(collector.failures.empty());
}

TEST_P(Walk, goesOnBehindAFolderThatMayNotBeReadOrStopsThere) {
  ScratchFolder scratch;
  scratch.write("closed/file");
  scratch.write("open/file");
  ::chmod(scratch.at("closed").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              Collector collector;
              files().walk(scratch.path(), Hidden::included, collector);
              EXPECT_EQ(collector.found(), (Names{"closed", "open", "open/file"}));
              EXPECT_EQ(collector.failures, std::vector<std::string>{scratch.at("closed") + ": 257"});
            }),
            "");
  ::chmod(scratch.at("open").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              Collector collector;
              collector.answerToFailure = WalkStep::stop;
              files().walk(scratch.path(), Hidden::included, collector);
              EXPECT_EQ(collector.failures.size(), 1u);
            }),
            "");
}

TEST_P(Walk, looksAttributesUpInTheFolderItself) {
  ScratchFolder scratch;
  scratch.write("folder/file", "12345");
  struct Sizes : Collector {
    WalkStep visit(const WalkItem& item) override {
      const auto attributes = item.attributes();
      if (attributes && attributes->size) sizes[std::string(item.relativePath())] = *attributes->size;
      return Collector::visit(item);
    }
    std::map<std::string, std::int64_t> sizes;
  } collector;
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.sizes, (std::map<std::string, std::int64_t>{{"folder/file", 5}}));
}

TEST_P(Walk, tellsWhatWouldStopARemoval) {
  const ScratchFolder scratch;
  scratch.write("tree/locked");
  scratch.write("tree/free");
  if (!setLocked(scratch.at("tree/locked"), true)) GTEST_SKIP() << "items can't be locked on this volume";
  struct Found : Collector {
    WalkStep visit(const WalkItem& item) override {
      if (item.obstacleToRemoval()) names.push_back(std::string(item.relativePath()));
      return Collector::visit(item);
    }
    std::vector<std::string> names;
  } found;
  files().walk(scratch / "tree", Hidden::included, found);
  EXPECT_EQ(found.names, (std::vector<std::string>{"locked"}));
  setLocked(scratch.at("tree/locked"), false);
}

TEST_P(Walk, attributesOfAnItemThatIsGoneFail) {
  ScratchFolder scratch;
  scratch.write("file");
  struct Remover : Collector {
    explicit Remover(const std::string& file) : path(file) {}
    WalkStep visit(const WalkItem& item) override {
      ::unlink(path.c_str());
      const auto attributes = item.attributes();
      code = attributes ? 0 : attributes.error().code;
      return WalkStep::proceed;
    }
    std::string path;
    int code = 0;
  } collector(scratch.at("file"));
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.code, 260);
}

TEST_P(Walk, aFolderReplacedByALinkIsNotEntered) {
  ScratchFolder scratch;
  scratch.write("elsewhere/secret");
  scratch.write("root/folder/file");
  struct Replacer : Collector {
    explicit Replacer(const ScratchFolder& folder) : scratch(folder) {}
    WalkStep visit(const WalkItem& item) override {
      if (item.relativePath() == "folder") {
        std::filesystem::remove_all(scratch.at("root/folder"));
        scratch.link("root/folder", "../elsewhere");
      }
      return Collector::visit(item);
    }
    const ScratchFolder& scratch;
  } collector(scratch);
  files().walk(scratch / "root", Hidden::included, collector);
  EXPECT_EQ(collector.found(), Names{"folder"});
  EXPECT_EQ(collector.failures, std::vector<std::string>{scratch.at("root/folder") + ": 256"});
}

std::size_t openDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/dev/fd")) ++count;
  return count;
}

TEST_P(Walk, goesToAnyDepthWithABoundedNumberOfDescriptors) {
  if (scene::inProot()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
  // In memory if possible: a disk is slow to make so many folders.
  const auto memory = ScratchFolder::onOtherVolume();
  const ScratchFolder scratch(memory ? memory->text() : std::filesystem::temp_directory_path().string());
  scratch.folder("tree");
  constexpr int depth = 20'000;
  makeDeepTree(scratch.at("tree"), depth);
  struct Watcher : WalkVisitor {
    WalkStep visit(const WalkItem& item) override {
      ++count;
      if (item.kind() == FileKind::regular && item.attributes()) ++looked;
      if (count % 1000 == 0) most = std::max(most, openDescriptors());
      longest = std::max(longest, item.relativePath().size());
      return WalkStep::proceed;
    }
    WalkStep failed(const Path&, const PlatformError& error) override {
      ADD_FAILURE() << error.description;
      return WalkStep::stop;
    }
    int count = 0, looked = 0;
    std::size_t most = 0, longest = 0;
  } watcher;
  const std::size_t before = openDescriptors();
  files().walk(scratch / "tree", Hidden::included, watcher);
  EXPECT_EQ(watcher.count, 2 * depth);
  EXPECT_EQ(watcher.looked, depth);
  EXPECT_EQ(watcher.longest, 2u * depth + 1);
  EXPECT_LE(watcher.most, before + 200);
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_TRUE(files().remove(scratch / "tree"));
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST_P(Walk, comesBackFromTheDeepToTheSiblingsOnTheWay) {
  if (scene::inProot()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
  ScratchFolder scratch;
  constexpr int depth = 1'000;
  makeDeepTree(scratch.text(), depth);
  // A second branch high up, reached again only after the deep one or before it, whatever the order.
  for (const char* branch : {"a", "z"}) scratch.write(std::string("d/d/d/") + branch + "/leaf");
  Collector collector;
  files().walk(scratch.path(), Hidden::included, collector);
  EXPECT_EQ(collector.order.size(), 2u * depth + 4);
  EXPECT_EQ(collector.found().count("d/d/d/a/leaf"), 1u);
  EXPECT_EQ(collector.found().count("d/d/d/z/leaf"), 1u);
  EXPECT_TRUE(files().remove(scratch / "d"));
}

TEST_P(Walk, aFolderMovedAwayMeanwhileDoesNotLeadTheWalkElsewhere) {
  ScratchFolder scratch;
  scratch.write("foreign/secret");
  scratch.folder("root");
  makeDeepTree(scratch.at("root"), 400);
  struct Mover : Collector {
    explicit Mover(const ScratchFolder& folder) : scratch(folder) {}
    WalkStep visit(const WalkItem& item) override {
      // Deep down, so that the folders above have been closed: their way back now leads elsewhere.
      if (std::count(item.relativePath().begin(), item.relativePath().end(), '/') == 300 && !moved) {
        moved = true;
        std::filesystem::rename(scratch.at("root/d/d/d"), scratch.at("foreign/d"));
      }
      return Collector::visit(item);
    }
    const ScratchFolder& scratch;
    bool moved = false;
  } collector(scratch);
  files().walk(scratch / "root", Hidden::included, collector);
  EXPECT_TRUE(collector.moved);
  for (const auto& path : collector.order) EXPECT_EQ(path.find("secret"), std::string::npos);
}

}  // namespace
}  // namespace quarn::contract
