#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/launchers/NestedAppLauncherService.h"
#include "tests/launchers/Building.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;
using Candidate = NestedAppLauncherCandidate;
using Candidates = std::vector<Candidate>;

const std::string suite = "/Volumes/X9/ExternalQuarn/Apps/Suite";
const std::string folderLink = "/Applications/Suite";
const Path root("/Applications");

class NestedLaunchers : public testing::Test, protected building::Scene {
 protected:
  NestedLaunchers() { scene::link(folderLink, suite); }
  Candidates missing() { return NestedAppLauncherService::missingCandidates(platform(), root); }
  /// The names of the launchers that are missing, sorted.
  Lines missingNames() {
    Lines names;
    for (const Candidate& each : missing()) names.push_back(each.launcher.lastComponent());
    std::sort(names.begin(), names.end());
    return names;
  }
  Lines repair(const std::string& link = folderLink) {
    Lines lines;
    Platform mine = platform();
    const int count = NestedAppLauncherService::installMissingLaunchers(
        mine, Path(link), root, {[&lines](const std::string& line) { lines.push_back(line); }});
    lines.push_back(std::to_string(count));
    return lines;
  }
  Lines afterMove(const std::string& source = folderLink, const std::string& destination = suite) {
    Lines lines;
    Platform mine = platform();
    NestedAppLauncherService::installLaunchers(
        mine, Path(source), Path(destination),
        {[&lines](const std::string& line) { lines.push_back(line); }});
    return lines;
  }
};

std::string nested(const std::string& name) {
  return suite + "/" + name;
}

std::string recorded(const std::string& name) {
  return LauncherShim::recordedTarget(hostPlatform(), Path("/Applications/" + name)).value_or("no launcher");
}

TEST_F(NestedLaunchers, anApplicationBehindALinkIsACandidate) {
  scene::makeApp(nested("One.app"));
  EXPECT_EQ(missing(), (Candidates{{.folderLink = Path(folderLink),
                                    .folderTarget = Path(suite),
                                    .sourceApp = Path(folderLink + "/One.app"),
                                    .targetApp = Path(nested("One.app")),
                                    .launcher = Path("/Applications/One.app")}}));
}

TEST_F(NestedLaunchers, areThoseOfOneMoreFolderAndNoDeeper) {
  scene::makeApp(nested("One.app"));
  scene::makeApp(nested("Tools/Two.app"));
  scene::makeApp(nested("Tools/Deep/Three.app"));
  scene::makeApp(nested("One.app/Contents/Inner.app"));
  EXPECT_EQ(missingNames(), (Lines{"One.app", "Two.app"}));
  for (const Candidate& each : missing()) {
    if (each.launcher.lastComponent() != "Two.app") continue;
    EXPECT_EQ(each.sourceApp, Path(folderLink + "/Two.app"));
    EXPECT_EQ(each.targetApp, Path(nested("Tools/Two.app")));
  }
}

TEST_F(NestedLaunchers, aRelativeLinkBeginsAtItsFolder) {
  fs::remove(folderLink);
  scene::makeApp(nested("One.app"));
  scene::link(folderLink, "../Volumes/X9/./ExternalQuarn/Apps/Suite/");
  ASSERT_EQ(missing().size(), 1u);
  EXPECT_EQ(missing()[0].folderTarget, Path(suite));
}

TEST_F(NestedLaunchers, onlyALinkToAFolderWithApplicationsHasCandidates) {
  scene::makeFolder(suite);
  scene::write("/Volumes/X9/file", "a file");
  scene::makeApp("/Volumes/X9/Linked.app/Inner.app");
  scene::makeApp("/Applications/Real/Own.app");
  scene::link("/Applications/ToFile", "/Volumes/X9/file");
  scene::link("/Applications/ToNothing", "/nowhere");
  scene::link("/Applications/Linked.app", "/Volumes/X9/Linked.app");
  scene::link("/Applications/Loop", "/Applications/Loop");
  EXPECT_EQ(missing(), Candidates());
  EXPECT_EQ(NestedAppLauncherService::missingCandidates(platform(), Path("/nowhere")), Candidates());
}

TEST_F(NestedLaunchers, aHiddenLinkCountsAsWell) {
  fs::remove(folderLink);
  scene::makeApp(nested("One.app"));
  scene::link("/Applications/.Suite", suite);
  EXPECT_EQ(missingNames(), Lines{"One.app"});
}

