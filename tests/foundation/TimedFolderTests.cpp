#include <gtest/gtest.h>

#include "Platform/DateText.h"
#include "QuarnCore/foundation/TimedFolder.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string parent = "/Users/me/Records";

/// Time that goes on by as much as somebody sleeps.
class PassingClock : public doubles::FakeClock {
 public:
  void sleep(std::chrono::milliseconds duration) override {
    FakeClock::sleep(duration);
    moment += duration;
  }
};

class TimedFolders : public testing::Test {
 protected:
  TimedFolders() { clock.moment = Moment(std::chrono::milliseconds(1'700'000'000'900)); }
  std::string name(int seconds) const {
    return DateText::compactLocal(start + std::chrono::seconds(seconds));
  }
  std::string path(int seconds) const { return parent + "/" + name(seconds); }
  Result<std::string> make() { return TimedFolder::make(platform, Path(parent)); }

  const Moment start{std::chrono::seconds(1'700'000'000)};
  PassingClock clock;
  Platform platform = replacing({.clock = &clock});
};

TEST_F(TimedFolders, makesTheFolderOfThePresentSecondAndItsParents) {
  EXPECT_EQ(make().orThrow(), name(0));
  EXPECT_EQ(scene::tree(path(0)).size(), 1U);
  EXPECT_EQ(clock.sleeps, 0);
}

TEST_F(TimedFolders, waitsUntilTheNextSecondWhereTheNameIsTakenByAnything) {
  scene::write(path(0), "a file");
  scene::link(path(1), "nowhere");
  EXPECT_EQ(make().orThrow(), name(2));
  EXPECT_EQ(clock.seconds(), 1.1) << "to the end of the second, and one more";
  EXPECT_EQ(scene::read(path(0)), "a file");
  EXPECT_EQ(scene::target(path(1)), "nowhere");
}

TEST_F(TimedFolders, failsWhereThreeSecondsAreTakenAndTouchesNone) {
  for (int second = 0; second < 3; ++second) scene::write(path(second) + "/precious", "precious");
  const auto before = scene::tree(parent);
  const auto made = make();
  ASSERT_FALSE(made);
  EXPECT_EQ(made.error().code, CocoaErrorCode::fileWriteFileExists);
  EXPECT_EQ(scene::tree(parent), before);
  EXPECT_EQ(clock.sleeps, 2);
}

TEST_F(TimedFolders, failsAtOnceWhereNoFolderCanBeMade) {
  const PlatformError refusal(cocoaErrorDomain, CocoaErrorCode::fileWriteNoPermission, "no right");
  GatedPlatform gated(
      [&](const std::string& operation) -> Result<void> {
        if (operation.starts_with("claim ")) return refusal;
        return {};
      },
      platform);
  EXPECT_EQ(TimedFolder::make(gated.platform(), Path(parent)).error().localizedDescription(), "no right");
  EXPECT_EQ(clock.sleeps, 0);
}

TEST_F(TimedFolders, failsAtOnceWhereItsParentCannotBeMade) {
  scene::write(parent, "a file in the way");
  EXPECT_FALSE(make());
  EXPECT_EQ(clock.sleeps, 0);
  EXPECT_EQ(scene::read(parent), "a file in the way");
}

}  // namespace
}  // namespace quarn
