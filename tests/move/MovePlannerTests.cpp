#include <filesystem>
#include <set>
#include <sys/stat.h>

#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoverEngine.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string apps = scene::drive + "/ExternalQuarn/Apps";
const std::string data = scene::drive + "/ExternalQuarn/Data";
const std::string caches = scene::home + "/Library/Caches";

DriveInfo x9() {
  DriveInfo drive;
  drive.mountPath = Path(scene::drive);
  return drive;
}

AppEntry entry(const std::string& name, const std::string& bundle, const std::vector<std::string>& dataPaths,
               std::int64_t size = 0) {
  AppEntry result;
  result.name = name;
  result.bundlePath = Path(bundle);
  result.appSize = size;
  for (const std::string& path : dataPaths) result.dataPaths.emplace_back(path);
  return result;
}

std::vector<MoveJob> jobs(const std::vector<AppEntry>& entries, bool includeData = true) {
  return MovePlanner::buildAppJobs(hostPlatform(), entries, x9(), includeData);
}

/// "label | source | destination" for each job.
std::vector<std::string> lines(const std::vector<MoveJob>& queue) {
  std::vector<std::string> result;
  for (const MoveJob& job : queue) {
    result.push_back(job.label + " | " + job.source.text() + " | " + job.destination.text());
  }
  return result;
}

using Lines = std::vector<std::string>;

bool shouldMove(const std::string& path) {
  return MovePlanner::shouldMove(hostPlatform(), Path(path));
}

TEST(MovePlanner, aBundleGoesFlatToTheAppsFolderAndItsDataBelowDataInTheGivenOrder) {
  scene::makeApp("/Applications/Utilities/Foo.app");
  scene::makeFolder(caches + "/com.example.foo");
  scene::makeFolder("/Library/Caches/foo");
  scene::makeApp(scene::home + "/Applications/Bar.app");

  const auto queue = jobs({entry("Foo", "/Applications/Utilities/Foo.app",
                                 {"/Library/Caches/foo", caches + "/com.example.foo"}, 1234),
                           entry("Bar", scene::home + "/Applications/Bar.app", {}, 5)});

  EXPECT_EQ(lines(queue), (Lines{
                              "Foo | /Applications/Utilities/Foo.app | " + apps + "/Foo.app",
                              "Foo — foo | /Library/Caches/foo | " + data + "/System/Library/Caches/foo",
                              "Foo — com.example.foo | " + caches + "/com.example.foo | " + data +
                                  "/Library/Caches/com.example.foo",
                              "Bar | " + scene::home + "/Applications/Bar.app | " + apps + "/Bar.app",
                          }));
  EXPECT_EQ(queue[0].bytesTotal, 1234);
  EXPECT_EQ(queue[3].bytesTotal, 5);
}

TEST(MovePlanner, everyJobIsPendingWithAnIdentifierOfItsOwn) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  const auto queue =
      jobs({entry("Foo", "/Applications/Foo.app", {}), entry("Bar", "/Applications/Bar.app", {})});
  ASSERT_EQ(queue.size(), 2u);
  EXPECT_NE(queue[0].id, queue[1].id);
  for (const MoveJob& job : queue) {
    EXPECT_EQ(job.id.size(), 36u);
    EXPECT_EQ(job.status, JobStatus{});
    EXPECT_EQ(job.status.stage, JobStatus::Stage::pending);
    EXPECT_EQ(job.bytesCopied, 0);
  }
}

TEST(MovePlanner, aDataJobIsAsLargeAsItsFolderMeasures) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(caches + "/foo/a", 70'000);
  scene::writeBytes(caches + "/foo/sub/b", 9'000);
  std::int64_t allocated = 0;
  for (const char* file : {"/foo/a", "/foo/sub/b"}) {
    struct stat status {};
    ASSERT_EQ(::lstat((caches + file).c_str(), &status), 0);
    allocated += status.st_blocks * 512;
  }
  const auto queue = jobs({entry("Foo", "/Applications/Foo.app", {caches + "/foo"})});
  ASSERT_EQ(queue.size(), 2u);
  EXPECT_GT(allocated, 0);
  EXPECT_EQ(queue[1].bytesTotal, allocated);
}

/// Notes what is walked.
class NotingWalks : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    walked.push_back(root.text());
    FileSystemDecorator::walk(root, hidden, visitor);
  }
  mutable Lines walked;
};

