#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Scene.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"

namespace quarn {
namespace {

/// How often the system is asked for bytes of a file while it is read.
long reads(const std::string& file) {
  scene::TracedProgram program([&file] { (void)hostPlatform().files.read(Path(file)); });
  long count = 0;
  while (const auto stop = program.next()) {
    if (scene::lookEntered(program, *stop) == "read " + file) ++count;
  }
  EXPECT_EQ(program.status(), 0);
  return count;
}

TEST(ReadCalls, aFileWhoseSizeIsKnownIsReadByOneCall) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::write("/tmp/small", "x");
  scene::writeBytes("/tmp/large", 3'000'000);
  scene::write("/tmp/empty", "");
  EXPECT_EQ(reads("/tmp/small"), 1);
  EXPECT_EQ(reads("/tmp/large"), 1);
  EXPECT_EQ(reads("/tmp/empty"), 1);
  EXPECT_EQ(hostPlatform().files.read(Path("/tmp/large"))->size(), 3'000'000u);
  EXPECT_EQ(*hostPlatform().files.read(Path("/tmp/empty")), "");
}

}  // namespace
}  // namespace quarn
