#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/syscall.h>
#include <thread>

#include "Platform/linux/WatchedTree.h"
#include "tests/support/HeardEvents.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/Inotify.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

using Paths = std::set<std::string>;

/// Makes, renames, swaps and removes folders and files at random; some attempts fail.
void meddle(const ScratchFolder& scratch, unsigned seed, int count) {
  std::mt19937 random(seed);
  const auto anyPath = [&] {
    std::string path;
    for (unsigned depth = 1 + random() % 4; depth > 0; --depth)
      path += (path.empty() ? "" : "/") + std::string(1, static_cast<char>('a' + random() % 3));
    return scratch.at(path);
  };
  for (int i = 0; i < count; ++i) {
    std::error_code ignored;
    const std::string one = anyPath(), other = anyPath();
    switch (random() % 8) {
      case 0:
        std::filesystem::rename(one, other, ignored);
        break;
      case 1:
        std::filesystem::remove_all(one, ignored);
        break;
      case 2:
        ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
        break;
      case 3:
        std::ofstream(one + "/file" + std::to_string(random() % 5)) << "content";
        break;
      default:
        std::filesystem::create_directories(one, ignored);
    }
  }
}

TEST(WatchedTree, findsEveryFolderThatIsLeftHoweverFoldersWereMoved) {
  for (unsigned round = 0; round < 20; ++round) {
    const ScratchFolder scratch;
    meddle(scratch, round, 50);
    HeardEvents events({scratch.path()});
    std::thread other([&] { meddle(scratch, 100 + round, 300); });
    meddle(scratch, 200 + round, 300);
    other.join();
    ASSERT_TRUE(events.catchUp(scratch.at("mark")));
    const Paths probes = probeEachFolder(scratch.text(), "probe");
    EXPECT_EQ(without(probes, events.stop()), Paths()) << "in round " << round;
  }
}

/// Keeps what it is told.
FileEventSink into(Paths& heard) {
  return [&heard](const std::vector<Path>& changed) {
    for (const Path& path : changed) heard.insert(path.text());
  };
}

std::size_t foldersIn(const ScratchFolder& scratch) {
  std::size_t count = 1;
  for (const auto& item : std::filesystem::recursive_directory_iterator(scratch.text()))
    count += item.symlink_status().type() == std::filesystem::file_type::directory;
  return count;
}

TEST(WatchedTree, hasOneWatchForEachFolderThatIsLeft) {
  for (unsigned round = 0; round < 20; ++round) {
    const ScratchFolder scratch;
    meddle(scratch, round, 50);
    Paths heard;
    WatchedTree tree({scratch.path()}, into(heard));
    for (unsigned step = 0; step < 10; ++step) {
      meddle(scratch, 1000 * step + round, 20);
      tree.reportWaiting();
    }
    ASSERT_GT(foldersIn(scratch), 5u);
    EXPECT_EQ(inotifyWatches(tree.descriptors().front()), foldersIn(scratch)) << "in round " << round;
  }
}

TEST(WatchedTree, hasOneWatchForEachFolderThatIsLeftAfterAnOverflow) {
  const int limit = inotifyQueueLimit();
  if (limit < 16 || limit > 1'000'000) GTEST_SKIP() << "the queue holds " << limit << " events";
  const ScratchFolder scratch, outside;
  for (const char* folder : {"kept/inner", "out/inner", "removed/inner", "renamed/inner"})
    scratch.folder(folder);
  Paths heard;
  WatchedTree tree({scratch.path()}, into(heard));
  ASSERT_TRUE(overflowInotify(scratch.text()));
  std::filesystem::rename(scratch.at("out"), outside.at("out"));
  std::filesystem::rename(scratch.at("renamed"), scratch.at("other"));
  std::filesystem::remove_all(scratch.at("removed"));
  scratch.folder("made/inner");
  tree.reportWaiting();
  EXPECT_TRUE(heard.contains(scratch.at("made/inner")));
  EXPECT_EQ(inotifyWatches(tree.descriptors().front()), foldersIn(scratch));
}

TEST(WatchedTree, leavesWhatIsInAFolderWhenAnotherTakesItsPlace) {
  const ScratchFolder scratch, outside;
  scratch.folder("folder/inner");
  scratch.folder("other");
  Paths heard;
  WatchedTree tree({scratch.path()}, into(heard));
  std::filesystem::rename(scratch.at("folder"), outside.at("folder"));
  std::filesystem::rename(scratch.at("other"), scratch.at("folder"));
  tree.reportWaiting();
  outside.write("folder/inner/file");
  tree.reportWaiting();
  EXPECT_EQ(heard, (Paths{scratch.at("folder"), scratch.at("other")}));
  EXPECT_EQ(inotifyWatches(tree.descriptors().front()), foldersIn(scratch));
}

TEST(WatchedTree, tellsOfAFolderWithoutItsContentsIfTheyStay) {
  const ScratchFolder scratch;
  scratch.write("folder/inner/file");
  Paths heard;
  WatchedTree tree({scratch.path()}, into(heard));
  ASSERT_EQ(::chmod(scratch.at("folder").c_str(), 0711), 0);
  tree.reportWaiting();
  EXPECT_EQ(heard, Paths{scratch.at("folder")});
}

TEST(WatchedTree, findsARootAgainThatALinkLeadsTo) {
  const ScratchFolder scratch, aside;
  scratch.folder("target/root");
  aside.link("link", scratch.at("target/root"));
  Paths heard;
  WatchedTree tree({aside / "link"}, into(heard));
  std::filesystem::remove(scratch.at("target/root"));
  tree.reportWaiting();
  scratch.write("target/root/file");
  tree.reportWaiting();
  EXPECT_TRUE(heard.contains(scratch.at("target/root/file")));
}

TEST(WatchedTree, tellsWhatHappenedInARootBeforeTheRootWent) {
  const ScratchFolder scratch;
  scratch.folder("root");
  Paths heard;
  WatchedTree tree({scratch / "root"}, into(heard));
  scratch.write("root/folder/file");
  std::filesystem::remove_all(scratch.at("root"));
  tree.reportWaiting();
  EXPECT_EQ(heard, (Paths{scratch.at("root"), scratch.at("root/folder")}));
}

TEST(WatchedTree, looksInTheEndAtFoldersForWhichNoWatchWasLeft) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "calls can't be refused here";
  const ScratchFolder scratch, outside;
  scratch.folder("old");
  outside.write("moved/inner/file");
  Paths heard;
  WatchedTree tree({scratch.path()}, into(heard));
  EXPECT_EQ(child::failuresRefusing(SYS_inotify_add_watch, ENOSPC,
                                    [&] {
                                      scratch.folder("new/inner");
                                      tree.reportWaiting();
                                      EXPECT_TRUE(heard.contains(scratch.at("new/inner")));
                                      scratch.write("new/inner/file");
                                      scratch.write("old/file");
                                      std::filesystem::rename(outside.at("moved"), scratch.at("new/moved"));
                                      tree.reportWaiting();
                                      EXPECT_FALSE(heard.contains(scratch.at("new/inner/file")));
                                      tree.reportRest();
                                      EXPECT_EQ(missingIn(heard, scratch.text()), Paths());
                                    }),
            "");
}

}  // namespace
}  // namespace quarn
