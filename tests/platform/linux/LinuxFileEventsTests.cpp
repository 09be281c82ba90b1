#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/HeardEvents.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/OwnMounts.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

using Paths = std::set<std::string>;

TEST(LinuxFileEvents, followTwoFoldersThatChangePlaces) {
  const ScratchFolder scratch;
  scratch.folder("one/a");
  scratch.folder("other/b");
  HeardEvents events({scratch.path()});
  ASSERT_EQ(::renameat2(AT_FDCWD, scratch.at("one").c_str(), AT_FDCWD, scratch.at("other").c_str(),
                        RENAME_EXCHANGE),
            0);
  ASSERT_TRUE(events.catchUp(scratch.at("mark")));
  scratch.write("one/b/file");
  scratch.write("other/a/file");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.at("one/b/file")));
  EXPECT_TRUE(heard.contains(scratch.at("other/a/file")));
}

TEST(LinuxFileEvents, watchAFolderOnceItMayBeRead) {
  const ScratchFolder scratch;
  scratch.folder("closed");
  ASSERT_EQ(::chmod(scratch.at("closed").c_str(), 0), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              HeardEvents events({scratch.path()});
              ASSERT_TRUE(events.isWatching());
              ::chmod(scratch.at("closed").c_str(), 0700);
              ASSERT_TRUE(events.catchUp(scratch.at("mark")));
              scratch.write("closed/file");
              EXPECT_TRUE(events.stop().contains(scratch.at("closed/file")));
            }),
            "");
}

TEST(LinuxFileEvents, reachFoldersDeeperThanAPathCanTell) {
  if (scene::inProot()) GTEST_SKIP() << "proot takes every path apart";
  constexpr int depth = 3000;
  const ScratchFolder scratch;
  scratch.folder("old");
  makeDeepTree(scratch.at("old"), depth);
  HeardEvents events({scratch.path()});
  scratch.folder("new");
  makeDeepTree(scratch.at("new"), depth);
  ASSERT_EQ(::chdir(scratch.at("old").c_str()), 0);
  for (int i = 0; i < depth; ++i) ASSERT_EQ(::chdir("d"), 0);
  std::ofstream("late") << "content";
  ASSERT_EQ(::chdir("/"), 0);
  const Paths& heard = events.stop();
  std::string below;
  for (int i = 0; i < depth; ++i) below += "/d";
  EXPECT_TRUE(heard.contains(scratch.at("new" + below + "/f")));
  EXPECT_TRUE(heard.contains(scratch.at("old" + below + "/late")));
}

TEST(LinuxFileEvents, areAbsentWhereTheSystemRefusesThem) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "calls can't be refused here";
  const ScratchFolder scratch;
  EXPECT_EQ(
      child::failuresRefusing(SYS_inotify_init1, EMFILE,
                              [&] { EXPECT_FALSE(HeardEvents(std::vector{scratch.path()}).isWatching()); }),
      "");
}

TEST(LinuxFileEvents, comeFromAVolumeMountedBelowARoot) {
  if (!child::canMount()) GTEST_SKIP() << "nothing can be mounted here";
  const ScratchFolder scratch;
  scratch.folder("mount");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("mount"), "size=1m"));
              scratch.folder("mount/folder");
              HeardEvents events({scratch.path()});
              scratch.write("mount/folder/file");
              EXPECT_TRUE(events.stop().contains(scratch.at("mount/folder/file")));
            }),
            "");
}

TEST(LinuxFileEvents, goOnBelowAVolumeThatGoes) {
  if (!child::canMount()) GTEST_SKIP() << "nothing can be mounted here";
  const ScratchFolder scratch;
  scratch.folder("mount/below");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("mount"), "size=1m"));
              HeardEvents events({scratch.path()});
              ASSERT_TRUE(child::unmount(scratch.at("mount")));
              ASSERT_TRUE(events.catchUp(scratch.at("mark")));
              scratch.write("mount/below/file");
              const Paths& heard = events.stop();
              EXPECT_TRUE(heard.contains(scratch.at("mount")));
              EXPECT_TRUE(heard.contains(scratch.at("mount/below/file")));
            }),
            "");
}

TEST(LinuxFileEvents, leaveNoDescriptorOpen) {
  const auto open = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  const ScratchFolder scratch;
  scratch.folder("a/b/c");
  const auto before = open();
  HeardEvents(std::vector{scratch.path()}).stop();
  EXPECT_EQ(open(), before);
}

}  // namespace
}  // namespace quarn
