#include <filesystem>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

const std::string bundle = "/Applications/Foo.app";

/// The application runs until the end of the case; links lead to it.
class RunningBehindLinks : public testing::Test {
 protected:
  void SetUp() override {
    const std::string executable = bundle + "/Contents/MacOS/Foo";
    scene::makeFolder(bundle + "/Contents/MacOS");
    fs::copy_file(fs::canonical("/bin/sleep"), executable);
    scene::makeFolder("/Users/me/Other.app");
    fs::create_symlink("/Applications", "/Users/me/Apps");
    fs::create_symlink(bundle, "/Users/me/Foo.app");
    fs::create_symlink("/Users/me/none", "/Users/me/Dangling.app");
    process_.emplace(std::vector<std::string>{executable, "60"});
    while (!RunningAppsDetector::isRunning(hostPlatform(), Path(bundle))) ::usleep(10'000);
  }
  std::optional<scene::Background> process_;
};

TEST_F(RunningBehindLinks, theBundleIsFoundByEveryPathThatLeadsToIt) {
  for (const char* path :
       {"/Users/me/Apps/Foo.app", "/Users/me/Foo.app", "/Users/me/Apps/../Users/me/Apps/./Foo.app"}) {
    EXPECT_TRUE(RunningAppsDetector::isRunning(hostPlatform(), Path(path))) << path;
    EXPECT_EQ(RunningAppsDetector::runningInstances(hostPlatform(), Path(path)).size(), 1U) << path;
  }
}

TEST_F(RunningBehindLinks, noOtherBundleRuns) {
  for (const char* path : {"/Users/me/Other.app", "/Users/me/Dangling.app", "/Users/me/none/Foo.app"}) {
    EXPECT_FALSE(RunningAppsDetector::isRunning(hostPlatform(), Path(path))) << path;
    EXPECT_TRUE(RunningAppsDetector::runningInstances(hostPlatform(), Path(path)).empty()) << path;
  }
}

TEST_F(RunningBehindLinks, itIsAskedToQuit) {
  EXPECT_TRUE(RunningAppsDetector::quit(hostPlatform(), Path("/Users/me/Foo.app"), false, 5));
  EXPECT_FALSE(RunningAppsDetector::isRunning(hostPlatform(), Path(bundle)));
}

}  // namespace
}  // namespace quarn
