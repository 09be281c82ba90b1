#include <gtest/gtest.h>

#include "QuarnCore/health/SpotlightHealthCheck.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

const std::string dataVolume = "/System/Volumes/Data";
const std::string readOnlyStartup =
    "Spotlight index is read-only for /. Launchpad search may not show new apps. Run: sudo mdutil -i on /";

/// Two volumes that are indexed.
struct Spotlight : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& data = tools.answers["/usr/bin/mdutil -s " + dataVolume];
  doubles::FakeTools::Answer& startup = tools.answers["/usr/bin/mdutil -s /"];

  Spotlight() {
    data.output = dataVolume + ":\n\tIndexing enabled. \n";
    startup.output = "/:\n\tIndexing enabled. \n";
  }
  Lines warnings() { return SpotlightHealthCheck::warnings(tools.platform()); }
};

TEST_F(Spotlight, aVolumeThatIsIndexedIsAllThatIsAsked) {
  startup.output = "disabled";
  EXPECT_EQ(warnings(), Lines{});
  EXPECT_EQ(tools.calls, (std::vector<Lines>{{"/usr/bin/mdutil", "-s", dataVolume}}));
}

TEST_F(Spotlight, aDisabledIndexOfTheDataVolumeIsTheOnlyWarning) {
  data = {1, dataVolume + ":\n\tIndexing disabled.\n", ""};
  startup.output = "Index is read-only.";
  EXPECT_EQ(warnings(),
            (Lines{"Spotlight indexing is disabled for /System/Volumes/Data. Launchpad search may "
                   "not show new apps. Run: sudo mdutil -i on /System/Volumes/Data"}));
  EXPECT_EQ(tools.calls.size(), 1u);
}

TEST_F(Spotlight, aReadOnlyIndexIsToldBeforeADisabledOne) {
  data.output = "Spotlight server is disabled.\n\tIndex is read-only.\n";
  EXPECT_EQ(warnings(), (Lines{"Spotlight index is read-only for /System/Volumes/Data. Launchpad search may "
                               "not show new apps. Run: sudo mdutil -i on /System/Volumes/Data"}));
}

TEST_F(Spotlight, theWordsCountInAnyLetterCaseAndOnEitherStream) {
  for (const std::string word : {"READ-ONLY", "Read-Only", "éread-onlyé"}) {
    data.output = "Index is " + word;
    EXPECT_EQ(warnings().size(), 1u) << word;
    data = {0, "", word};
    EXPECT_EQ(warnings().size(), 1u) << word;
  }
  data = {0, "", "DISABLED"};
  EXPECT_EQ(warnings().size(), 1u);
  EXPECT_EQ(tools.calls.size(), 7u);
}

TEST_F(Spotlight, aWordDoesNotRunFromOneStreamIntoTheOther) {
  data = {0, "dis", "abled"};
  EXPECT_EQ(warnings(), Lines{});
}

TEST_F(Spotlight, theStartupVolumeIsAskedIfTheDataVolumeGivesNoAnswer) {
  data = {1, "", "Error: unknown indexing state.\n"};
  startup.output = "/:\n\tIndex is read-only.\n";
  EXPECT_EQ(warnings(), Lines{readOnlyStartup});
  EXPECT_EQ(tools.calls,
            (std::vector<Lines>{{"/usr/bin/mdutil", "-s", dataVolume}, {"/usr/bin/mdutil", "-s", "/"}}));
}

TEST_F(Spotlight, anUnknownStateIsNoWarning) {
  data.output = "Error: unexpected indexing state.  kMDConfigSearchLevelTransitioning\n";
  EXPECT_EQ(warnings(), Lines{});
  EXPECT_EQ(tools.calls.size(), 1u);
}

TEST_F(Spotlight, twoFailuresAreNoWarning) {
  data = startup = {1, "", "mdutil: failed\n"};
  EXPECT_EQ(warnings(), Lines{});
  EXPECT_EQ(tools.calls.size(), 2u);
  tools.answers.clear();
  EXPECT_EQ(warnings(), Lines{}) << "without the tool";
}

TEST_F(Spotlight, theToolHasNoTimeLimit) {
  data.hangs = true;
  EXPECT_EQ(warnings(), Lines{});
  EXPECT_EQ(tools.secondsWaited(), 0) << "nobody looked at the clock";
}

void mdutil(const std::string& script) {
  scene::replaceTool("/usr/bin/mdutil", "#!/bin/sh\n" + script + "\n");
}

TEST(RealMdutil, aFloodIsReadToItsEnd) {
  mdutil("head -c 8000000 /dev/zero | tr '\\0' x; echo Index is read-only.");
  EXPECT_EQ(SpotlightHealthCheck::warnings(hostPlatform()).size(), 1u);
}

TEST(RealMdutil, aToolThatIsKilledOrPrintsNoTextHasNotAnswered) {
  mdutil("[ \"$2\" = / ] && { echo Index is read-only.; exit; }; kill -KILL $$");
  EXPECT_EQ(SpotlightHealthCheck::warnings(hostPlatform()), Lines{readOnlyStartup});
  mdutil("[ \"$2\" = / ] && { echo Index is read-only.; exit; }; printf 'disabled \\377'; exit 1");
  EXPECT_EQ(SpotlightHealthCheck::warnings(hostPlatform()), Lines{readOnlyStartup});
}

}  // namespace
}  // namespace quarn
