#include <filesystem>
#include <sys/stat.h>

#include "tests/move/Moving.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Places = std::vector<std::string>;

const PlatformError broken("test", 1, "It broke.");

/// Refuses every operation that begins with one of the words.
class Refusing {
 public:
  explicit Refusing(std::vector<std::string> words, std::function<void(const std::string&)> halfway = {})
      : gated_([words = std::move(words), halfway = std::move(halfway)](const std::string& operation) {
          for (const std::string& word : words) {
            if (!operation.starts_with(word)) continue;
            if (halfway) halfway(operation);
            return Result<void>(broken);
          }
          return Result<void>();
        }) {}
  Platform& platform() { return gated_.platform(); }

 private:
  GatedPlatform gated_;
};

void ditto(const std::string& script) {
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\n" + script + "\n");
}

class FailedMove : public ::testing::Test {
 protected:
  void SetUp() override { scene::makeApp(app); }
  void expectNoRecords() { EXPECT_FALSE(scene::exists(scene::manifest)); }
  /// The stages told before the end.
  std::vector<JobStatus::Stage> stages;
  std::string moveTellingStages(Platform& platform = hostPlatform()) {
    return thrown([&] {
      MoverEngine::moveAndLink(platform, Path(app), Path(appsFolder), false,
                               [this](const JobStatus& status) { stages.push_back(status.stage); }, {});
    });
  }
};

TEST_F(FailedMove, ofTheCopyLeavesTheSourceWholeAndThePartInTheTrash) {
  const NothingLost oracle(app);
  ditto("mkdir -p \"$3\"; echo part >\"$3/part\"; echo 'ditto: no room' >&2; exit 1");
  EXPECT_EQ(moveTellingStages(), "Copy failed: ditto failed: ditto: no room");
  EXPECT_TRUE(stages.empty());
  EXPECT_EQ(oracle.wholeAt(), (Places{app}));
  EXPECT_EQ(scene::read(driveTrash() + "/Foo.app/part"), "part\n");
  EXPECT_FALSE(scene::exists(movedApp));
  expectNoRecords();
}

TEST_F(FailedMove, ofTheCheckLeavesTheSourceWholeAndTheCopyInTheTrash) {
  const NothingLost oracle(app);
  ditto("cp -a \"$2/.\" \"$3\"; : >\"$3/Contents/Resources/data.bin\"");
  EXPECT_EQ(moveTellingStages(),
            "Verification failed: Contents/Resources/data.bin copied with a different file size.");
  EXPECT_EQ(stages, (std::vector<JobStatus::Stage>{JobStatus::Stage::verifying}));
  EXPECT_EQ(oracle.wholeAt(), (Places{app}));
  EXPECT_TRUE(scene::exists(driveTrash() + "/Foo.app/Contents/Info.plist"));
  EXPECT_FALSE(scene::exists(movedApp));
  expectNoRecords();
}

TEST_F(FailedMove, ofACopyThatMadeNothingIsFoundByTheCheck) {
  ditto("exit 0");
  EXPECT_EQ(moveTellingStages(), "Verification failed: Foo.app is missing at the destination.");
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
}

TEST_F(FailedMove, findsWhatChangedInTheSourceWhileTheCopyWasWrittenOut) {
  const std::vector<std::pair<std::function<void()>, std::string>> rows = {
      {[] { scene::write(app + "/Contents/late", "x"); }, "Foo.app copied with 7 of 8 entries — 1 missing."},
      {[] { scene::writeBytes(app + "/Contents/Resources/data.bin", 40'001); },
       "Contents/Resources/data.bin copied with a different file size."},
  };
  for (const auto& [change, reason] : rows) {
    fs::remove_all(app);
    scene::makeApp(app);
    GatedPlatform gated([&change = change](const std::string& operation) {
      if (operation.starts_with("flush")) change();
      return Result<void>();
    });
    EXPECT_EQ(move(gated.platform()), "Verification failed: " + reason);
    EXPECT_FALSE(scene::isLink(app));
    EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
    EXPECT_FALSE(scene::exists(movedApp));
  }
}

TEST_F(FailedMove, ofTheRemovalLeavesTheCopyInTheTrash) {
  const NothingLost oracle(app);
  Refusing refusing({"remove " + app});
  EXPECT_EQ(moveTellingStages(refusing.platform()), "Could not remove original after copy: It broke.");
  EXPECT_EQ(stages, (std::vector<JobStatus::Stage>{JobStatus::Stage::verifying, JobStatus::Stage::linking}));
  EXPECT_EQ(oracle.wholeAt(), (Places{app, driveTrash() + "/Foo.app"}));
  expectNoRecords();
}

TEST_F(FailedMove, ofARemovalThatStoppedHalfwayLeavesTheWholeCopyInTheTrash) {
  const NothingLost oracle(app);
  Refusing refusing({"remove " + app},
                    [](const std::string&) { fs::remove_all(app + "/Contents/Resources"); });
  EXPECT_EQ(move(refusing.platform()), "Could not remove original after copy: It broke.");
  EXPECT_EQ(oracle.wholeAt(), (Places{driveTrash() + "/Foo.app"}));
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
  EXPECT_FALSE(scene::isLink(app));
}

TEST_F(FailedMove, ofARemovalThatTheSystemWouldRefuseIsFoundBeforeAnythingIsRemoved) {
  ::chmod((app + "/Contents/Resources").c_str(), 0555);
  const NothingLost oracle(app);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(move(),
                        "Could not remove original after copy: “Foo.app” couldn’t be removed because "
                        "you don’t have permission to access it.");
            }),
            "");
  EXPECT_EQ(oracle.wholeAt(), (Places{app, driveTrash() + "/Foo.app"}));
  EXPECT_FALSE(scene::exists(movedApp));
}

