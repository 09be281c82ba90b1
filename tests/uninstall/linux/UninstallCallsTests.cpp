#include <algorithm>
#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/uninstall/InstalledAppsScanner.h"
#include "QuarnCore/uninstall/RelatedFileScanner.h"
#include "tests/support/Scene.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

/// What a piece of the program asks of the system that has `part` in it, in its order.
Lines looks(const std::function<void()>& body, const std::string& part) {
  scene::TracedProgram program(body);
  Lines lines;
  while (const auto stop = program.next()) {
    auto look = scene::lookEntered(program, *stop);
    if (look && look->find(part) != std::string::npos) lines.push_back(*std::move(look));
  }
  EXPECT_EQ(program.status(), 0);
  return lines;
}

TEST(UninstallCalls, theInventoryLooksAtEachApplicationNoMoreThanItMust) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const std::string app = "/Applications/Utilities/Foo.app";
  scene::makeApp(app);
  Lines lines = looks([] { InstalledAppsScanner::discover(hostPlatform()); }, "Foo.app");
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(lines, (Lines{
                       "fstatat " + app,
                       "fstatat " + app + "/Contents/Info.plist",
                       "fstatat " + app + "/Contents/Library",
                       "fstatat " + app + "/Contents/Resources/ExternalAppTarget.txt",
                       "fstatat " + app + "/Contents/_MASReceipt/receipt",
                       "openat " + app + "/Contents/Info.plist",
                       "read " + app + "/Contents/Info.plist",
                   }))
      << "though the folder around it is seen twice";
}

TEST(UninstallCalls, ofTheLibraryOnlyThePreferencesOfSingleMachinesAreListedAndOnce) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const std::string library = "/Users/me/Library/";
  for (const std::string folder :
       {"Application Support", "Caches", "Logs", "Preferences/ByHost", "Containers", "Group Containers",
        "HTTPStorages", "WebKit", "Saved Application State", "LaunchAgents"})
    scene::write(library + folder + "/com.example.other", "another application's");
  scene::write(library + "Preferences/ByHost/com.example.foo.1.plist", "mine");
  scene::write("/Users/me/.other/file", "another application's");
  scene::makeApp("/Applications/Foo.app");
  const auto record = InstalledAppsScanner::inspect(hostPlatform(), Path("/Applications/Foo.app")).value();
  const auto scan = [&record] { RelatedFileScanner::scan(hostPlatform(), record); };
  Lines listed = looks(scan, "/Users/me");
  std::erase_if(listed, [](const std::string& line) { return !line.starts_with("getdents "); });
  // The second one says that there are no more names.
  EXPECT_EQ(listed, Lines(2, "getdents " + library + "Preferences/ByHost"));
}

}  // namespace
}  // namespace quarn
