#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Decorators.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

void makeThreeChanges(FileSystem& files, const ScratchFolder& scratch) {
  (void)files.createFolder(scratch / "folder");
  (void)files.createSymbolicLink(scratch / "link", "folder");
  (void)files.rename(scratch / "link", scratch / "moved");
}

TEST(Decorators, failNthFailsThatOneAndChangesNothingThere) {
  const PlatformError refusal(cocoaErrorDomain, 513, "refused");
  ScratchFolder scratch;
  FailNth files(hostPlatform().files, 2, refusal);
  makeThreeChanges(files, scratch);
  EXPECT_TRUE(files.fired());
  EXPECT_TRUE(scratch.stands("folder"));
  EXPECT_FALSE(scratch.stands("link"));
  FailNth late(hostPlatform().files, 9, refusal);
  makeThreeChanges(late, scratch);
  EXPECT_FALSE(late.fired());
  EXPECT_TRUE(scratch.stands("moved"));
}

TEST(Decorators, killAtNthEndsTheProcessBeforeTheChange) {
  ScratchFolder scratch;
  const pid_t process = ::fork();
  if (process == 0) {
    KillAtNth files(hostPlatform().files, 2);
    makeThreeChanges(files, scratch);
    ::_exit(0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  EXPECT_TRUE(scratch.stands("folder"));
  EXPECT_FALSE(scratch.stands("link"));
}

TEST(Decorators, recordingKeepsTheOrder) {
  ScratchFolder scratch;
  Recording files(hostPlatform().files);
  makeThreeChanges(files, scratch);
  (void)files.writeAtomically(scratch / "file", "x");
  (void)files.remove(scratch / "file");
  const std::string at = scratch.text();
  EXPECT_EQ(files.operations(),
            (std::vector<std::string>{"createFolder " + at + "/folder",
                                      "createSymbolicLink " + at + "/link -> folder",
                                      "rename " + at + "/link -> " + at + "/moved",
                                      "writeAtomically " + at + "/file", "remove " + at + "/file"}));
}

}  // namespace
}  // namespace quarn
