#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/launchers/NestedAppLauncherService.h"
#include "tests/move/Moving.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string suite = "/Applications/Suite";
const std::string movedSuite = appsFolder + "/Suite";

void makeSuite() {
  scene::makeApp(suite + "/One.app", {.displayName = "The One"}, 4000);
  scene::makeApp(suite + "/Tools/Two.app", {}, 4000);
  scene::makeApp(suite + "/Tools/Deep/Three.app", {}, 4000);
  scene::write(suite + "/Read me", "text");
}

std::string moveSuite(const Platform& platform = hostPlatform()) {
  return move(platform, suite, appsFolder);
}

std::string opens(const std::string& launcher) {
  return LauncherShim::recordedTarget(hostPlatform(), Path(launcher)).value_or("no launcher");
}

TEST(NestedLaunchersOfAMove, areMadeForTheApplicationsOfAFolder) {
  makeSuite();
  const auto before = scene::tree(suite);
  EXPECT_EQ(moveSuite(), "nothing");
  EXPECT_EQ(scene::target(suite), movedSuite);
  EXPECT_EQ(scene::tree(movedSuite), before);
  EXPECT_EQ(opens("/Applications/One.app"), movedSuite + "/One.app");
  EXPECT_EQ(opens("/Applications/Two.app"), movedSuite + "/Tools/Two.app");
  EXPECT_EQ(opens("/Applications/Three.app"), "no launcher") << "too deep";
}

TEST(NestedLaunchersOfAMove, openWhatWasMoved) {
  makeSuite();
  ASSERT_EQ(moveSuite(), "nothing");
  EXPECT_EQ(scene::run({"/Applications/Two.app/Contents/MacOS/ExternalAppLauncher"}).out,
            "running from " + movedSuite + "/Tools/Two.app/Contents/MacOS/Foo\n");
}

TEST(NestedLaunchersOfAMove, comeAfterTheRecords) {
  makeSuite();
  Lines steps;
  GatedPlatform gated([&steps](const std::string& operation) {
    steps.push_back(operation);
    return Result<void>();
  });
  EXPECT_EQ(moveSuite(gated.platform()), "nothing");
  const auto isRecord = [](const std::string& step) { return step.ends_with("/health-manifest.json"); };
  const auto record = std::find_if(steps.begin(), steps.end(), isRecord);
  const auto launcher = std::find_if(steps.begin(), steps.end(), [](const std::string& step) {
    return step.find(".quarn-new-launcher-") != std::string::npos;
  });
  ASSERT_NE(record, steps.end());
  ASSERT_NE(launcher, steps.end());
  EXPECT_LT(record, launcher);
}

TEST(NestedLaunchersOfAMove, anApplicationAtTheTopLevelIsLeftAlone) {
  makeSuite();
  scene::makeApp("/Applications/One.app", {.identifier = "com.example.own"});
  const auto own = scene::tree("/Applications/One.app");
  EXPECT_EQ(moveSuite(), "nothing");
  EXPECT_EQ(scene::tree("/Applications/One.app"), own);
}

TEST(NestedLaunchersOfAMove, areNotMadeForAnythingElse) {
  scene::makeApp(app);
  scene::makeApp("/Users/me/Applications/Suite/Two.app");
  scene::makeApp(support + "/Helper.app");
  EXPECT_EQ(move(), "nothing");
  EXPECT_EQ(move(hostPlatform(), "/Users/me/Applications/Suite"), "nothing");
  EXPECT_EQ(move(hostPlatform(), support, supportFolder), "nothing");
  Lines names;
  for (const auto& entry : fs::directory_iterator("/Applications"))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (Lines{"Foo.app", "Utilities"}));
  EXPECT_TRUE(fs::is_empty("/Users/me/Applications") || scene::isLink("/Users/me/Applications/Suite"));
  EXPECT_FALSE(scene::exists("/Users/me/Applications/Two.app"));
}

TEST(NestedLaunchersOfAMove, aFailureNeverFailsTheMove) {
  makeSuite();
  GatedPlatform gated([](const std::string& operation) {
    const bool isOfALauncher = operation.find(".quarn-new-launcher-") != std::string::npos;
    return isOfALauncher ? Result<void>(PlatformError("test", 1, "It broke.")) : Result<void>();
  });
  const NothingLost oracle(suite);
  EXPECT_EQ(moveSuite(gated.platform()), "nothing");
  EXPECT_EQ(oracle.wholeAt(), Lines{movedSuite});
  EXPECT_EQ(opens("/Applications/One.app"), "no launcher");
}

TEST(NestedLaunchersOfAMove, aKillWhileTheyAreMadeLosesNothingAndTheMissingOnesAreFound) {
  int kills = 0;
  for (int n = 1;; ++n) {
    for (const std::string& path : {suite, movedSuite, std::string("/Applications/One.app"),
                                    std::string("/Applications/Two.app"), scene::manifest})
      fs::remove_all(path);
    makeSuite();
    const NothingLost oracle(suite);
    const pid_t process = ::fork();
    if (process == 0) {
      int count = 0;
      GatedPlatform gated([&](const std::string&) {
        if (scene::isLink(suite) && ++count == n) ::kill(::getpid(), SIGKILL);
        return Result<void>();
      });
      moveSuite(gated.platform());
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(oracle.wholeAt(), Lines{movedSuite}) << n;
    EXPECT_EQ(scene::target(suite), movedSuite);
    Platform& platform = hostPlatform();
    const auto missing = NestedAppLauncherService::missingCandidates(platform, Path("/Applications"));
    EXPECT_EQ(NestedAppLauncherService::installMissingLaunchers(platform, Path(suite), Path("/Applications"),
                                                                InstallerRunReporter::silent()),
              static_cast<int>(missing.size()));
    EXPECT_EQ(opens("/Applications/One.app"), movedSuite + "/One.app") << n;
    EXPECT_EQ(opens("/Applications/Two.app"), movedSuite + "/Tools/Two.app") << n;
    if (!WIFSIGNALED(status)) break;
    ++kills;
  }
  EXPECT_GE(kills, 20);
}

}  // namespace
}  // namespace quarn