TEST_F(NestedLaunchers, whatStandsThereDecides) {
  const std::string target = nested("One.app");
  scene::makeApp(target);
  const std::string at = "/Applications/One.app";
  const auto isMissing = [&] { return !missing().empty(); };
  const auto record = [&](const std::string& text) {
    fs::remove_all(at);
    scene::makeLauncher(at, target);
    scene::write(at + targetFile, text);
  };
  for (const std::string& text : {target, target + "\n", " \t" + target + "\r\n"}) {
    record(text);
    EXPECT_FALSE(isMissing()) << text;
  }
  for (const std::string& text : {std::string("/elsewhere"), std::string(), std::string(" \n"), target + "/",
                                  std::string(1'000'000, 'x'), std::string("/"), std::string(3, '\0')}) {
    record(text);
    EXPECT_TRUE(isMissing()) << text.substr(0, 60);
  }
  record("\xFF no text");
  EXPECT_FALSE(isMissing()) << "what can't be read is no target file";
  fs::remove_all(at);
  EXPECT_TRUE(isMissing());
  scene::makeApp(at);
  EXPECT_FALSE(isMissing()) << "a real application";
  fs::remove_all(at);
  scene::write(at, "a file");
  EXPECT_FALSE(isMissing());
  fs::remove(at);
  scene::link(at, "/nowhere");
  EXPECT_FALSE(isMissing()) << "a broken link";
}

TEST_F(NestedLaunchers, bothUnicodeFormsAreOneTarget) {
  scene::makeApp(nested("Caf\u00E9.app"));
  scene::makeLauncher("/Applications/Caf\u00E9.app", nested("Cafe\u0301.app"));
  EXPECT_EQ(missing(), Candidates());
}

TEST_F(NestedLaunchers, aLinkToTheFolderOfApplicationsItselfHasNoCandidates) {
  scene::makeApp(app);
  scene::makeLauncher("/Applications/Foo.app", app);
  scene::makeLauncher("/Applications/Broken.app", "");
  for (const std::string target : {"/Applications", ".", "/", "/Applications/Self"}) {
    fs::remove(folderLink);
    scene::link(folderLink, target);
    EXPECT_EQ(missing(), Candidates()) << target;
  }
}

// What is said.

Candidate named(const std::string& name) {
  Candidate candidate;
  candidate.launcher = Path("/Applications/" + name);
  return candidate;
}

TEST_F(NestedLaunchers, upToFourAreNamed) {
  const std::string start = "Nested apps need top-level launchers for Spotlight: ";
  Candidates group;
  const auto add = [&group](const std::string& name) {
    group.push_back(named(name));
    return NestedAppLauncherService::detail(group);
  };
  EXPECT_EQ(NestedAppLauncherService::detail({}), start);
  EXPECT_EQ(add("A.app"), start + "A.app");
  add("B.app");
  add("C.app");
  EXPECT_EQ(add("D.app"), start + "A.app, B.app, C.app, D.app");
  EXPECT_EQ(add("E.app"), start + "A.app, B.app, C.app, D.app (+1 more)");
  EXPECT_EQ(add("F.app"), start + "A.app, B.app, C.app, D.app (+2 more)");
}

// The repair.

TEST_F(NestedLaunchers, thoseOfOneLinkAreBuiltAndCounted) {
  scene::makeApp(nested("One.app"), {.displayName = "The One"});
  scene::makeApp(nested("Two.app"));
  scene::makeLauncher("/Applications/Two.app", nested("Two.app"));
  scene::makeApp("/Volumes/X9/Others/Three.app");
  scene::link("/Applications/Others", "/Volumes/X9/Others");
  const std::string at = "/Applications/One.app";
  EXPECT_EQ(repair("/Applications/./Suite/"),
            (Lines{"launcher-app\t" + at + "\t" + nested("One.app"), "signed-launcher\t" + at,
                   "registered-launcher\t" + at, "1"}));
  EXPECT_EQ(recorded("One.app"), nested("One.app"));
  EXPECT_NE(scene::read(at + "/Contents/Info.plist").find("The One"), std::string::npos);
  EXPECT_EQ(recorded("Three.app"), "no launcher");
  EXPECT_EQ(missingNames(), Lines{"Three.app"});
  EXPECT_EQ(repair(), Lines{"0"});
}

