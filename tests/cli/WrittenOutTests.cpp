#include <algorithm>
#include <gtest/gtest.h>

#include "tests/cli/Faults.h"
#include "tests/support/linux/CallsOf.h"
#include "tests/support/linux/KilledAt.h"

using namespace expected;
using namespace fault;

namespace {

using Lines = std::vector<std::string>;

/// Nothing below `removed` is removed before the volume of `copy` has written everything out, and, where the
/// items are compared, the comparison lies between the two.
void expectWrittenOutFirst(const Lines& calls, const std::string& copy, const std::string& removed) {
  const auto flush = std::find_if(calls.begin(), calls.end(),
                                  [&](const auto& call) { return call.starts_with("syncfs " + copy); });
  const auto removal = std::find_if(calls.begin(), calls.end(), [&](const auto& call) {
    return call.starts_with("unlinkat " + removed) && call.find(" = ") == std::string::npos;
  });
  const std::string all = testing::PrintToString(calls);
  ASSERT_NE(flush, calls.end()) << all;
  ASSERT_NE(removal, calls.end()) << all;
  EXPECT_LT(flush - calls.begin(), removal - calls.begin()) << all;
  EXPECT_NE(std::find(flush, removal, "start"), removal) << "compared after it: " << all;
}

TEST(WrittenOut, theCopyIsOnTheDriveBeforeTheSourceIsRemoved) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::makeApp(app, {}, 4000);
  const auto run = scene::callsOf({"quarn", "move", "one", app, "--yes"});
  ASSERT_TRUE(run);
  ASSERT_EQ(scene::target(app), moved);
  expectWrittenOutFirst(run->texts(), moved, app + "/Contents");
}

TEST(WrittenOut, aMovedPathIsOnTheDriveBeforeTheSourceIsRemoved) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::writeBytes("/Users/me/Movies/a.mov", 3000);
  const auto run = scene::callsOf({"quarn", "move", "path", "--source", "/Users/me/Movies", "--destination",
                                   "/Volumes/X9/Movies", "--yes"});
  ASSERT_TRUE(run);
  ASSERT_EQ(scene::target("/Users/me/Movies"), "/Volumes/X9/Movies");
  expectWrittenOutFirst(run->texts(), "/Volumes/X9/Movies", "/Users/me/Movies/");
}

TEST(WrittenOut, whatComesHomeIsThereBeforeItLeavesTheDrive) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::makeApp(app, {}, 4000);
  ASSERT_EQ(moveOne().status, 0);
  const auto run = scene::callsOf({"quarn", "move", "back", app});
  ASSERT_TRUE(run);
  ASSERT_FALSE(scene::exists(moved));
  expectWrittenOutFirst(run->texts(), app, moved + "/Contents");
}

TEST(WrittenOut, whatComesHomeToTheTopOfAVolumeIsWrittenOutThere) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::plug("Home", "4m");
  scene::makeApp("/Volumes/X9/Foo.app", {}, 4000);
  const std::string link = "/Volumes/Home/Foo.app";
  scene::link(link, "/Volumes/X9/Foo.app");
  const auto run = scene::callsOf({"quarn", "move", "restore", link});
  ASSERT_TRUE(run);
  ASSERT_FALSE(scene::exists("/Volumes/X9/Foo.app"));
  expectWrittenOutFirst(run->texts(), link, "/Volumes/X9/Foo.app/Contents");
}

}  // namespace
