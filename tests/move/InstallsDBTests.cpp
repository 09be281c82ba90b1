#include <filesystem>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/InstallsDB.h"
#include "tests/support/DatabaseLock.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Entry = InstallsDB::Entry;

const Path database(scene::installsDB);

/// Inserts a row; a value such as "NULL" or "'text'" stands as it is written.
void insert(const std::string& id, const std::string& name, const std::string& bundleId,
            const std::string& installedAt, const std::string& uninstalledAt = "NULL",
            const std::string& type = "'app_move'", const std::string& confidence = "'high'") {
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id, version, install_type, confidence, "
      "installed_at, uninstalled_at) VALUES (" +
      id + ", " + name + ", " + bundleId + ", '1.2', " + type + ", " + confidence + ", " + installedAt +
      ", " + uninstalledAt + ")");
}

std::optional<Entry> byIdentifier(const std::string& identifier) {
  return InstallsDB::entryForBundleId(hostPlatform(), identifier, database);
}
std::optional<Entry> byName(const std::string& name) {
  return InstallsDB::entryForAppName(hostPlatform(), name, database);
}
std::vector<std::string> trackedFiles(const std::string& installId) {
  return InstallsDB::trackedFiles(hostPlatform(), installId, database);
}

TEST(InstallsDB, liesInTheHomeOfTheUser) {
  EXPECT_EQ(InstallsDB::defaultPath(hostPlatform().places).text(),
            "/Users/me/.claude/tools/setup-ledger/db/installs.db");
}

TEST(InstallsDB, isAvailableOnceTheFileIsThere) {
  EXPECT_FALSE(InstallsDB::isAvailable(hostPlatform(), database));
  scene::makeInstallsDB();
  EXPECT_TRUE(InstallsDB::isAvailable(hostPlatform(), database));
}

TEST(InstallsDB, withoutADatabaseEveryAnswerIsEmptyAndNoneIsMade) {
  EXPECT_FALSE(byIdentifier("com.example.foo"));
  EXPECT_FALSE(byName("Foo.app"));
  EXPECT_TRUE(trackedFiles("1").empty());
  EXPECT_FALSE(InstallsDBEntryResolver::resolve(hostPlatform(), Path("/Applications/Foo.app"),
                                                Path("/Volumes/X9/Foo.app")));
  EXPECT_FALSE(scene::exists(scene::installsDB));
}

TEST(InstallsDB, aRowIsReadColumnByColumn) {
  scene::makeInstallsDB();
  insert("'id1'", "'Foo.app'", "'com.example.foo'", "'2026-01-31T09:05:00Z'", "NULL", "'manual'", "'low'");
  const Entry expected{"id1", "Foo.app", "com.example.foo", "1.2", "manual", "low", "2026-01-31T09:05:00Z"};
  EXPECT_EQ(byIdentifier("com.example.foo"), expected);
  EXPECT_EQ(byName("Foo.app"), expected);
  EXPECT_FALSE(byIdentifier("com.example.FOO"));
  EXPECT_FALSE(byName("Foo"));
}

TEST(InstallsDB, theLatestLiveRowIsFound) {
  scene::makeInstallsDB();
  insert("'new'", "'Foo.app'", "'com.foo'", "'2026-01-02T00:00:00Z'");
  insert("'old'", "'Foo.app'", "'com.foo'", "'2025-12-31T00:00:00Z'");
  insert("'gone'", "'Foo.app'", "'com.foo'", "'2026-02-01T00:00:00Z'", "'2026-02-02T00:00:00Z'");
  EXPECT_EQ(byIdentifier("com.foo")->installId, "new");
  EXPECT_EQ(byName("Foo.app")->installId, "new");
}

TEST(InstallsDB, anUninstalledAppIsNotFound) {
  scene::makeInstallsDB();
  insert("'gone'", "'Foo.app'", "'com.foo'", "'2026-02-01T00:00:00Z'", "'2026-02-02T00:00:00Z'");
  EXPECT_FALSE(byIdentifier("com.foo"));
  EXPECT_FALSE(byName("Foo.app"));
}

TEST(InstallsDB, aNullInADescriptionReadsAsEmptyText) {
  scene::makeInstallsDB();
  insert("'id'", "'Foo.app'", "'com.foo'", "NULL", "NULL", "NULL", "NULL");
  scene::sql("UPDATE installs SET version = NULL");
  EXPECT_EQ(byIdentifier("com.foo"), (Entry{"id", "Foo.app", "com.foo", std::nullopt, "", "", ""}));
  scene::sql("UPDATE installs SET bundle_id = NULL");
  EXPECT_EQ(byName("Foo.app"), (Entry{"id", "Foo.app", std::nullopt, std::nullopt, "", "", ""}));
}