TEST_F(NestedLaunchers, oneThatOpensSomethingElseIsMovedAsideAndReplaced) {
  scene::makeApp(nested("One.app"));
  scene::makeLauncher("/Applications/One.app", "/elsewhere");
  const Lines old = scene::tree("/Applications/One.app");
  EXPECT_EQ(repair().front(), "stash-existing-launcher\t/Applications/One.app");
  EXPECT_EQ(recorded("One.app"), nested("One.app"));
  EXPECT_EQ(scene::tree("/Users/me/.Trash/One.app"), old);
}

TEST_F(NestedLaunchers, aFailureIsReportedAndTheOthersAreBuilt) {
  scene::makeApp(nested("One.app"));
  scene::makeApp(nested("Two.app"));
  GatedPlatform gated(
      [](const std::string& operation) {
        const bool isOne = operation.starts_with("rename") && operation.ends_with("/One.app");
        return isOne ? Result<void>(PlatformError("test", 1, "It broke.")) : Result<void>();
      },
      platform());
  Lines lines;
  EXPECT_EQ(NestedAppLauncherService::installMissingLaunchers(
                gated.platform(), Path(folderLink), root,
                {[&lines](const std::string& line) { lines.push_back(line); }}),
            1);
  EXPECT_EQ(
      std::count(lines.begin(), lines.end(), "launcher-repair-failed\t/Applications/One.app\tIt broke."), 1);
  EXPECT_EQ(missingNames(), Lines{"One.app"}) << "found again by the next check";
  EXPECT_EQ(recorded("Two.app"), nested("Two.app"));
}

TEST_F(NestedLaunchers, withoutTheProgramTheyStayMissing) {
  scene::makeApp(nested("One.app"));
  fs::remove(program);
  EXPECT_EQ(repair(),
            (Lines{"launcher-repair-failed\t/Applications/One.app\tLauncher binary is missing.", "0"}));
  EXPECT_EQ(missingNames(), Lines{"One.app"});
}

// After a move.

TEST_F(NestedLaunchers, areBuiltForAFolderThatWasMoved) {
  scene::makeApp(nested("One.app"));
  scene::makeApp(nested("Tools/Two.app"));
  EXPECT_EQ(afterMove().size(), 6u);
  EXPECT_EQ(recorded("One.app"), nested("One.app"));
  EXPECT_EQ(recorded("Two.app"), nested("Tools/Two.app"));
  EXPECT_EQ(missing(), Candidates());
}

TEST_F(NestedLaunchers, areNotBuiltForAnotherFolderOrForAnApplication) {
  scene::makeApp(nested("One.app"));
  scene::makeFolder("/Users/me/Applications");
  EXPECT_EQ(afterMove("/Users/me/Applications/Suite"), Lines());
  EXPECT_EQ(afterMove("/Applications/Utilities/Suite"), Lines());
  EXPECT_EQ(afterMove("/Applications/Suite.app"), Lines());
  EXPECT_EQ(namesIn("/Users/me/Applications"), Lines());
  EXPECT_EQ(recorded("One.app"), "no launcher");
  EXPECT_EQ(afterMove("/Applications/../Applications/Suite").size(), 3u);
}

TEST_F(NestedLaunchers, afterAMoveAnEmptyTargetFileIsLeftAlone) {
  scene::makeApp(nested("One.app"));
  scene::makeLauncher("/Applications/One.app", "");
  for (const std::string text : {"", " \n\t"}) {
    scene::write("/Applications/One.app" + targetFile, text);
    const Lines before = scene::tree("/Applications/One.app");
    EXPECT_EQ(missingNames(), Lines{"One.app"}) << "but the check lists it";
    EXPECT_EQ(afterMove(), Lines());
    EXPECT_EQ(scene::tree("/Applications/One.app"), before);
  }
  scene::write("/Applications/One.app" + targetFile, "/elsewhere");
  EXPECT_EQ(afterMove().size(), 4u);
  EXPECT_EQ(recorded("One.app"), nested("One.app"));
}

TEST_F(NestedLaunchers, afterAMoveFailuresAreIgnored) {
  scene::makeApp(nested("One.app"));
  fs::remove(program);
  EXPECT_EQ(afterMove(), Lines{"launcher-repair-failed\t/Applications/One.app\tLauncher binary is missing."});
}

TEST_F(NestedLaunchers, areNotMadeForWhatMayBeTheApplicationItself) {
  scene::makeApp(nested("One.app"));
  EXPECT_EQ(missingNames(), Lines{"One.app"});
  Unresolving files(suite);
  EXPECT_TRUE(NestedAppLauncherService::missingCandidates(replacing({.files = &files}), root).empty());
}

}  // namespace
}  // namespace quarn
