#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"

namespace quarn {
namespace {

TEST(KernelFile, isReadToItsEndThoughItSaysThatItIsEmpty) {
  EXPECT_FALSE(hostPlatform().files.read(Path("/proc/self/stat"))->empty());
}

}  // namespace
}  // namespace quarn
