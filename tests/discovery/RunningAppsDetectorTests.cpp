#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "tests/support/Doubles.h"
#include "tests/support/FakePs.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string foo = "/Applications/Foo.app";

class RunningAppsDetectorTest : public testing::Test {
 protected:
  bool isRunning(const std::string& bundle = foo) {
    Platform made = platform();
    return RunningAppsDetector::isRunning(made, Path(bundle));
  }
  /// Whether one line of the process list names the bundle.
  bool names(const std::string& line, const std::string& bundle) {
    ps.all = "COMMAND         COMMAND\n" + line + "\n";
    return isRunning(bundle);
  }
  Platform platform() {
    return replacing({.processes = &ps, .applications = &applications, .clock = &clock});
  }
  void addInstance(int number, std::optional<Path> bundle) {
    applications.instances.push_back({{number, std::move(bundle)}, {}, {}, {}});
  }

  doubles::FakeClock clock;
  doubles::FakeApplications applications{clock};
  doubles::FakePs ps{""};
};

TEST_F(RunningAppsDetectorTest, nothingRunsWhereNobodySaysSo) {
  EXPECT_FALSE(isRunning());
  Platform made = platform();
  EXPECT_TRUE(RunningAppsDetector::bundlePaths(made).empty());
}

TEST_F(RunningAppsDetectorTest, anApplicationThatTheSystemListsRuns) {
  addInstance(1, Path(foo));
  EXPECT_TRUE(isRunning());
  EXPECT_FALSE(isRunning("/Applications/Bar.app"));
}

TEST_F(RunningAppsDetectorTest, anApplicationWithoutABundleAddsNothing) {
  addInstance(1, std::nullopt);
  Platform made = platform();
  EXPECT_TRUE(RunningAppsDetector::bundlePaths(made).empty());
}

TEST_F(RunningAppsDetectorTest, bothSidesAreStandardized) {
  addInstance(1, Path("/Applications//Bar.app"));
  EXPECT_TRUE(isRunning("/Applications/./Bar.app"));
  EXPECT_TRUE(names("x /Applications//./Foo.app/Contents/MacOS/x", foo + "/"));
}

TEST_F(RunningAppsDetectorTest, pathsThatDifferInSpellingAloneAreTheSame) {
  addInstance(1, Path("/Applications/\u00c9tude.app"));
  EXPECT_TRUE(isRunning("/Applications/E\u0301tude.app"));
  EXPECT_TRUE(names("x /Applications/e\u0301.app", "/Applications/\u00e9.app"));
}

TEST_F(RunningAppsDetectorTest, aHelperInsideABundleNamesTheBundle) {
  EXPECT_TRUE(names("helper          /Applications/Foo.app/Contents/MacOS/helper", foo));
  EXPECT_TRUE(names("helper          /Applications/Foo.app/Contents/MacOS/helper -psn_0", foo));
}

TEST_F(RunningAppsDetectorTest, aSpaceBelongsToThePath) {
  EXPECT_TRUE(
      names("x               /Applications/My App.app/Contents/MacOS/x -psn", "/Applications/My App.app"));
}

TEST_F(RunningAppsDetectorTest, aNestedBundleNamesTheOuterOne) {
  const std::string line = "b /Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/b";
  EXPECT_TRUE(names(line, "/Applications/A.app"));
  EXPECT_FALSE(names(line, "/Applications/A.app/Contents/Frameworks/B.app"));
  EXPECT_TRUE(names(line, "/B.app")) << "a second match, and harmless";
}

TEST_F(RunningAppsDetectorTest, theBundleMayEndTheLineOrAWord) {
  EXPECT_TRUE(names("open /Applications/Foo.app", foo));
  EXPECT_TRUE(names("open /Applications/Foo.app --args", foo));
  EXPECT_TRUE(names("open /Applications/Foo.app\targs", foo));
}

TEST_F(RunningAppsDetectorTest, anEndingThatGoesOnIsNoBundle) {
  EXPECT_FALSE(names("x /Applications/Foo.application/y", foo));
  EXPECT_FALSE(names("x /Applications/Foo.app/Resources/y", foo));
  EXPECT_FALSE(names("x /Applications/Foo.appx", foo));
  EXPECT_FALSE(names("x Foo.app", foo));
}

TEST_F(RunningAppsDetectorTest, theMatchBeginsAtTheFirstSlashOfTheLine) {
  const std::string line = "x /opt/a b /Applications/Foo.app";
  EXPECT_FALSE(names(line, foo));
  EXPECT_TRUE(names(line, "/opt/a b /Applications/Foo.app"));
}

TEST_F(RunningAppsDetectorTest, aFirstColumnWithASlashHidesThePath) {
  const std::string line = "/Applications/Fo /Applications/Foo.app/Contents/MacOS/Foo";
  EXPECT_FALSE(names(line, foo));
  EXPECT_TRUE(names(line, "/Applications/Fo /Applications/Foo.app"));
}