TEST_F(FailedMove, ofTheLinkBringsTheCopyHome) {
  const NothingLost oracle(app);
  Refusing refusing({"createSymbolicLink"});
  EXPECT_EQ(move(refusing.platform()), "Symlink creation failed: It broke.");
  EXPECT_EQ(oracle.wholeAt(), (Places{app}));
  EXPECT_FALSE(scene::exists(driveTrash()));
  expectNoRecords();
}

TEST_F(FailedMove, ofTheLinkAndOfTheWayHomeLeavesTheCopyOnTheDrive) {
  const NothingLost oracle(app);
  Refusing refusing({"createSymbolicLink", "rename", "copy "});
  EXPECT_EQ(move(refusing.platform()), "Symlink creation failed: It broke.");
  EXPECT_EQ(oracle.wholeAt(), (Places{movedApp}));
  EXPECT_FALSE(scene::exists(app));
}

TEST_F(FailedMove, ofTheLinkBecauseSomethingTookThePlaceTellsThePlatformsWords) {
  const NothingLost oracle(app);
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("createSymbolicLink")) scene::write(app, "somebody else's");
    return Result<void>();
  });
  EXPECT_EQ(
      move(gated.platform()),
      "Symlink creation failed: The file “Foo.app” couldn’t be saved in the folder “Applications” because "
      "a file with the same name already exists.");
  EXPECT_EQ(oracle.wholeAt(), (Places{movedApp}));
  EXPECT_EQ(scene::read(app), "somebody else's");
}

TEST_F(FailedMove, whoseCopyTheTrashRefusesSetsItAsideAndTheNextAttemptSucceeds) {
  doubles::RefusingTrash trash;
  doubles::FakeClock clock;
  clock.moment = Moment{std::chrono::seconds(1'769'850'300)};
  Refusing refusing({"remove " + app});
  const NothingLost oracle(app);
  EXPECT_EQ(move(replacing({.trash = &trash, .clock = &clock}, refusing.platform())),
            "Could not remove original after copy: It broke.");
  EXPECT_EQ(oracle.wholeAt(), (Places{app, appsFolder + "/.QuarnTrash/Foo.app-1769850300"}));
  EXPECT_EQ(move(), "nothing");
}

TEST_F(FailedMove, whoseCopyCannotBeSetAsideStopsTheNextAttempt) {
  doubles::RefusingTrash trash;
  Refusing refusing({"remove " + app, "rename"});
  const NothingLost oracle(app);
  EXPECT_EQ(move(replacing({.trash = &trash}, refusing.platform())),
            "Could not remove original after copy: It broke.");
  EXPECT_EQ(oracle.wholeAt(), (Places{app, movedApp}));
  EXPECT_EQ(move(), "Destination already exists.");
  EXPECT_EQ(oracle.wholeAt(), (Places{app, movedApp}));
}

TEST_F(FailedMove, neverOverwritesWhatLiesInTheTrashUnderItsName) {
  scene::write(driveTrash() + "/Foo.app/mine", "kept");
  ditto("mkdir -p \"$3\"; echo part >\"$3/part\"; exit 1");
  EXPECT_EQ(move(), "Copy failed: ditto failed: exit 1");
  EXPECT_EQ(scene::read(driveTrash() + "/Foo.app/mine"), "kept");
  EXPECT_FALSE(scene::exists(driveTrash() + "/Foo.app/part"));
  EXPECT_FALSE(scene::exists(movedApp));
}

}  // namespace
}  // namespace quarn
