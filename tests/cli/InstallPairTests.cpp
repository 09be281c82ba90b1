#include <functional>
#include <gtest/gtest.h>
#include <optional>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaign.h"
#include "tests/cli/Two.h"

/// Installations that aren't alone: the outcome is that of one order or of the other, or one of the two
/// refuses with a sentence; and what one run made, no other sets aside.

using campaign::says;
using fault::names;
using installs::jobOf;
using installs::Lines;
using installs::Trial;
using turns::milliseconds;
using turns::Two;

namespace {

namespace fs = std::filesystem;

const std::vector<int> gaps = {0, 0, 10, 40, 80, 120, 200, 300, 450};
const std::string tools = "/var/db/quarn-room-tools/";

class InstallPairs : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string reason = installs::whyNoStock(); !reason.empty()) GTEST_SKIP() << reason;
  }
  void TearDown() override { fs::remove_all(tools); }

  /// Long enough that two runs meet at every step.
  void slowDown(const std::string& tool) {
    scene::replaceTool(tool, "#!/bin/sh\nsleep 0.05; /usr/libexec/quarn-room/" +
                                 fs::path(tool).filename().string() +
                                 " \"$@\"; code=$?; sleep 0.05; exit $code\n");
  }

  /// Begins a command, lets a second one begin while a tool of the first one waits, and lets both go on.
  struct Met {
    std::string first, second;
    std::string all() const { return first + "--\n" + second; }
  };
  Met whileItWaits(const std::string& tool, const std::string& pattern, const std::string& one,
                   const std::string& other) {
    for (const char* file : {"/tmp/begun", "/tmp/go", "/tmp/1.out", "/tmp/2.out"}) fs::remove(file);
    const std::string on = pattern.empty() ? "" : "on " + pattern + " ";
    scene::write(tools + tool, on + "record /tmp/begun\n" + on + "wait-until /tmp/go\n");
    scene::Background early({"/bin/sh", "-c", one + " >/tmp/1.out 2>&1"});
    EXPECT_TRUE(scene::appears("/tmp/begun")) << scene::read("/tmp/1.out");
    scene::Background late({"/bin/sh", "-c", other + " >/tmp/2.out 2>&1"});
    // Until it says something, or waits at the same tool.
    const auto saidNothing = [] { return !scene::exists("/tmp/2.out") || scene::read("/tmp/2.out").empty(); };
    for (int i = 0; i < 3000 && saidNothing() && times(scene::read("/tmp/begun"), "\n") < 2; ++i)
      std::this_thread::sleep_for(milliseconds(20));
    scene::write("/tmp/go", "");
    early.wait();
    late.wait();
    return {scene::read("/tmp/1.out"), scene::read("/tmp/2.out")};
  }

  static std::string judged(const Trial& trial, const Lines& saids) {
    std::string problems;
    for (const std::string& said : saids) problems += trial.problems({0, said, true});
    return problems;
  }
  static std::string judged(const Trial& trial, const Two& two) {
    return judged(trial, {two.first + two.firstError, two.second + two.secondError});
  }

  static Lines aside() {
    Lines found;
    for (const std::string& folder : {scene::home + "/.Trash", scene::driveTrash()})
      for (const std::string& name : names(folder)) found.push_back(folder + "/" + name);
    return found;
  }
  static int times(const std::string& text, const std::string& piece) {
    int count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
    return count;
  }
};

TEST_F(InstallPairs, twoOfOneApplicationInstallItOnce) {
  slowDown("/usr/bin/codesign");
  for (const std::string job : {"app", "zip"}) {
    for (const int gap : gaps) {
      const Trial trial(jobOf(job));
      const Lines before = aside();
      const Two two(jobOf(job).line(), jobOf(job).line(), milliseconds(gap));
      EXPECT_EQ(judged(trial, two), "") << job << two.all();
      EXPECT_EQ(times(two.all(), "id = \""), 2) << two.all();
      EXPECT_EQ(times(two.all(), "error\t"), 0) << two.all();
      // The folder of each archive is set aside.
      Lines now = aside();
      std::erase_if(now, [](const std::string& place) { return says(place, "/QuarnZip-"); });
      EXPECT_EQ(now, before) << "what one run made, no other sets aside\n" << two.all();
    }
  }
}

