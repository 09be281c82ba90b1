#include <filesystem>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/HealthManifest.h"
#include "QuarnCore/move/MoverEngine.h"
#include "tests/move/Moving.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// 2026-01-31T09:05:00Z
const Moment moment{std::chrono::seconds(1'769'850'300)};

/// Every changing operation, status and final progress of one move, in their order.
Lines stepsOfMoving(const std::string& source, const std::string& folder) {
  Lines steps;
  GatedPlatform gated([&steps](const std::string& operation) {
    steps.push_back(operation);
    return Result<void>();
  });
  const MoverEngine::StatusCallback status = [&steps](const JobStatus& told) {
    steps.push_back(told.stage == JobStatus::Stage::verifying ? "verifying"
                    : told.stage == JobStatus::Stage::linking ? "linking"
                                                              : "unexpected status");
  };
  const ProgressCallback progress = [&steps](std::int64_t copied, std::int64_t total) {
    if (copied == total) steps.push_back("copied");
  };
  EXPECT_EQ(thrown([&] {
              MoverEngine::moveAndLink(gated.platform(), Path(source), Path(folder), false, status, progress);
            }),
            "nothing");
  std::erase_if(steps, [](const std::string& step) { return step.starts_with("start /bin/ps -o"); });
  return steps;
}

TEST(MoverEngine, aBundleIsMovedStepByStep) {
  scene::makeApp(app);
  EXPECT_EQ(stepsOfMoving(app, appsFolder),
            (Lines{
                "start /bin/ps -axo comm,args",
                "createFolder /Volumes/X9/ExternalQuarn/Apps",
                "claim /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "start /usr/bin/ditto --rsrc /Applications/Foo.app /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "copyAttributes /Applications/Foo.app -> /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "copied",
                "verifying",
                "flush /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "start /usr/bin/find /Applications/Foo.app",
                "start /usr/bin/find /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "linking",
                "remove /Applications/Foo.app",
                "createSymbolicLink /Applications/Foo.app -> /Volumes/X9/ExternalQuarn/Apps/Foo.app",
                "createFolder /Users/me/Library/Application Support/Quarn",
                "writeAtomically /Users/me/Library/Application Support/Quarn/health-manifest.json",
            }));
}

TEST(MoverEngine, aDataFolderIsMovedLikeABundleWithoutAskingWhatRuns) {
  scene::writeBytes(support + "/state", 9000);
  const std::string to = movedSupport;
  EXPECT_EQ(stepsOfMoving(support, supportFolder),
            (Lines{
                "createFolder " + supportFolder,
                "claim " + to,
                "start /usr/bin/ditto --rsrc " + support + " " + to,
                "copyAttributes " + support + " -> " + to,
                "copied",
                "verifying",
                "flush " + to,
                "start /usr/bin/find " + support,
                "start /usr/bin/find " + to,
                "linking",
                "remove " + support,
                "createSymbolicLink " + support + " -> " + to,
                "createFolder /Users/me/Library/Application Support/Quarn",
                "writeAtomically /Users/me/Library/Application Support/Quarn/health-manifest.json",
            }));
}

TEST(MoverEngine, afterAMoveALinkLeadsToTheWholeItem) {
  scene::makeApp(app);
  scene::link(app + "/Contents/Current", "MacOS");
  const auto before = scene::tree(app);
  EXPECT_EQ(move(), "nothing");
  EXPECT_EQ(scene::target(app), movedApp);
  EXPECT_EQ(scene::tree(movedApp), before);
}

TEST(MoverEngine, aSingleFileMovesToo) {
  scene::write("/Applications/note.txt", "text");
  EXPECT_EQ(move(hostPlatform(), "/Applications/note.txt"), "nothing");
  EXPECT_EQ(scene::target("/Applications/note.txt"), appsFolder + "/note.txt");
  EXPECT_EQ(scene::read("/Applications/note.txt"), "text");
}

TEST(MoverEngine, aMoveOfABundleIsRecorded) {
  doubles::FakeClock clock;
  clock.moment = moment;
  scene::makeInstallsDB();
  scene::makeApp(app, {.identifier = "com.example.foo", .version = "1.2.3"});
  const std::int64_t size = SizeCalculator::size(hostPlatform(), Path(app));
  EXPECT_EQ(
      move(replacing({.clock = &clock}), "/Applications/./Foo.app", "/Volumes/X9/ExternalQuarn/Data/../Apps"),
      "nothing");
  EXPECT_EQ(HealthManifest::load(hostPlatform()),
            (std::vector<HealthManifestEntry>{{app, movedApp, "com.example.foo", size, moment}}));
  EXPECT_EQ(scene::sql("SELECT app_name, bundle_id, version, installed_at, notes FROM installs"),
            (Lines{"Foo.app|com.example.foo|1.2.3|2026-01-31T09:05:00Z|moved by Quarn; symlink at "
                   "/Applications/./Foo.app -> /Volumes/X9/ExternalQuarn/Data/../Apps/Foo.app; " +
                   std::to_string(size) + " bytes"}));
  EXPECT_TRUE(scene::sql("SELECT * FROM tracked_files").empty());
}

TEST(MoverEngine, aMoveOfDataIsRecordedWithoutIdentifierAndVersion) {
  doubles::FakeClock clock;
  clock.moment = moment;
  scene::makeInstallsDB();
  scene::writeBytes(support + "/state", 9000);
  const std::int64_t size = SizeCalculator::size(hostPlatform(), Path(support));
  EXPECT_EQ(move(replacing({.clock = &clock}), support, supportFolder), "nothing");
  EXPECT_EQ(HealthManifest::load(hostPlatform()),
            (std::vector<HealthManifestEntry>{{support, movedSupport, std::nullopt, size, moment}}));
  EXPECT_EQ(scene::sql("SELECT app_name, bundle_id, version, source_file FROM installs"),
            (Lines{"Foo|NULL|NULL|" + movedSupport}));
}

TEST(MoverEngine, recordsThatCannotBeKeptDoNotFailTheMove) {
  scene::makeApp(app);
  scene::write(scene::home + "/Library/Application Support/Quarn", "a file in the way");
  scene::write(scene::installsDB, "no database");
  EXPECT_EQ(move(), "nothing");
  EXPECT_EQ(scene::target(app), movedApp);
  EXPECT_EQ(scene::read(scene::installsDB), "no database");
}

TEST(MoverEngine, sizesLeaveHiddenFilesOut) {
  scene::writeBytes(support + "/shown", 9000);
  const std::int64_t shown = SizeCalculator::size(hostPlatform(), Path(support));
  scene::writeBytes(support + "/.hidden", 90'000);
  std::vector<std::pair<std::int64_t, std::int64_t>> told;
  MoverEngine::moveAndLink(
      hostPlatform(), Path(support), Path(supportFolder), false, [](const JobStatus&) {},
      [&told](std::int64_t copied, std::int64_t total) { told.emplace_back(copied, total); });
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.back(), std::make_pair(shown, shown));
  EXPECT_EQ(HealthManifest::load(hostPlatform())[0].sizeBytes, shown);
}

// What is checked before anything is copied.

TEST(MoverEngine, aMissingSourceChangesNothing) {
  const auto before = scene::tree(scene::drive);
  EXPECT_EQ(move(), "Source path no longer exists.");
  scene::link(app, "/nowhere");
  EXPECT_EQ(move(), "Source path no longer exists.");
  EXPECT_EQ(scene::tree(scene::drive), before);
  EXPECT_EQ(scene::target(app), "/nowhere");
}

TEST(MoverEngine, aDestinationThatExistsStopsTheMoveAndBothStay) {
  scene::makeApp(app);
  scene::write(movedApp, "another");
  const auto before = scene::tree(app);
  EXPECT_EQ(move(), "Destination already exists.");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::read(movedApp), "another");
}

TEST(MoverEngine, aParentThatCannotBeMadeIsToldAsItIs) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  scene::write(appsFolder, "a file in the way");
  EXPECT_EQ(move(),
            "The file “Apps” couldn’t be saved in the folder “ExternalQuarn” because a file with the "
            "same name already exists.");
  fs::remove_all(scene::drive + "/ExternalQuarn");
  scene::write(scene::drive + "/ExternalQuarn", "a file in the way");
  EXPECT_EQ(move(), "The file “ExternalQuarn” couldn’t be saved in the folder “X9”.");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::read(scene::drive + "/ExternalQuarn"), "a file in the way");
}

