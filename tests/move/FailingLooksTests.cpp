#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/PathMover.h"
#include "tests/move/Moving.h"
#include "tests/support/Unresolving.h"

/// What can't be looked at is told as that, and not as missing: whoever reads it would look for a drive to
/// plug in while the disk fails.

namespace quarn {
namespace {

using namespace moving;

TEST(FailingLook, atTheSourceOfAMoveIsTold) {
  scene::makeApp(app);
  Unseeable files(app);
  EXPECT_EQ(move(replacing({.files = &files})), Unresolving::of("Foo.app"));
  EXPECT_FALSE(scene::exists(movedApp));
}

TEST(FailingLook, atTheTargetOfALinkIsToldOnTheWayHome) {
  scene::makeApp(movedApp);
  scene::link(app, movedApp);
  Unseeable files(movedApp);
  EXPECT_EQ(restore(replacing({.files = &files})), Unresolving::of("Foo.app"));
  EXPECT_TRUE(scene::isLink(app));
}

TEST(FailingLook, atEitherSideOfAPathIsTold) {
  scene::write(support + "/state", "mine");
  for (const std::string& item : {support, scene::drive}) {
    Unseeable files(item);
    EXPECT_EQ(thrown([&] {
                PathMover::plan(replacing({.files = &files}), Path(support), Path(scene::drive + "/Foo"));
              }),
              Unresolving::of("Foo"))
        << item;
  }
}

TEST(FailingLook, atADriveIsTold) {
  Unseeable files(scene::drive);
  const Platform platform = replacing({.files = &files});
  EXPECT_EQ(thrown([&] { ChosenVolume::ofDrive(platform, Path(scene::drive)); }), Unresolving::of("X9"));
  EXPECT_EQ(thrown([&] { ChosenVolume::requiredFor(platform, Path(appsFolder)); }), Unresolving::of("Apps"));
}

}  // namespace
}  // namespace quarn
