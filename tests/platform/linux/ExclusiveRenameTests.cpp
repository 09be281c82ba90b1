#include <cerrno>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "Platform/HostPlatform.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

const char* const noFilter = "system calls can't be refused to a process here";

int moved(const Path& source, const Path& destination) {
  const auto result = hostPlatform().files.rename(source, destination);
  return result ? 0 : result.error().code;
}

/// The kernel's answers on a file system, and on a system, without the exclusive rename.
constexpr int unsupported[] = {EINVAL, ENOSYS};

TEST(WithoutTheExclusiveRename, aMoveStillMoves) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << noFilter;
  for (const int error : unsupported) {
    ScratchFolder scratch;
    scratch.write("file", "first");
    scratch.write("folder/inside", "second");
    scratch.link("link", "nowhere");
    EXPECT_EQ(child::failuresRefusing(SYS_renameat2, error,
                                      [&] {
                                        EXPECT_EQ(moved(scratch / "file", scratch / "file 2"), 0);
                                        EXPECT_EQ(moved(scratch / "folder", scratch / "folder 2"), 0);
                                        EXPECT_EQ(moved(scratch / "link", scratch / "link 2"), 0);
                                      }),
              "")
        << error;
    EXPECT_EQ(scratch.count(), 4u);
    EXPECT_EQ(scratch.read("file 2"), "first");
    EXPECT_EQ(scratch.read("folder 2/inside"), "second");
    EXPECT_EQ(std::filesystem::read_symlink(scratch.at("link 2")), "nowhere");
  }
}

TEST(WithoutTheExclusiveRename, aMoveStillReplacesNothing) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << noFilter;
  for (const int error : unsupported) {
    ScratchFolder scratch;
    scratch.write("file", "mine");
    scratch.write("taken", "yours");
    scratch.folder("folder");
    scratch.folder("empty");
    scratch.link("dangling", "none");
    EXPECT_EQ(child::failuresRefusing(SYS_renameat2, error,
                                      [&] {
                                        EXPECT_EQ(moved(scratch / "file", scratch / "taken"), 516);
                                        EXPECT_EQ(moved(scratch / "file", scratch / "dangling"), 516);
                                        EXPECT_EQ(moved(scratch / "folder", scratch / "empty"), 516);
                                      }),
              "")
        << error;
    EXPECT_EQ(scratch.count(), 5u);
    EXPECT_EQ(scratch.read("file"), "mine");
    EXPECT_EQ(scratch.read("taken"), "yours");
    EXPECT_TRUE(scratch.stands("dangling"));
  }
}

TEST(TheExclusiveRename, thatIsRefusedIsNotTriedAsAnOrdinaryOne) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << noFilter;
  ScratchFolder scratch;
  scratch.write("file");
  EXPECT_EQ(child::failuresRefusing(SYS_renameat2, EACCES,
                                    [&] { EXPECT_EQ(moved(scratch / "file", scratch / "new"), 513); }),
            "");
  EXPECT_TRUE(scratch.stands("file"));
  EXPECT_FALSE(scratch.stands("new"));
}

}  // namespace
}  // namespace quarn
