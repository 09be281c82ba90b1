#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

Places& places() {
  return hostPlatform().places;
}

TEST(Places, theHomeIsTheEnvironmentsIfAbsolute) {
  EXPECT_EQ(child::failures([] {
              ::setenv("HOME", "/Users/someone/", 1);
              EXPECT_EQ(places().home(), Path("/Users/someone"));
            }),
            "");
}

TEST(Places, theHomeIsTheListedOneOtherwise) {
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

TEST(Places, namedUsersHaveHomes) {
  const passwd* entry = ::getpwuid(::getuid());
  if (!entry) GTEST_SKIP() << "the user is not listed";
  const Path listed(entry->pw_dir);
  EXPECT_EQ(places().home(std::string(entry->pw_name)), listed);
  EXPECT_EQ(places().home(std::string("nobody called so")), std::nullopt);
}

TEST(Places, theCurrentFolderIsTheRealOne) {
  ScratchFolder scratch;
  scratch.folder("folder");
  scratch.link("link", "folder");
  const std::string real = std::filesystem::canonical(scratch.at("folder"));
  EXPECT_EQ(child::failures([&] {
              ASSERT_EQ(::chdir(scratch.at("link").c_str()), 0);
              EXPECT_EQ(places().currentFolder().text(), real);
            }),
            "");
}

TEST(Places, theExecutableIsTheRunningProgramItselfAndNoLinkToIt) {
  const Path found = places().executable();
  EXPECT_EQ(found.text(), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(found.lastComponent(), "platform-tests");
}

}  // namespace
}  // namespace quarn
