#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/health/RevertDetection.h"
#include "QuarnCore/health/SymlinkScanning.h"
#include "QuarnCore/move/HealthManifest.h"
#include "tests/health/Looking.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"

namespace quarn {
namespace {

using Names = std::vector<std::string>;

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
const std::string otherApps = "/Volumes/Other/ExternalQuarn/Apps";
const std::string copy = apps + "/Foo.app";
const std::string internal = "/Applications/Foo.app";

std::int64_t sizeOf(const std::string& path) {
  return SizeCalculator::size(hostPlatform(), Path(path));
}

HealthIssue reverted(const std::string& location, const std::string& target) {
  return {.kind = HealthIssue::Kind::reverted,
          .location = Path(location),
          .target = Path(target),
          .detail =
              "An updater replaced the symlink with a real bundle on internal disk. SSD copy is now "
              "orphaned.",
          .sizeBytes = sizeOf(target)};
}

SSDRevertDetector::Result detectOnDrives(const Names& roots, const TextSet& realNames) {
  return SSDRevertDetector::detect(hostPlatform(), paths(roots), realNames);
}

TEST(SSDRevertDetector, aRealBundleWithACopyOnADriveIsReverted) {
  scene::makeApp(internal);
  scene::makeApp(copy, {}, 90'000);
  scene::makeApp(apps + "/Unrelated.app");
  const auto found = detectOnDrives({apps}, {"Foo.app", "Bar.app"});
  EXPECT_EQ(found.issues, std::vector{reverted(internal, copy)});
  EXPECT_GE(found.issues[0].sizeBytes, 90'000) << "the copy on the drive is measured";
  EXPECT_EQ(found.handledSources, TextSet{internal});
}

TEST(SSDRevertDetector, copiesOnTwoDrivesAreTwoFindingsOfOneBundle) {
  scene::makeApp(internal);
  scene::makeApp(copy);
  scene::makeApp(otherApps + "/Foo.app");
  const auto found = detectOnDrives({otherApps, "/nowhere", apps}, {"Foo.app"});
  EXPECT_EQ(found.issues,
            (std::vector{reverted(internal, otherApps + "/Foo.app"), reverted(internal, copy)}));
  EXPECT_EQ(found.handledSources, TextSet{internal});
}

TEST(SSDRevertDetector, aNameOfAnotherFolderIsReportedAtTheFixedPath) {
  scene::makeApp("/Users/me/Applications/Foo.app");
  scene::makeApp(copy);
  EXPECT_EQ(detectOnDrives({apps}, {"Foo.app"}).issues, std::vector{reverted(internal, copy)});
  EXPECT_FALSE(scene::exists(internal));
}

TEST(SSDRevertDetector, aLauncherIsExpectedAndOneWithoutItsTargetIsNot) {
  scene::makeApp(copy);
  scene::makeLauncher(internal, copy);
  const auto found = detectOnDrives({apps}, {"Foo.app"});
  EXPECT_TRUE(found.issues.empty());
  EXPECT_EQ(found.handledSources, TextSet{internal});
  scene::write(internal + "/Contents/Resources/ExternalAppTarget.txt", "/Volumes/X9/Gone.app");
  EXPECT_EQ(detectOnDrives({apps}, {"Foo.app"}).issues, std::vector{reverted(internal, copy)});
}

TEST(SSDRevertDetector, hiddenAndOtherNamesAreLeftOut) {
  const TextSet all = {".Foo.app", "Foo.APP", "Foo.bundle", "Foo"};
  for (const std::string& name : all) scene::makeFolder(apps + "/" + name);
  const auto found = detectOnDrives({apps}, all);
  EXPECT_TRUE(found.issues.empty());
  EXPECT_TRUE(found.handledSources.empty());
}

TEST(SSDRevertDetector, aNameIsTheSameInAnySpelling) {
  scene::makeFolder(apps + "/Cafe\u0301.app");
  EXPECT_EQ(locations(detectOnDrives({apps}, {"Caf\u00E9.app"}).issues),
            Names{"/Applications/Cafe\u0301.app"});
}

TEST(SSDRevertDetector, aRootThatMayNotBeReadLeavesTheOthers) {
  scene::makeApp(copy);
  scene::makeApp(otherApps + "/Foo.app");
  std::filesystem::permissions(otherApps, std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(detectOnDrives({otherApps, apps}, {"Foo.app"}).issues,
                        std::vector{reverted(internal, copy)});
            }),
            "");
}

// 2026-01-31T09:05:00Z
const Moment moment{std::chrono::seconds(1'769'850'300)};

void record(const std::string& source, const std::string& destination) {
  Platform platform = hostPlatform();
  HealthManifest::record(
      platform,
      {.sourcePath = source, .destinationPath = destination, .bundleIdentifier = {}, .movedAt = moment});
}

HealthIssue remembered(const std::string& location, const std::string& target) {
  return {.kind = HealthIssue::Kind::reverted,
          .location = Path(location),
          .target = Path(target),
          .detail =
              "Manifest says this was symlinked to SSD on 2026-01-31 09:05:00 +0000. It's now a real "
              "bundle on internal disk and the SSD copy is gone.",
          .sizeBytes = sizeOf(location)};
}

std::vector<HealthIssue> detectRemembered(const TextSet& links = {}, const TextSet& already = {}) {
  return ManifestRevertDetector::detect(hostPlatform(), links, already);
}

TEST(ManifestRevertDetector, aRealBundleAtARecordedSourceIsRevertedWithItsOwnSize) {
  scene::makeApp(internal, {}, 90'000);
  scene::makeApp("/Applications/Bar.app");
  record(internal, copy);
  record("/Applications/Bar.app", "/Volumes/Unplugged/Bar.app");
  const auto found = detectRemembered();
  EXPECT_EQ(found, (std::vector{remembered(internal, copy),
                                remembered("/Applications/Bar.app", "/Volumes/Unplugged/Bar.app")}));
  EXPECT_GE(found[0].sizeBytes, 90'000);
}

TEST(ManifestRevertDetector, withoutARecordThereIsNothingToFind) {
  scene::makeApp(internal);
  EXPECT_TRUE(detectRemembered().empty());
  scene::write(scene::manifest, "[{broken");
  EXPECT_TRUE(detectRemembered().empty());
}

TEST(ManifestRevertDetector, whatIsKnownAlreadyIsSkippedInAnySpelling) {
  const std::string source = "/Applications/Caf\u00E9.app";
  scene::makeApp(source);
  record(source, copy);
  EXPECT_EQ(detectRemembered().size(), 1u);
  EXPECT_TRUE(detectRemembered({"/Applications/Cafe\u0301.app"}, {}).empty());
  EXPECT_TRUE(detectRemembered({}, {"/Applications/Cafe\u0301.app"}).empty());
}

TEST(ManifestRevertDetector, aLiveLinkIsSkippedWhetherItIsKnownOrNot) {
  scene::makeApp(copy);
  scene::link(internal, copy);
  record(internal, copy);
  EXPECT_TRUE(detectRemembered().empty());
  EXPECT_TRUE(detectRemembered({internal}, {}).empty());
}

TEST(ManifestRevertDetector, aDeadLinkOrNothingAtTheSourceIsNoFinding) {
  scene::link(internal, "/Volumes/X9/Gone.app");
  record(internal, copy);
  record("/Applications/Deleted.app", copy);
  EXPECT_TRUE(detectRemembered().empty());
}

TEST(ManifestRevertDetector, whatCannotBeLookedUpCountsAsReal) {
  scene::makeApp(copy);
  scene::link(internal, copy);
  record(internal, copy);
  Blinded files;
  files.withoutAttributes = {internal};
  const auto found = ManifestRevertDetector::detect(replacing({.files = &files}), {}, {});
  EXPECT_EQ(locations(found), Names{internal});
  EXPECT_EQ(found[0].sizeBytes, 0);
}

TEST(ManifestRevertDetector, aDestinationThatNoLinkCanHoldIsNoneOfAMove) {
  scene::makeApp(internal);
  scene::makeApp("/Applications/Bar.app");
  record(internal, "/" + std::string(4096, 'x'));
  record("/Applications/Bar.app", "/" + std::string(4095, 'x'));
  EXPECT_EQ(locations(detectRemembered()), Names{"/Applications/Bar.app"});
}

TEST(ManifestRevertDetector, theRecordsOfAStrangerAreTakenAsTheyAre) {
  /// Measuring the root would walk through all there is.
  class WithoutWalks : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    void walk(const Path&, Hidden, WalkVisitor&) const override {}
  } files(hostPlatform().files);
  doubles::FakePlaces places;
  places.current = Path(std::filesystem::current_path().string());
  const std::string here = places.current.text();
  scene::makeFolder(here + "/relative");
  for (const char* source : {"", "/", "relative", "../no/such/item"}) record(source, "target");
  record(std::string("/Applications\0/x", 16), copy);
  record("/Applications/" + std::string(5000, 'x'), copy);
  const auto found = ManifestRevertDetector::detect(replacing({.files = &files, .places = &places}), {}, {});
  EXPECT_EQ(locations(found), (Names{"/", here + "/relative"}));
  EXPECT_EQ(found[1].target, Path(here + "/target"));
}

HealthIssue orphan(const std::string& location, const std::string& size) {
  return {.kind = HealthIssue::Kind::orphan,
          .location = Path(location),
          .target = std::nullopt,
          .detail = "Bundle on SSD with no inbound symlink. Wasting " + size + ".",
          .sizeBytes = sizeOf(location)};
}

std::vector<HealthIssue> detectOrphans(const Names& roots, const TextSet& targets = {},
                                       const TextSet& realNames = {}) {
  return OrphanedBundleDetector::detect(hostPlatform(), paths(roots), targets, realNames);
}

TEST(OrphanedBundleDetector, aBundleThatNothingLeadsToIsAnOrphan) {
  scene::writeBytes(copy + "/Contents/file", 81'920);
  scene::makeFolder(otherApps + "/Bar.app");
  EXPECT_EQ(detectOrphans({apps, "/nowhere", otherApps}),
            (std::vector{orphan(copy, "82 KB"), orphan(otherApps + "/Bar.app", "Zero KB")}));
}

TEST(OrphanedBundleDetector, aLinkedBundleIsNoneInAnySpelling) {
  scene::makeFolder(apps + "/Caf\u00E9.app");
  EXPECT_EQ(detectOrphans({apps}).size(), 1u);
  EXPECT_TRUE(detectOrphans({apps}, {apps + "/Cafe\u0301.app"}).empty());
  EXPECT_TRUE(detectOrphans({"/Volumes/X9/./ExternalQuarn//Apps"}, {apps + "/Caf\u00E9.app"}).empty())
      << "paths are compared standardized";
}

TEST(OrphanedBundleDetector, onlyLinksFromTheFoldersThatWereScannedCount) {
  scene::makeApp(copy);
  const auto targets = [](const std::string& root) {
    TextSet set;
    for (const auto& link : ApplicationsRootScan::scan(hostPlatform(), paths({root})).symlinks)
      set.insert(link.target.text());
    return set;
  };
  scene::link("/Users/me/Applications/Foo.app", copy);
  EXPECT_EQ(locations(detectOrphans({apps}, targets("/Applications"))), Names{copy});
  scene::link(internal, copy);
  EXPECT_TRUE(detectOrphans({apps}, targets("/Applications")).empty());
}

TEST(OrphanedBundleDetector, aNameThatIsARealBundleIsNone) {
  scene::makeApp(copy);
  EXPECT_TRUE(detectOrphans({apps}, {}, {"Foo.app"}).empty());
  EXPECT_EQ(detectOrphans({apps}, {}, {"foo.app", "Foo"}).size(), 1u);
}

TEST(OrphanedBundleDetector, hiddenAndOtherNamesAreLeftOut) {
  for (const char* name : {".Foo.app", "Foo.APP", "Foo.bundle", "Foo", "Folder/Foo.app"})
    scene::makeFolder(apps + "/" + name);
  EXPECT_TRUE(detectOrphans({apps}).empty());
}

TEST(OrphanedBundleDetector, keepsTheOrderOfTheDiskAndOddNames) {
  for (const std::string& name : oddNames()) scene::makeFolder(apps + "/" + name + ".app");
  EXPECT_EQ(locations(detectOrphans({apps})), inOrderOfDisk(apps));
}

TEST(OrphanedBundleDetector, aRootThatMayNotBeReadLeavesTheOthers) {
  scene::makeApp(copy);
  scene::makeApp(otherApps + "/Foo.app");
  std::filesystem::permissions(otherApps, std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(locations(detectOrphans({otherApps, apps})), Names{copy});
            }),
            "");
}

TEST(RevertDetection, aLauncherWithItsCopyIsNoFindingAtAll) {
  scene::makeApp(copy);
  scene::makeLauncher(internal, copy);
  record(internal, copy);
  const TextSet realNames = ApplicationsRootScan::scan(hostPlatform(), paths({"/Applications"})).realAppNames;
  EXPECT_EQ(realNames, TextSet{"Foo.app"});
  const auto onDrives = detectOnDrives({apps}, realNames);
  EXPECT_TRUE(onDrives.issues.empty());
  EXPECT_TRUE(detectOrphans({apps}, {}, realNames).empty());
  EXPECT_TRUE(detectRemembered({}, onDrives.handledSources).empty());
}

TEST(RevertDetection, aBundleThatBothKnowOfIsReportedOnce) {
  scene::makeApp(internal);
  scene::makeApp(copy);
  record(internal, copy);
  const auto onDrives = detectOnDrives({apps}, {"Foo.app"});
  EXPECT_EQ(onDrives.issues.size(), 1u);
  EXPECT_TRUE(detectRemembered({}, onDrives.handledSources).empty());
}

}  // namespace
}  // namespace quarn
