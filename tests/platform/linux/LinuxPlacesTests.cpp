#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"

namespace quarn {
namespace {

Places& places() {
  return hostPlatform().places;
}

TEST(LinuxPlaces, theHomeIsTheEnvironmentsIfAbsolute) {
  EXPECT_EQ(child::failures([] {
              ::setenv("HOME", "/Users/someone/", 1);
              EXPECT_EQ(places().home(), Path("/Users/someone"));
            }),
            "");
}

TEST(LinuxPlaces, theHomeIsTheListedOneOtherwise) {
  const passwd* entry = ::getpwuid(::getuid());
  if (!entry) GTEST_SKIP() << "the user is not listed";
  const Path listed(entry->pw_dir);
  EXPECT_EQ(child::failures([&] {
              ::setenv("HOME", "relative", 1);
              EXPECT_EQ(places().home(), listed);
              ::unsetenv("HOME");
              EXPECT_EQ(places().home(), listed);
            }),
            "");
}

TEST(LinuxPlaces, theTemporaryFolderIsTheEnvironmentsIfAbsolute) {
  EXPECT_EQ(child::failures([] {
              ::setenv("TMPDIR", "/Users/someone/tmp/", 1);
              EXPECT_EQ(places().temporaryFolder(), Path("/Users/someone/tmp"));
              ::setenv("TMPDIR", "relative", 1);
              EXPECT_EQ(places().temporaryFolder(), Path("/tmp"));
              ::unsetenv("TMPDIR");
              EXPECT_EQ(places().temporaryFolder(), Path("/tmp"));
            }),
            "");
}

TEST(LinuxPlaces, theExecutableIsTheRunningProgramItselfAndNoLinkToIt) {
  const Path found = places().executable();
  EXPECT_EQ(found.text(), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(found.lastComponent(), "platform-tests");
}

}  // namespace
}  // namespace quarn
