#include <cerrno>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn::contract {
namespace {

FileSystem& files() {
  return hostPlatform().files;
}

TEST(CopiedAttributes, thatAreThePersonsOwnMakeTheCopyFailWhereTheyAreRefused) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("tree/file");
  if (!setAttribute(scratch.at("tree/file"), "v")) GTEST_SKIP() << "this volume keeps no attributes";
  const std::pair<int, int> rows[] = {{EPERM, 513}, {EACCES, 513}, {ENOSPC, 640}, {EIO, 512}, {ENOTSUP, 0}};
  for (const auto& [error, expected] : rows) {
    EXPECT_EQ(child::failuresRefusing(
                  SYS_fsetxattr, error,
                  [&, wanted = expected] {
                    EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "copy")), wanted);
                    EXPECT_EQ(scratch.stands("copy"), wanted == 0) << "what was made is removed";
                  }),
              "")
        << error;
  }
  EXPECT_EQ(scratch.read("copy/file"), "content") << "a volume that keeps none gets none";
}

TEST(CopiedAttributes, thatOnlyTheSystemMaySetAreLeftBehind) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("file");
  if (::setxattr(scratch.at("file").c_str(), "trusted.note", "v", 1, 0) != 0)
    GTEST_SKIP() << "no right to set an attribute of the system";
  EXPECT_EQ(
      child::failuresRefusing(SYS_fsetxattr, EPERM,
                              [&] { EXPECT_EQ(code(files().copy(scratch / "file", scratch / "copy")), 0); }),
      "");
  EXPECT_EQ(scratch.read("copy"), "content");
}

// Under another owner these bits would lend rights that the source didn't lend.
TEST(CopiedAttributes, ofIdentityAreLeftBehindWhereTheOwnerIsNotKept) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("tool");
  ASSERT_EQ(::chmod(scratch.at("tool").c_str(), 06755), 0);
  EXPECT_EQ(
      child::failuresRefusing(SYS_fchown, EPERM,
                              [&] { EXPECT_EQ(code(files().copy(scratch / "tool", scratch / "copy")), 0); }),
      "");
  EXPECT_EQ(scratch.status("copy").st_mode & 07777, 0755U);
  ASSERT_EQ(code(files().copy(scratch / "tool", scratch / "owned")), 0);
  EXPECT_EQ(scratch.status("owned").st_mode & 07777, 06755U) << "the owner is kept, and so are they";
}

}  // namespace
}  // namespace quarn::contract