TEST(MoverEngine, aSourceThatIsALinkToItsOwnCopyFindsTheDestinationTaken) {
  scene::makeApp(movedApp);
  scene::link(app, movedApp);
  EXPECT_EQ(move(), "Destination already exists.");
  EXPECT_EQ(scene::target(app), movedApp);
}

TEST(MoverEngine, aSourceThatIsALinkElsewhereIsCopiedAndFailsTheCheckAndStays) {
  scene::makeApp("/Users/Shared/Foo.app");
  scene::link(app, "/Users/Shared/Foo.app");
  EXPECT_EQ(move(), "Verification failed: Foo.app symlink target does not match.");
  EXPECT_EQ(scene::target(app), "/Users/Shared/Foo.app");
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
  EXPECT_FALSE(scene::exists(movedApp));
}

class FreeSpace : public ::testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(app);
    needed = SizeCalculator::size(hostPlatform(), Path(app));
    ASSERT_GT(needed, 4096);
  }
  std::string moveWith(std::int64_t free) {
    doubles::FakeVolumes volumes;
    VolumeProperties properties;
    properties.availableCapacityForImportantUsage = free;
    volumes.add(appsFolder, properties);
    return move(replacing({.volumes = &volumes}));
  }
  std::int64_t needed = 0;
};

TEST_F(FreeSpace, exactlyEnoughPasses) {
  EXPECT_EQ(moveWith(needed), "nothing");
}

TEST_F(FreeSpace, oneByteLessIsTooLittleAndLeavesOnlyTheParent) {
  const auto before = scene::tree(app);
  EXPECT_EQ(moveWith(needed - 1), "Not enough space. Need " + SizeCalculator::format(needed) + ", have " +
                                      SizeCalculator::format(needed - 1) + ".");
  EXPECT_EQ(moveWith(1), "Not enough space. Need " + SizeCalculator::format(needed) + ", have 0 KB.");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::tree(appsFolder).size(), 1u);
}

TEST_F(FreeSpace, zeroMeansUnknownAndPasses) {
  EXPECT_EQ(moveWith(0), "nothing");
}

TEST_F(FreeSpace, aVolumeThatDoesNotTellPasses) {
  doubles::FakeVolumes silent;
  EXPECT_EQ(move(replacing({.volumes = &silent})), "nothing");
}

}  // namespace
}  // namespace quarn