TEST_F(InstallPairs, theSecondOneUsesWhatTheFirstOneIsJustMaking) {
  const std::pair<std::string, std::string> rows[] = {
      {"app", "codesign"}, {"zip", "codesign"}, {"zip", "ditto"}};
  for (const auto& [job, tool] : rows) {
    const Trial trial(jobOf(job));
    const std::string pattern = tool == "codesign" ? "--sign" : "-x";
    const Met met = whileItWaits(tool, pattern, jobOf(job).line(), jobOf(job).line());
    EXPECT_EQ(judged(trial, {met.first, met.second}), "") << met.all();
    EXPECT_EQ(times(met.all(), "id = \""), 2) << met.all();
    if (tool == "codesign") {
      EXPECT_TRUE(says(met.second, turns::waiting)) << met.all();
    }
  }
}

TEST_F(InstallPairs, twoOfOnePackageComeOneAfterTheOther) {
  for (const std::string job : {"package", "namedPackage"}) {
    const Trial trial(jobOf(job));
    const Met met = whileItWaits("installer", "", jobOf(job).line(), jobOf(job).line());
    EXPECT_EQ(judged(trial, {met.first, met.second}), "") << met.all();
    EXPECT_TRUE(says(met.second, turns::waiting)) << met.all();
    EXPECT_EQ(times(met.all(), "id = \""), 2) << met.all();
    EXPECT_EQ(times(met.all(), "installed-app\t"), job == "package" ? 2 : 0) << met.all();
  }
}

TEST_F(InstallPairs, neitherOfTwoDetachesTheImageThatTheOtherOneReads) {
  const installs::ImageServer images;
  for (const int gap : {0, 50, 150, 300, 500, 800}) {
    const Trial trial(jobOf("image"));
    const Two two(jobOf("image").line(), jobOf("image").line(), milliseconds(gap));
    EXPECT_EQ(judged(trial, two), "") << gap << two.all();
    EXPECT_EQ(times(two.all(), "id = \""), 2) << two.all();
    for (const std::string& said : {two.first, two.second}) {
      EXPECT_TRUE(
          says(said, "\"installed-pkg\t/Volumes/Foo/Bar.pkg\", \"installed-app\t/Applications/Foo.app\t"))
          << two.all();
    }
  }
}

// Beside a move.

const std::string launcherOrLink = "/Applications/Foo.app";
const std::string copyOfFoo = installs::drivesApps + "/Foo.app";

TEST_F(InstallPairs, anApplicationIsEitherMovedOrInstalledInItsPlace) {
  slowDown("/usr/bin/codesign");
  fault::replaceDitto("sleep 0.05; " + fault::realDitto + "; code=$?; sleep 0.05; exit $code");
  const std::string move = "quarn move one com.example.Foo --no-data --yes --target-drive X9";
  for (const int gap : gaps) {
    for (const bool moveFirst : {false, true}) {
      const Trial trial(jobOf("appInPlace"), {scene::manifest});
      const Lines whole = scene::tree(launcherOrLink);
      const std::string run = jobOf("appInPlace").line();
      const Two two(moveFirst ? move : run, moveFirst ? run : move, milliseconds(gap));
      EXPECT_NE(says(two.all(), "s -> " + copyOfFoo), says(two.all(), "id = \"")) << two.all();
      EXPECT_EQ(judged(trial, {two.all()}), "") << two.all();
      const bool waited = says(two.all(), "error\t“Foo.app” was replaced by another run meanwhile.\n");
      if (says(two.all(), "id = \"") || waited) {
        EXPECT_EQ(scene::tree(copyOfFoo), whole) << two.all();
      } else {
        // The move was over before: as if it had been installed from the link that the move made, the good
        // copy was set aside.
        EXPECT_TRUE(says(two.all(), "error\tFoo.app is missing at the destination.\n")) << two.all();
        EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo 2.app"), whole) << two.all();
      }
    }
  }
}

TEST_F(InstallPairs, aPackageDoesNotClaimWhatAMoveMadeMeanwhile) {
  fault::replaceDitto("sleep 0.05; " + fault::realDitto + "; code=$?; sleep 0.05; exit $code");
  const std::string other = "/Applications/Other.app", copy = installs::drivesApps + "/Other.app";
  const std::string move = "quarn move one com.example.other --no-data --yes --target-drive X9";
  const auto judge = [&](const Trial& trial, const Lines& saids, const Lines& whole) {
    const std::string all = saids[0] + "--\n" + saids[1];
    EXPECT_EQ(judged(trial, saids), "") << all;
    EXPECT_EQ(scene::target(other), copy) << all;
    EXPECT_EQ(scene::tree(copy), whole) << all;
    EXPECT_TRUE(says(all, "id = \"")) << all;
    for (const std::string& path : {other, copy}) EXPECT_FALSE(says(all, "\"" + path)) << all;
  };
  const std::string package = jobOf("package").line();
  for (const int gap : {0, 0, 50, 100, 200, 400, 700}) {
    for (const bool moveFirst : {false, true}) {
      const Trial trial(jobOf("package"), {scene::manifest, other, copy});
      const Lines whole = scene::tree(other);
      const Two two(moveFirst ? move : package, moveFirst ? package : move, milliseconds(gap));
      judge(trial, {two.first + two.firstError, two.second + two.secondError}, whole);
    }
  }
  const Trial trial(jobOf("package"), {scene::manifest, other, copy});
  const Lines whole = scene::tree(other);
  const Met met = whileItWaits("installer", "", package, move);
  EXPECT_TRUE(says(met.second, turns::waiting)) << met.all();
  judge(trial, {met.first, met.second}, whole);
}

