#include <algorithm>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/Doubles.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

using VolumesSubject = Subject<quarn::Volumes>;

std::shared_ptr<quarn::Volumes> theHosts() {
  return notOwned(hostPlatform().volumes);
}
/// With what the host tells of the startup disk.
std::shared_ptr<quarn::Volumes> fake() {
  const auto volumes = std::make_shared<doubles::FakeVolumes>();
  volumes->add("/", *hostPlatform().volumes.properties(Path("/")));
  return volumes;
}

class Volumes : public testing::TestWithParam<VolumesSubject> {
 protected:
  quarn::Volumes& volumes() const { return *volumes_; }

 private:
  std::shared_ptr<quarn::Volumes> volumes_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Volumes,
                         testing::Values(VolumesSubject{"Host", theHosts},
                                         VolumesSubject{"FakeVolumes", fake}),
                         nameOf<VolumesSubject>);

TEST_P(Volumes, theRootIsMountedOnceAndNothingHiddenIs) {
  const auto mounted = volumes().mounted().orThrow();
  EXPECT_EQ(std::count(mounted.begin(), mounted.end(), Path("/")), 1);
  for (const Path& path : mounted) EXPECT_NE(path.lastComponent().front(), '.') << path.text();
}

TEST_P(Volumes, whatIsMountedHasAMountPoint) {
  const auto points = volumes().mountPoints().orThrow();
  for (const Path& path : volumes().mounted().orThrow())
    EXPECT_EQ(std::count(points.begin(), points.end(), path), 1) << path.text();
}

TEST_P(Volumes, whatIsMountedTellsOfItself) {
  for (const Path& path : volumes().mounted().orThrow()) {
    const auto properties = volumes().properties(path);
    ASSERT_TRUE(properties) << path.text();
    EXPECT_NE(properties->name.value_or(""), "") << path.text();
    EXPECT_GT(properties->totalCapacity.value_or(0), 0) << path.text();
    EXPECT_TRUE(properties->availableCapacity) << path.text();
    EXPECT_LE(properties->availableCapacity.value_or(0), properties->totalCapacity.value_or(0))
        << path.text();
    EXPECT_LE(properties->availableCapacityForImportantUsage.value_or(0),
              properties->totalCapacity.value_or(0))
        << path.text();
  }
}

TEST_P(Volumes, theRootIsInternal) {
  EXPECT_EQ(volumes().properties(Path("/"))->isInternal, true);
}

TEST_P(Volumes, aMissingItemHasNone) {
  ScratchFolder scratch;
  EXPECT_FALSE(volumes().properties(scratch / "none"));
}

TEST(HostVolumes, anItemBelongsToTheVolumeThatHoldsIt) {
  const auto there = ScratchFolder::onOtherVolume();
  if (!there) GTEST_SKIP() << "there is no second volume to write to";
  const ScratchFolder here;
  here.write("file");
  there->write("file");
  here.link("toTheDrive", there->at("file"));
  const auto properties = [](const Path& item) { return hostPlatform().volumes.properties(item).orThrow(); };
  EXPECT_EQ(properties(here / "file").name, properties(here.path()).name);
  EXPECT_EQ(properties(here / "toTheDrive").name, properties(here.path()).name) << "a link is an item itself";
  EXPECT_EQ(properties(*there / "file").totalCapacity, properties(there->path()).totalCapacity);
}

}  // namespace
}  // namespace quarn::contract