TEST(MovePlanner, measuresNothingThatHasBeenMeasured) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(caches + "/foo/a", 70'000);
  scene::writeBytes(caches + "/other/b", 9'000);
  NotingWalks files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  AppEntry app = AppScanner::computeSizes(
      platform, entry("Foo", "/Applications/Foo.app", {caches + "/foo", caches + "/other"}));
  EXPECT_EQ(files.walked, (Lines{"/Applications/Foo.app", caches + "/foo", caches + "/other"}));
  const auto queue = MovePlanner::buildAppJobs(platform, {app}, x9(), true);
  EXPECT_EQ(files.walked.size(), 3U) << "each once";
  ASSERT_EQ(queue.size(), 3U);
  EXPECT_EQ(queue[1].bytesTotal, SizingService::measure(hostPlatform(), Path(caches + "/foo")));
  EXPECT_EQ(queue[2].bytesTotal, SizingService::measure(hostPlatform(), Path(caches + "/other")));

  app.dataPathSizes.pop_back();
  const auto partlyMeasured = MovePlanner::buildAppJobs(platform, {app}, x9(), true);
  EXPECT_EQ(files.walked.size(), 4U) << "what has no size yet is measured";
  EXPECT_EQ(files.walked.back(), caches + "/other");
  EXPECT_EQ(partlyMeasured[2].bytesTotal, queue[2].bytesTotal);

  std::swap(app.dataPaths[0], app.dataPaths[1]);
  const auto otherOrder = MovePlanner::buildAppJobs(platform, {app}, x9(), true);
  EXPECT_EQ(otherOrder[1].bytesTotal, queue[2].bytesTotal) << "a size counts for its own path alone";
}

TEST(MovePlanner, withoutDataAnEntryGivesAtMostOneJob) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeFolder(caches + "/foo");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app", {caches + "/foo"})}, false)),
            (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app"}));
}

TEST(MovePlanner, noEntriesOrOnlyLinksWithoutDataGiveNoJob) {
  scene::makeApp(apps + "/Foo.app");
  scene::link("/Applications/Foo.app", apps + "/Foo.app");
  EXPECT_TRUE(jobs({}).empty());
  EXPECT_TRUE(jobs({entry("Foo", "/Applications/Foo.app", {})}).empty());
}

TEST(MovePlanner, theDataOfABundleThatStaysCanStillBeQueued) {
  scene::makeApp(apps + "/Foo.app");
  scene::link("/Applications/Foo.app", apps + "/Foo.app");
  scene::makeFolder(caches + "/foo");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app", {caches + "/foo"})})),
            (Lines{"Foo — foo | " + caches + "/foo | " + data + "/Library/Caches/foo"}));
}

TEST(MovePlanner, aDataFolderOfTwoAppsIsOneJobOfTheFirst) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  scene::makeFolder(caches + "/shared");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app", {caches + "/shared", caches + "/shared"}),
                        entry("Bar", "/Applications/Bar.app", {caches + "/shared"})})),
            (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app",
                   "Foo — shared | " + caches + "/shared | " + data + "/Library/Caches/shared",
                   "Bar | /Applications/Bar.app | " + apps + "/Bar.app"}));
}

TEST(MovePlanner, ofTwoBundlesOfOneNameOnlyTheFirstIsQueued) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(scene::home + "/Applications/Foo.app");
  EXPECT_EQ(lines(jobs({entry("Mine", scene::home + "/Applications/Foo.app", {}),
                        entry("Foo", "/Applications/Foo.app", {})})),
            (Lines{"Mine | " + scene::home + "/Applications/Foo.app | " + apps + "/Foo.app"}));
}

TEST(MovePlanner, twoSpellingsOfOneDestinationAreOneJob) {
  scene::makeApp("/Applications/\u00c9tude.app");
  scene::makeApp(scene::home + "/Applications/E\u0301tude.app");
  EXPECT_EQ(lines(jobs({entry("One", "/Applications/\u00c9tude.app", {}),
                        entry("Two", scene::home + "/Applications/E\u0301tude.app", {})})),
            (Lines{"One | /Applications/\u00c9tude.app | " + apps + "/\u00c9tude.app"}));
}

TEST(MovePlanner, whatLiesInAFolderThatMovesGoesWithIt) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  scene::makeFolder(caches + "/foo/inner/deeper");
  scene::makeFolder(caches + "/foo2");
  scene::makeFolder(caches + "/alone/inner");
  EXPECT_EQ(
      lines(jobs(
          {entry("Foo", "/Applications/Foo.app",
                 {caches + "/foo/inner/deeper", caches + "/foo", caches + "//foo/./inner", caches + "/foo2"}),
           entry("Bar", "/Applications/Bar.app", {caches + "/foo/inner", caches + "/alone/inner"})})),
      (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app",
             "Foo — foo | " + caches + "/foo | " + data + "/Library/Caches/foo",
             "Foo — foo2 | " + caches + "/foo2 | " + data + "/Library/Caches/foo2",
             "Bar | /Applications/Bar.app | " + apps + "/Bar.app",
             "Bar — inner | " + caches + "/alone/inner | " + data + "/Library/Caches/alone/inner"}));
}

TEST(MovePlanner, aDataPathInsideALinkIsNotQueued) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeFolder(data + "/Library/Caches/foo/inner");
  scene::link(caches + "/foo", data + "/Library/Caches/foo");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app", {caches + "/foo/inner", caches + "/foo"})})),
            (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app"}));
}

