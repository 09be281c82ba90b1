#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/CallsOf.h"
#include "tests/support/linux/KilledAt.h"

namespace {

using Lines = std::vector<std::string>;

TEST(CallsOf, givesTheCallsInTheirOrderWithTheirPaths) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const std::string root = scratch.text();
  const auto run = scene::callsOf([&root] {
    ASSERT_EQ(::chdir(root.c_str()), 0);
    ::mkdirat(AT_FDCWD, "folder", 0700);
    const int folder = ::open((root + "/folder").c_str(), O_RDONLY | O_DIRECTORY);
    const int file = ::openat(folder, "made", O_WRONLY | O_CREAT, 0600);
    ASSERT_EQ(::write(file, "x", 1), 1);
    ::fsync(file);
    ::syncfs(folder);
    ::renameat(folder, "made", AT_FDCWD, "moved");
    ::symlinkat("any/text", AT_FDCWD, "link");
    ::unlinkat(AT_FDCWD, "missing", 0);
    ::sync();
  });
  ASSERT_TRUE(run);
  EXPECT_EQ(run->status, 0);
  EXPECT_EQ(run->texts(),
            (Lines{"mkdirat " + root + "/folder", "openat " + root + "/folder/made",
                   "write " + root + "/folder/made", "fsync " + root + "/folder/made",
                   "syncfs " + root + "/folder", "renameat " + root + "/folder/made " + root + "/moved",
                   "symlinkat any/text " + root + "/link", "unlinkat " + root + "/missing = 2", "sync"}));
}

TEST(CallsOf, tellsTheStartOfAToolButNotOfAThread) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const auto run = scene::callsOf({"/bin/sh", "-c", "/bin/true; : > " + scratch.at("a") + "; exit 3"});
  ASSERT_TRUE(run);
  EXPECT_EQ(run->status, 3);
  EXPECT_EQ(run->texts(), (Lines{"start", "openat " + scratch.at("a")}));
  const auto threaded = scene::callsOf([] { std::thread([] {}).join(); });
  ASSERT_TRUE(threaded);
  EXPECT_EQ(threaded->texts(), Lines{});
}

TEST(CallsOf, leavesOutWhatIsPrintedOrGoesIntoAPipe) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const auto run = scene::callsOf([] {
    int ends[2];
    if (::pipe(ends) != 0 || ::write(ends[1], "x", 1) != 1 || ::write(1, "printed", 7) != 7) std::_Exit(1);
  });
  ASSERT_TRUE(run);
  EXPECT_EQ(run->status, 0);
  EXPECT_EQ(run->texts(), Lines{});
}

}  // namespace