TEST(InstallsDB, aRowWithoutAnIdentifierOrANameIsNoEntry) {
  scene::makeInstallsDB();
  insert("'id'", "NULL", "'com.noname'", "'2026-01-01T00:00:00Z'");
  insert("NULL", "'Foo.app'", "'com.noid'", "'2026-01-01T00:00:00Z'");
  EXPECT_FALSE(byIdentifier("com.noname"));
  EXPECT_FALSE(byIdentifier("com.noid"));
  EXPECT_FALSE(byName("Foo.app"));
}

TEST(InstallsDB, trackedFilesComeInTheOrderOfTheRowsWithoutNulls) {
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO tracked_files (install_id, file_path) VALUES ('a', '/z'), ('b', '/b'), ('a', NULL), "
      "('a', '/a'), ('a', '/z')");
  EXPECT_EQ(trackedFiles("a"), (std::vector<std::string>{"/z", "/a", "/z"}));
  EXPECT_TRUE(trackedFiles("c").empty());
}

TEST(InstallsDB, aValueIsNeverTakenForSQL) {
  scene::makeInstallsDB();
  insert("'id'", "'Foo.app'", "'com.foo'", "'2026-01-01T00:00:00Z'");
  EXPECT_FALSE(byName("x' OR '1'='1"));
  insert("'quoted'", "'Bob''s.app'", "'com.bob'", "'2026-01-01T00:00:00Z'");
  EXPECT_EQ(byName("Bob's.app")->installId, "quoted");
}

TEST(InstallsDB, aDatabaseThatCannotBeReadGivesNothing) {
  scene::write(scene::installsDB, "this is no database, however long one looks at it");
  EXPECT_FALSE(byIdentifier("com.foo"));
  EXPECT_TRUE(trackedFiles("a").empty());
  std::filesystem::remove(scene::installsDB);
  scene::makeFolder(scene::installsDB);
  EXPECT_FALSE(byIdentifier("com.foo"));
  EXPECT_TRUE(trackedFiles("a").empty());
}

TEST(InstallsDB, aDatabaseOfAnotherSchemaGivesNothing) {
  scene::write(scene::installsDB, "");
  EXPECT_FALSE(byIdentifier("com.foo"));
  EXPECT_TRUE(trackedFiles("a").empty());
  scene::sql("CREATE TABLE installs (install_id TEXT, app_name TEXT)");
  EXPECT_FALSE(byName("Foo.app"));
}

TEST(InstallsDB, aLockedDatabaseGivesNothingAtOnce) {
  scene::makeInstallsDB();
  insert("'id'", "'Foo.app'", "'com.foo'", "'2026-01-01T00:00:00Z'");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('id', '/z')");
  {
    const DatabaseLock lock(scene::installsDB);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(byIdentifier("com.foo"));
    EXPECT_TRUE(trackedFiles("id").empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  }
  EXPECT_TRUE(byIdentifier("com.foo"));
}

TEST(InstallsDBEntryResolver, theIdentifierOfTheTargetIsAskedFirst) {
  scene::makeInstallsDB();
  scene::makeApp("/Volumes/X9/Foo.app", {.identifier = "com.foo"});
  insert("'byName'", "'Shown.app'", "'com.other'", "'2026-01-02T00:00:00Z'");
  insert("'byIdentifier'", "'Other.app'", "'com.foo'", "'2026-01-01T00:00:00Z'");
  const auto resolved = InstallsDBEntryResolver::resolve(hostPlatform(), Path("/Applications/Shown.app"),
                                                         Path("/Volumes/X9/Foo.app"));
  EXPECT_EQ(resolved->installId, "byIdentifier");
}

TEST(InstallsDBEntryResolver, thenTheNameOfTheLink) {
  scene::makeInstallsDB();
  scene::makeApp("/Volumes/X9/Foo.app", {.identifier = "com.unknown"});
  insert("'byName'", "'Shown.app'", "'com.other'", "'2026-01-02T00:00:00Z'");
  const auto resolve = [](const std::string& target) {
    return InstallsDBEntryResolver::resolve(hostPlatform(), Path("/Applications/Shown.app"), Path(target));
  };
  EXPECT_EQ(resolve("/Volumes/X9/Foo.app")->installId, "byName");
  EXPECT_EQ(resolve("/Volumes/X9/None.app")->installId, "byName");
  scene::sql("UPDATE installs SET app_name = 'Foo.app'");
  EXPECT_FALSE(resolve("/Volumes/X9/Foo.app"));
}

}  // namespace
}  // namespace quarn