TEST_F(InstallPairs, aRepairLeavesWhatIsJustBeingInstalled) {
  slowDown("/usr/bin/codesign");
  const std::string repair = "quarn health repair --yes --no-snapshot";
  for (const std::string job : {"app", "appInPlace", "package"}) {
    for (const int gap : {0, 20, 60, 150, 300, 600}) {
      const Trial trial(jobOf(job), {scene::manifest});
      const Two two(jobOf(job).line(), repair, milliseconds(gap));
      EXPECT_EQ(judged(trial, two), "") << job << gap << two.all();
      EXPECT_TRUE(says(two.first, "id = \"")) << two.all();
      EXPECT_TRUE(says(two.second, "Nothing to repair.")) << two.all();
    }
  }
}

// The same session.

TEST_F(InstallPairs, ofTwoThatFinishASessionOneFindsItFinished) {
  slowDown("/usr/bin/codesign");
  for (const int gap : gaps) {
    const Trial trial(jobOf("resume"));
    const Two two(jobOf("resume").line(), jobOf("resume").line(), milliseconds(gap));
    EXPECT_EQ(judged(trial, two), "") << two.all();
    EXPECT_TRUE(two.oneSays("session-finalized\t")) << two.all();
    EXPECT_TRUE(two.oneSays("resume-noop\t" + installs::sceneSession + "\tdone\n")) << two.all();
  }
}

TEST_F(InstallPairs, aSessionThatItsRunStillFinishesIsWaitedFor) {
  const Trial trial(jobOf("package"));
  const std::string resume = "quarn install resume $(quarn install pending | tail -n 1 | cut -f 1)";
  const Met met = whileItWaits("codesign", "*/One.app", jobOf("package").line(), resume);
  EXPECT_EQ(judged(trial, {met.first}), "") << met.all();
  EXPECT_TRUE(says(met.second, turns::waiting)) << met.all();
  EXPECT_TRUE(says(met.second, "resume-noop\t")) << met.all();
  EXPECT_EQ(times(met.all(), "installed-app\t"), 2) << met.all();
}

TEST_F(InstallPairs, undoingBesideInstallingEndsAsOneAfterTheOther) {
  slowDown("/usr/bin/codesign");
  const std::string undo = jobOf("undoApp").line(), run = jobOf("app").line();
  for (const int gap : gaps) {
    for (const bool undoFirst : {false, true}) {
      const Trial trial(jobOf("undoApp"));
      const Lines whole = scene::tree(copyOfFoo);
      const Two two(undoFirst ? undo : run, undoFirst ? run : undo, milliseconds(gap));
      const bool isInstalled = scene::exists(launcherOrLink);
      EXPECT_EQ(scene::exists(copyOfFoo), isInstalled) << "one without the other\n" << two.all();
      if (isInstalled) {
        EXPECT_EQ(scene::tree(copyOfFoo), whole) << two.all();
      }
      EXPECT_EQ(judged(trial, {""}), "") << two.all();
      EXPECT_EQ(times(two.all(), "id = \""), 1) << two.all();
      EXPECT_EQ(times(two.all(), "error\t"), 0) << two.all();
    }
  }
}

TEST_F(InstallPairs, undoneTwiceEachItemIsSetAsideOnce) {
  for (const std::string job : {"undoApp", "undoPackage"}) {
    for (const int gap : {0, 0, 2, 5, 10, 20, 50}) {
      const Trial trial(jobOf(job));
      const Two two(jobOf(job).line(), jobOf(job).line(), milliseconds(gap));
      EXPECT_EQ(judged(trial, {two.first, two.second}), "") << two.all();
      for (const std::string& error : {two.firstError, two.secondError})
        EXPECT_TRUE(error.empty() || error == turns::waiting) << error;
      EXPECT_EQ(trial.problemsOfNextRun(), "");
    }
  }
}

}  // namespace