TEST(MovePlanner, aLauncherIsQueuedAsABundleAndTheMoveThenFindsItsDestinationTaken) {
  scene::makeApp(apps + "/Foo.app");
  scene::makeLauncher("/Applications/Foo.app", apps + "/Foo.app");
  const auto queue = jobs({entry("Foo", "/Applications/Foo.app", {})});
  ASSERT_EQ(lines(queue), (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app"}));
  EXPECT_EQ(thrown([&] {
              MoverEngine::moveAndLink(hostPlatform(), queue[0].source, queue[0].destination.parent(), false,
                                       [](const JobStatus&) {}, {});
            }),
            "Destination already exists.");
}

TEST(MovePlanner, aPreferencesFileIsNeverQueuedButOneInAFolderOfItsOwnIs) {
  const std::string preferences = scene::home + "/Library/Preferences";
  scene::makeApp("/Applications/Foo.app");
  scene::write(preferences + "/com.foo.plist", "x");
  scene::write(preferences + "/com.foo/settings.plist", "x");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app",
                              {preferences + "/com.foo.plist", preferences + "/com.foo/settings.plist"})})),
            (Lines{"Foo | /Applications/Foo.app | " + apps + "/Foo.app",
                   "Foo — settings.plist | " + preferences + "/com.foo/settings.plist | " + data +
                       "/Library/Preferences/com.foo/settings.plist"}));
}

TEST(MovePlanner, aPathNeitherInTheHomeNorInTheSharedLibraryLandsDirectlyInData) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeFolder("/Users/Shared/Foo State");
  EXPECT_EQ(lines(jobs({entry("Foo", "/Applications/Foo.app", {"/Users/Shared/Foo State"})}))[1],
            "Foo — Foo State | /Users/Shared/Foo State | " + data + "/Foo State");
}

TEST(MovePlanner, planningChangesNothing) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeFolder(caches + "/foo");
  const auto before = scene::tree(scene::drive);
  ASSERT_EQ(jobs({entry("Foo", "/Applications/Foo.app", {caches + "/foo"})}).size(), 2u);
  EXPECT_EQ(scene::tree(scene::drive), before);
}

TEST(MovePlanner, whatIsMissingOrADanglingLinkStays) {
  scene::link("/Applications/Dangling.app", "/nowhere");
  EXPECT_FALSE(shouldMove("/Applications/None.app"));
  EXPECT_FALSE(shouldMove("/Applications/Dangling.app"));
}

TEST(MovePlanner, climbingEndsAtAFolderOfApplications) {
  scene::makeApp(scene::home + "/Applications/Foo.app");
  scene::makeFolder(caches + "/foo");
  EXPECT_TRUE(shouldMove(caches + "/foo"));
  std::filesystem::rename("/Users/me", "/Users/real");
  std::filesystem::create_symlink("real", "/Users/me");
  EXPECT_TRUE(shouldMove(scene::home + "/Applications/Foo.app"));
  EXPECT_FALSE(shouldMove(caches + "/foo"));
}

TEST(MovePlanner, aFolderOfApplicationsThatIsALinkHoldsNothingToMove) {
  scene::makeApp(scene::drive + "/Mine/Foo.app");
  std::filesystem::remove(scene::home + "/Applications");
  scene::link(scene::home + "/Applications", scene::drive + "/Mine");
  EXPECT_FALSE(shouldMove(scene::home + "/Applications/Foo.app"));
  EXPECT_TRUE(shouldMove(scene::drive + "/Mine/Foo.app"));
}

TEST(MovePlanner, aPreferencesFileIsKnownByItsFolderAndItsExactExtension) {
  const auto unsafe = [](const std::string& path) {
    return MovePlanner::isUnsafePrefsPlist(hostPlatform(), Path(path));
  };
  EXPECT_TRUE(unsafe("/Users/me/Library/Preferences/com.foo.plist"));
  EXPECT_TRUE(unsafe("/Users/me/Library/Preferences/ByHost/com.foo.plist"));
  EXPECT_TRUE(unsafe("/Library/Preferences/com.foo.plist"));
  EXPECT_TRUE(unsafe("/Users/me/Library/./Preferences//com.foo.plist"));
  EXPECT_FALSE(unsafe("/Users/me/Library/Preferences/com.foo.PLIST"));
  EXPECT_FALSE(unsafe("/Users/me/Library/Preferences/com.foo"));
  EXPECT_FALSE(unsafe("/Users/me/Library/Preferences/com.foo/settings.plist"));
  EXPECT_FALSE(unsafe("/Users/me/Library/Preferences/ByHost/deeper/com.foo.plist"));
  EXPECT_FALSE(unsafe("/Users/me/Library/SyncedPreferences/com.foo.plist"));
  EXPECT_FALSE(unsafe("/Users/me/Preferences/com.foo.plist"));
}

}  // namespace
}  // namespace quarn