TEST_F(RunningAppsDetectorTest, aDoubleQuoteEndsAPath) {
  EXPECT_TRUE(names("sh /bin/x \"/Applications/Foo.app\" /Applications/Bar.app/Contents/MacOS/b",
                    "/Applications/Bar.app"));
  EXPECT_FALSE(names("sh \"/Applications/Foo.app\"", foo));
}

TEST_F(RunningAppsDetectorTest, oneLineMayNameSeveralBundles) {
  const std::string line = "x /Applications/A.app/Contents/MacOS/a /Applications/B.app/Contents/MacOS/b";
  EXPECT_TRUE(names(line, "/Applications/A.app"));
  EXPECT_TRUE(names(line, "/a /Applications/B.app"));
}

TEST_F(RunningAppsDetectorTest, everyLineCounts) {
  ps.all = "a /Applications/A.app/Contents/MacOS/a\nb /Applications/B.app/Contents/MacOS/b\n";
  EXPECT_TRUE(isRunning("/Applications/A.app"));
  EXPECT_TRUE(isRunning("/Applications/B.app"));
}

TEST_F(RunningAppsDetectorTest, withoutTheProcessListTheSystemsOwnListCounts) {
  addInstance(1, Path(foo));
  ps.startable = false;
  EXPECT_TRUE(isRunning());
  EXPECT_FALSE(isRunning("/Applications/Bar.app"));
}

TEST_F(RunningAppsDetectorTest, theOwnLineAndThoseOfTheOnesThatStartedItSayNothing) {
  ps.all =
      "sudo            sudo quarn move one /Applications/Foo.app\n"
      "quarn           quarn move one /Applications/Foo.app\n";
  ps.ancestors = {12, 11, 1};
  ps.numbered =
      "   12 quarn           quarn move one /Applications/Foo.app\n"
      "   11 sudo            sudo quarn move one /Applications/Foo.app\n";
  EXPECT_FALSE(isRunning());
}

TEST_F(RunningAppsDetectorTest, somebodyElsesLineStillCounts) {
  ps.all =
      "quarn           quarn move one /Applications/Foo.app\n"
      "Foo             /Applications/Foo.app/Contents/MacOS/Foo\n";
  ps.ancestors = {12};
  ps.numbered = "   12 quarn           quarn move one /Applications/Foo.app\n";
  EXPECT_TRUE(isRunning());
}

TEST_F(RunningAppsDetectorTest, instancesAreThoseOfTheBundleItself) {
  addInstance(1, Path(foo));
  addInstance(2, Path("/Applications/Foo.app/Contents/Helpers/H.app"));
  addInstance(3, std::nullopt);
  addInstance(4, Path("/Applications//Foo.app"));
  ps.all = "x /Applications/Foo.app/Contents/MacOS/x\n";
  Platform made = platform();
  std::vector<int> numbers;
  for (const auto& instance : RunningAppsDetector::runningInstances(made, Path("/Applications/./Foo.app"))) {
    numbers.push_back(instance.processIdentifier);
  }
  EXPECT_EQ(numbers, (std::vector<int>{1, 4}));
}

TEST_F(RunningAppsDetectorTest, instancesWhoseBundleDiffersInSpellingAloneAreOfTheBundle) {
  addInstance(1, Path("/Applications/\u00c9tude.app"));
  addInstance(2, Path("/Applications/E\u0301tude.app"));
  addInstance(3, Path("/Applications/Etude.app"));
  Platform made = platform();
  for (const char* bundle : {"/Applications/\u00c9tude.app", "/Applications/E\u0301tude.app"}) {
    const auto found = RunningAppsDetector::runningInstances(made, Path(bundle));
    ASSERT_EQ(found.size(), 2U) << bundle;
    EXPECT_EQ(found[0].processIdentifier, 1);
    EXPECT_EQ(found[1].processIdentifier, 2);
  }
}

TEST_F(RunningAppsDetectorTest, aProcessIsFoundByAnyPartOfItsLineInAnyLetterCase) {
  ps.all = "COMMAND         COMMAND\nnode            node /opt/CURSOR-server/x\nvim vim notes.txt\n";
  Platform made = platform();
  for (const char* name : {"Cursor", "cursor", "CURSOR", "NODE", "notes.TXT", "/opt"}) {
    EXPECT_TRUE(RunningAppsDetector::containsProcess(made, name)) << name;
  }
  EXPECT_FALSE(RunningAppsDetector::containsProcess(made, "Emacs"));
}

TEST_F(RunningAppsDetectorTest, noProcessIsFoundWithoutTheProcessList) {
  ps.startable = false;
  Platform made = platform();
  EXPECT_FALSE(RunningAppsDetector::containsProcess(made, "a"));
}

}  // namespace
}  // namespace quarn
