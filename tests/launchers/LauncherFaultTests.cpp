#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/launchers/Building.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;

constexpr int mostOperations = 40;
const PlatformError broken("test", 1, "It broke.");
const std::string trash = "/Users/me/.Trash";

/// The old item, of which nothing may be lost, and company that nobody may touch.
void setUp() {
  for (const std::string& path : {launcher, trash, std::string("/Applications/.QuarnTrash")})
    fs::remove_all(path);
  for (const std::string& name : namesIn("/Applications")) {
    if (name.starts_with(".quarn")) fs::remove_all("/Applications/" + name);
  }
  scene::makeApp(launcher, {.identifier = "com.example.old"}, 5000);
  scene::write(app + "/Contents/Resources/Foo.icns", "an icon");
  scene::write(app + "/Contents/Info.plist",
               "<plist><dict><key>CFBundleIconFile</key><string>Foo</string></dict></plist>");
  scene::makeApp("/Applications/Other.app", {}, 100);
  scene::write(trash + "/Foo.app/mine", "a foreign item of the same name");
}

bool isWhole() {
  return scene::exists(launcher + targetFile) && scene::read(launcher + targetFile) == app &&
         scene::exists(launcher + executable) && scene::exists(launcher + "/Contents/PkgInfo") &&
         scene::exists(launcher + "/Contents/Info.plist");
}

/// Changes beside the launcher, the Trash and what is hidden beside the launcher.
std::string foreignChanges(const NothingLost& oracle) {
  std::vector<std::string> allowed = {launcher, trash, "/Applications/.QuarnTrash"};
  for (const std::string& name : namesIn("/Applications")) {
    if (name.starts_with(".quarn-new-launcher-")) allowed.push_back("/Applications/" + name);
  }
  return oracle.foreignChanges(allowed);
}

/// Nothing is lost; at the launcher's path is the old item, nothing, or the whole launcher; and the next run
/// builds it.
void expectWellAfter(const NothingLost& oracle, Platform platform) {
  EXPECT_EQ(oracle.wholeAt().size(), 1u) << "the old item";
  EXPECT_EQ(foreignChanges(oracle), "");
  const bool isOld = oracle.wholeAt() == Lines{launcher};
  EXPECT_TRUE(isOld || !scene::exists(launcher) || isWhole());
  EXPECT_FALSE(install(platform).back().starts_with("error"));
  EXPECT_TRUE(isWhole());
  EXPECT_EQ(oracle.wholeAt().size(), 1u);
  EXPECT_EQ(foreignChanges(oracle), "");
}

TEST(LauncherFault, inAnyOneOperationLosesNothing) {
  building::Scene building;
  Lines failed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUp();
    const NothingLost oracle(launcher);
    int count = 0;
    std::string operation;
    GatedPlatform gated(
        [&](const std::string& name) {
          if (++count != n) return Result<void>();
          operation = name;
          return Result<void>(broken);
        },
        building.platform());
    const Lines said = install(gated.platform());
    if (operation.empty()) break;
    SCOPED_TRACE(operation);
    failed.push_back(operation.substr(0, operation.find(' ')));
    const bool mayFail = failed.back() == "trash" || failed.back() == "start" ||
                         operation.find("Foo.icns") != std::string::npos;
    EXPECT_EQ(said.back() == "error: It broke.", !mayFail);
    EXPECT_EQ(scene::exists(launcher), failed.back() != "rename")
        << "the old item is set aside only when the new one is complete";
    EXPECT_EQ(LauncherAppBuilder::wasBrokenOff(building.platform(), Path(launcher), Path(app)),
              failed.back() == "rename");
    for (const std::string& name : namesIn("/Applications"))
      EXPECT_FALSE(name.starts_with(".quarn-new") && failed.back() != "rename");
    expectWellAfter(oracle, building.platform());
  }
  EXPECT_EQ(failed, (Lines{"createFolder", "claim", "createFolder", "createFolder", "copy", "writeAtomically",
                           "copy", "setPermissions", "writeAtomically", "writeAtomically", "setPermissions",
                           "trash", "rename", "start", "start"}));
}

