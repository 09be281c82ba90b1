#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/health/TrackedFilesChecker.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string link = "/Applications/Foo.app";
const std::string bundle = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

void install(const std::string& id, const std::string& name, const std::string& identifier = "NULL") {
  scene::sql("INSERT INTO installs (install_id, app_name, bundle_id, installed_at) VALUES ('" + id + "', '" +
             name + "', " + identifier + ", '2026-01-31T09:05:00Z')");
}

void track(const std::string& file, const std::string& id = "foo") {
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('" + id + "', '" + file + "')");
}

/// A moved application that the database knows by its identifier.
struct TrackedFiles : testing::Test {
  TrackedFiles() {
    scene::makeApp(bundle);
    scene::link(link, bundle);
    scene::makeInstallsDB();
    install("foo", "Foo", "'com.example.foo'");
  }
  /// Files of which the first `present` exist.
  static void trackFiles(int count, int present) {
    for (int i = 1; i <= count; ++i) {
      const std::string file = "/Users/me/f" + std::to_string(i);
      track(file);
      if (i <= present) scene::write(file, "content");
    }
  }
  static std::optional<HealthIssue> found(const ReadOnlyPlatform& platform = hostPlatform()) {
    return TrackedFilesChecker::check(platform, Path(link), Path(bundle));
  }
  static std::string detail() {
    const auto issue = found();
    return issue ? issue->detail : "no issue";
  }
};

TEST_F(TrackedFiles, fourMissingOfTenAreShownAsThreeAndOneMore) {
  trackFiles(10, 6);
  EXPECT_EQ(found(), (HealthIssue{HealthIssue::Kind::missingTrackedFiles, Path(link), Path(bundle),
                                  "4/10 tracked files missing for Foo: /Users/me/f7, /Users/me/f8, "
                                  "/Users/me/f9 (+1 more)",
                                  0}));
}

TEST_F(TrackedFiles, threeMissingAreShownWhole) {
  trackFiles(5, 2);
  EXPECT_EQ(detail(), "3/5 tracked files missing for Foo: /Users/me/f3, /Users/me/f4, /Users/me/f5");
}

TEST_F(TrackedFiles, oneMissingStandsAlone) {
  trackFiles(1, 0);
  EXPECT_EQ(detail(), "1/1 tracked files missing for Foo: /Users/me/f1");
}

TEST_F(TrackedFiles, theyKeepTheOrderOfTheRows) {
  for (const std::string file : {"/z", "/Applications", "/a", "/m", "/b"}) track(file);
  EXPECT_EQ(detail(), "4/5 tracked files missing for Foo: /z, /a, /m (+1 more)");
}

TEST_F(TrackedFiles, noneMissingIsNoIssueAndNeitherIsAnEmptyList) {
  EXPECT_EQ(detail(), "no issue");
  trackFiles(3, 3);
  EXPECT_EQ(detail(), "no issue");
}

TEST_F(TrackedFiles, aFolderExistsAndADanglingLinkDoesNot) {
  track("/Users/me/folder/");
  scene::makeFolder("/Users/me/folder");
  track("/Users/me/link");
  scene::link("/Users/me/link", "/Users/me/folder");
  EXPECT_EQ(detail(), "no issue");
  track("/Users/me/dangling");
  scene::link("/Users/me/dangling", "/Users/me/nowhere");
  EXPECT_EQ(detail(), "1/3 tracked files missing for Foo: /Users/me/dangling");
}

TEST_F(TrackedFiles, pathsAreToldAsTheyStandInTheDatabase) {
  for (const std::string file : {"", "relative", "~/x", "/a//b/", "/a b\t\"c\"\nd", "/Cafe\u0301"})
    track(file);
  EXPECT_EQ(detail(), "6/6 tracked files missing for Foo: , relative, ~/x (+3 more)");
  scene::sql("DELETE FROM tracked_files WHERE file_path IN ('', 'relative', '~/x')");
  EXPECT_EQ(detail(), "3/3 tracked files missing for Foo: /a//b/, /a b\t\"c\"\nd, /Cafe\u0301");
}

TEST_F(TrackedFiles, withoutTheDatabaseThereIsNoIssueAndNoneIsMade) {
  scene::shell("rm '" + scene::installsDB + "'");
  EXPECT_EQ(detail(), "no issue");
  EXPECT_FALSE(scene::exists(scene::installsDB));
}

TEST_F(TrackedFiles, aDatabaseThatCannotBeReadIsNoIssue) {
  trackFiles(2, 0);
  scene::write(scene::installsDB, "no database");
  EXPECT_EQ(detail(), "no issue");
  scene::write(scene::installsDB, "");
  EXPECT_EQ(detail(), "no issue");
}

TEST_F(TrackedFiles, withoutTheTableThereIsNoIssue) {
  scene::sql("DROP TABLE tracked_files");
  EXPECT_EQ(detail(), "no issue");
}

TEST_F(TrackedFiles, anApplicationWithoutARowIsNoIssueThoughOthersHaveOne) {
  scene::sql("UPDATE installs SET bundle_id = 'com.example.bar', app_name = 'Bar.app'");
  trackFiles(2, 0);
  EXPECT_EQ(detail(), "no issue");
}

TEST_F(TrackedFiles, filesOfOtherApplicationsDoNotCount) {
  trackFiles(1, 1);
  install("bar", "Bar", "'com.example.bar'");
  track("/Users/me/of bar", "bar");
  EXPECT_EQ(detail(), "no issue");
}

TEST_F(TrackedFiles, anApplicationIsAlsoKnownByTheNameOfItsLink) {
  scene::sql("UPDATE installs SET bundle_id = NULL, app_name = 'Other.app'");
  trackFiles(1, 0);
  EXPECT_EQ(detail(), "no issue");
  const auto issue =
      TrackedFilesChecker::check(hostPlatform(), Path("/Applications/Other.app"), Path(bundle));
  ASSERT_TRUE(issue);
  EXPECT_EQ(issue->detail, "1/1 tracked files missing for Other.app: /Users/me/f1");
}

TEST_F(TrackedFiles, theDatabaseIsThatOfTheHomeFolder) {
  trackFiles(1, 0);
  doubles::FakePlaces places(Path("/Users/other"));
  const Platform platform = replacing({.places = &places});
  EXPECT_EQ(found(platform), std::nullopt);
}

TEST_F(TrackedFiles, thoseThatCannotBeLookedAtAreNotMissing) {
  track("/Users/me/closed/file");
  scene::write("/Users/me/closed/file", "content");
  std::filesystem::permissions("/Users/me/closed", std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(found(), std::nullopt);
              Platform& platform = hostPlatform();
              const Path database = InstallsDB::defaultPath(platform.places);
              EXPECT_EQ(InstallsDBWriter::forgetMissingTrackedFiles(platform, "foo", database), 0);
            }),
            "");
  std::filesystem::permissions("/Users/me/closed", std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace quarn
