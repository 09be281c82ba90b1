#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"

namespace quarn {
namespace {

TEST(UnfinishedCopy, isTakenBackAlsoWithFoldersThatMayNotBeChanged) {
  ScratchFolder scratch;
  const auto closed = [](int i) { return "tree/closed" + std::to_string(i); };
  // In whatever order they are copied, some are done before the one that can't be.
  for (int i = 0; i < 8; ++i) scratch.write(closed(i) + "/file");
  if (!makeSocket(scratch.at(closed(3) + "/socket"))) GTEST_SKIP() << "sockets can't be made on this volume";
  for (int i = 0; i < 8; ++i) ::chmod(scratch.at(closed(i)).c_str(), 0555);
  EXPECT_EQ(child::failuresWithoutRights(
                [&] { EXPECT_FALSE(hostPlatform().files.copy(scratch / "tree", scratch / "copy")); }),
            "");
  EXPECT_FALSE(scratch.stands("copy"));
  for (int i = 0; i < 8; ++i) EXPECT_EQ(scratch.status(closed(i)).st_mode & 07777u, 0555u);
  EXPECT_TRUE(scratch.stands(closed(3) + "/socket"));
}

}  // namespace
}  // namespace quarn
