#include <filesystem>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string foo = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

/// The program itself in the process list: it and whoever started it name the application that is to
/// move, and that alone doesn't make it run.
class OwnLines : public testing::Test {
 protected:
  OwnLines() { scene::makeApp(foo); }
  static void expectMoved(const scene::Run& run) {
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(scene::target(foo), moved);
  }
  static inline const std::string command =
      "quarn move one /Applications/Foo.app --target-drive /Volumes/X9 --yes";
};

TEST_F(OwnLines, typedByItsBareNameItMovesWhatDoesNotRun) {
  expectMoved(scene::quarn({"move", "one", foo, "--target-drive", "/Volumes/X9", "--yes"}));
}

TEST_F(OwnLines, insideAShellItMovesWhatDoesNotRun) {
  expectMoved(scene::run({"sh", "-c", command + "; exit $?"}));
}

TEST_F(OwnLines, insideAShellInAShellItMovesWhatDoesNotRun) {
  expectMoved(scene::run({"sh", "-c", "sh -c '" + command + "; exit $?'; exit $?"}));
}

TEST_F(OwnLines, insideAnotherProgramItMovesWhatDoesNotRun) {
  expectMoved(scene::run({"env", "A=1", "timeout", "60", "quarn", "move", "one", foo, "--target-drive",
                          "/Volumes/X9", "--yes"}));
}

TEST_F(OwnLines, insideANarrowTerminalItMovesWhatDoesNotRun) {
  const std::string longName = "/Applications/" + std::string(60, 'n') + ".app";
  scene::makeApp(longName);
  // Cut here the line of the shell ends behind ".app".
  const auto columns =
      "COLUMNS=" + std::to_string(16 + std::string("quarn move one ").size() + longName.size());
  const auto run = scene::quarn({"move", "one", longName, "--target-drive", "/Volumes/X9", "--yes"},
                                {.environment = {columns}});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_TRUE(scene::isLink(longName));
}

TEST_F(OwnLines, anotherProcessThatRunsFromItStillCounts) {
  std::filesystem::copy_file(std::filesystem::canonical("/bin/sleep"), foo + "/Contents/MacOS/helper");
  const scene::Background helper({foo + "/Contents/MacOS/helper", "60"});
  while (!RunningAppsDetector::isRunning(hostPlatform(), Path(foo))) ::usleep(10'000);
  const auto run = scene::quarn({"move", "one", foo, "--target-drive", "/Volumes/X9", "--yes"});
  EXPECT_NE(run.out.find("FAIL: App is running: "), std::string::npos) << run.out << run.err;
  EXPECT_FALSE(scene::isLink(foo));
}

}  // namespace
}  // namespace quarn