TEST(LauncherFault, inEveryOperationFromAnyOneOnLosesNothing) {
  building::Scene building;
  int n = 1;
  for (; n <= mostOperations; ++n) {
    setUp();
    const NothingLost oracle(launcher);
    int count = 0;
    std::string first;
    GatedPlatform gated(
        [&](const std::string& name) {
          if (++count < n) return Result<void>();
          if (first.empty()) first = name;
          return Result<void>(broken);
        },
        building.platform());
    install(gated.platform());
    if (first.empty()) break;
    SCOPED_TRACE(first);
    expectWellAfter(oracle, building.platform());
  }
  EXPECT_EQ(n, 16);
}

TEST(LauncherFault, thatKillsTheProgramAtAnyOperationLosesNothing) {
  building::Scene building;
  int n = 1;
  for (; n <= mostOperations; ++n) {
    setUp();
    fs::remove("/tmp/operation");
    const NothingLost oracle(launcher);
    const pid_t process = ::fork();
    if (process == 0) {
      int count = 0;
      GatedPlatform gated(
          [&](const std::string& name) {
            if (++count != n) return Result<void>();
            scene::write("/tmp/operation", name);
            ::kill(::getpid(), SIGKILL);
            return Result<void>();
          },
          building.platform());
      install(gated.platform());
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    if (!WIFSIGNALED(status)) break;
    SCOPED_TRACE(scene::read("/tmp/operation"));
    expectWellAfter(oracle, building.platform());
  }
  EXPECT_EQ(n, 16);
}

TEST(LauncherFault, anItemThatAppearsMeanwhileIsNotWrittenInto) {
  building::Scene building;
  setUp();
  fs::remove_all(launcher);
  GatedPlatform gated(
      [&](const std::string& name) {
        if (name.starts_with("rename")) scene::makeApp(launcher, {.identifier = "com.example.new"});
        return Result<void>();
      },
      building.platform());
  const Lines said = install(gated.platform());
  ASSERT_EQ(said.size(), 1u);
  EXPECT_NE(said[0].find("because an item with the same name already exists."), std::string::npos) << said[0];
  EXPECT_FALSE(scene::exists(launcher + targetFile));
  EXPECT_FALSE(scene::exists(launcher + executable));
  Lines names = namesIn("/Applications");
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (Lines{"Foo.app", "Other.app", "Utilities"}));
}

TEST(LauncherFault, ofTwoRunsAtOnceOneBuildsAndTheOtherReuses) {
  building::Scene building;
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\nsleep 0.2\n");
  for (const int gap : {0, 1, 50, 150, 300}) {
    setUp();
    const NothingLost oracle(launcher);
    fs::remove("/tmp/other");
    const pid_t process = ::fork();
    if (process == 0) {
      scene::write("/tmp/other", install(building.platform()).front());
      ::_exit(0);
    }
    ::usleep(static_cast<useconds_t>(gap) * 1000);
    const std::string mine = install(building.platform()).front();
    int status = 0;
    ::waitpid(process, &status, 0);
    const std::string replaced = "stash-existing-launcher\t" + launcher;
    const std::string reused = "reuse-launcher\t" + launcher;
    const std::string other = scene::read("/tmp/other");
    EXPECT_TRUE((mine == replaced && other == reused) || (mine == reused && other == replaced))
        << mine << ", " << other;
    EXPECT_TRUE(isWhole());
    EXPECT_EQ(oracle.wholeAt().size(), 1u);
    EXPECT_EQ(foreignChanges(oracle), "");
  }
}

TEST(LauncherFault, aFullDiskLeavesNothingHalfMade) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  building::Scene building;
  scene::replaceTool(program, std::string(300'000, 'x'));
  bool wasBuilt = false;
  for (int kilobytes = 16; kilobytes <= 480 && !wasBuilt; kilobytes += 16) {
    SCOPED_TRACE(kilobytes);
    scene::plug("Small", std::to_string(kilobytes) + "k");
    const std::string at = "/Volumes/Small/Foo.app";
    const std::string last = install(building.platform(), at).back();
    wasBuilt = !last.starts_with("error: ");
    EXPECT_EQ(scene::exists(at), wasBuilt) << last;
    if (wasBuilt) {
      EXPECT_EQ(scene::read(at + executable).size(), 300'000u);
      EXPECT_EQ(scene::read(at + targetFile), app);
    } else {
      EXPECT_NE(last.find("out of space"), std::string::npos) << last;
    }
    scene::unplug("Small");
  }
  EXPECT_TRUE(wasBuilt);
}

}  // namespace
}  // namespace quarn
