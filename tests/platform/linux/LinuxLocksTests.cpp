#include <cerrno>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "Platform/HostPlatform.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

TEST(LinuxLocks, thatAVolumeDoesNotKnowKeepNobodyOut) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  const ScratchFolder scratch;
  for (const int error : {ENOTSUP, ENOLCK, EISDIR, ENOSYS}) {
    EXPECT_EQ(child::failuresRefusing(SYS_flock, error,
                                      [&] { EXPECT_TRUE(hostPlatform().locks.lock(scratch.path(), [] {})); }),
              "")
        << error;
  }
  EXPECT_EQ(child::failuresRefusing(SYS_flock, EIO,
                                    [&] { EXPECT_FALSE(hostPlatform().locks.lock(scratch.path(), [] {})); }),
            "");
}

}  // namespace
}  // namespace quarn
