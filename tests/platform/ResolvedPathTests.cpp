#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "Platform/posix/ResolvedPath.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

TEST(ResolvedPath, aParentWithAZeroByteInItStaysUnresolved) {
  ScratchFolder scratch;
  scratch.write("folder/file");
  scratch.link("link", "folder");
  const Path home = hostPlatform().files.resolvingLinks(scratch.path());
  const Path file = home.appending("link" + std::string("\0x", 2) + "/file");
  EXPECT_EQ(withParentResolved(file), file);
}

}  // namespace
}  // namespace quarn
