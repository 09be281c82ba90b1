#include <filesystem>
#include <sys/stat.h>

#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "tests/support/Child.h"
#include "tests/support/DatabaseLock.h"
#include "tests/support/Doubles.h"
#include "tests/support/Patterns.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Rows = std::vector<std::string>;

const Path database(scene::installsDB);

/// A platform whose clock stands at 2026-01-31T09:05:00Z plus some seconds.
class At {
 public:
  explicit At(int seconds = 0) {
    clock_.moment = Moment{std::chrono::seconds(1'769'850'300 + seconds) + std::chrono::milliseconds(700)};
  }
  Platform& platform() { return platform_; }

 private:
  doubles::FakeClock clock_;
  Platform platform_ = replacing({.clock = &clock_});
};

InstallsDBWriter::Move move(const std::vector<std::string>& trackedFiles = {}) {
  return {.source = Path("/Applications/Foo.app"),
          .destination = Path("/Volumes/X9/ExternalQuarn/Apps/Foo.app"),
          .bundleId = "com.example.foo",
          .version = "1.2.3",
          .sizeBytes = 12345,
          .trackedFiles = trackedFiles};
}
void recordMove(const InstallsDBWriter::Move& wanted, int seconds = 0) {
  InstallsDBWriter::recordMove(At(seconds).platform(), wanted, database);
}
void recordRestore(const std::string& source, int seconds = 0) {
  InstallsDBWriter::recordRestore(At(seconds).platform(), Path(source), database);
}
int forget(const std::string& installId) {
  return InstallsDBWriter::forgetMissingTrackedFiles(hostPlatform(), installId, database);
}

const std::string allButTheId =
    "app_name, bundle_id, version, source_file, source_hash, install_type, "
    "confidence, uninstall_strategy, installed_at, uninstalled_at, notes";

TEST(InstallsDBWriter, aMoveIsOneRowInTheLedgersTerms) {
  scene::makeInstallsDB();
  recordMove(move());
  EXPECT_EQ(scene::sql("SELECT " + allButTheId + " FROM installs"),
            (Rows{"Foo.app|com.example.foo|1.2.3|/Volumes/X9/ExternalQuarn/Apps/Foo.app|NULL|app_move|high|"
                  "restore_via_quarn|2026-01-31T09:05:00Z|NULL|moved by Quarn; symlink at "
                  "/Applications/Foo.app -> /Volumes/X9/ExternalQuarn/Apps/Foo.app; 12345 bytes"}));
  const Rows id = scene::sql("SELECT install_id FROM installs");
  EXPECT_TRUE(patterns::match(id[0], "quarn-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"))
      << id[0];
  EXPECT_TRUE(scene::sql("SELECT * FROM tracked_files").empty());
  EXPECT_EQ(
      scene::sql("SELECT DISTINCT typeof(install_id), typeof(installed_at), typeof(notes) FROM installs"),
      (Rows{"text|text|text"}));
}

TEST(InstallsDBWriter, whatIsUnknownIsNull) {
  scene::makeInstallsDB();
  InstallsDBWriter::Move data = move();
  data.bundleId = std::nullopt;
  data.version = std::nullopt;
  recordMove(data);
  EXPECT_EQ(scene::sql("SELECT bundle_id, version FROM installs"), (Rows{"NULL|NULL"}));
}

TEST(InstallsDBWriter, everyMoveHasAnIdentifierOfItsOwn) {
  scene::makeInstallsDB();
  recordMove(move());
  recordMove(move());
  EXPECT_EQ(scene::sql("SELECT count(DISTINCT install_id) FROM installs"), (Rows{"2"}));
}

TEST(InstallsDBWriter, trackedFilesBelongToTheMove) {
  scene::makeInstallsDB();
  recordMove(move({"/b", "/a's \"file\""}));
  EXPECT_EQ(scene::sql("SELECT file_path, file_type, confidence, install_id = (SELECT install_id FROM "
                       "installs) FROM tracked_files"),
            (Rows{"/b|app_move|high|1", "/a's \"file\"|app_move|high|1"}));
}

TEST(InstallsDBWriter, oneFileThatIsRefusedDoesNotKeepOutTheNext) {
  scene::makeInstallsDB();
  scene::sql("CREATE UNIQUE INDEX once ON tracked_files (file_path)");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('other', '/taken')");
  recordMove(move({"/taken", "/free"}));
  EXPECT_EQ(scene::sql("SELECT file_path FROM tracked_files WHERE install_id <> 'other'"), (Rows{"/free"}));
}

TEST(InstallsDBWriter, aMoveThatIsRefusedTracksNothing) {
  scene::makeInstallsDB();
  scene::sql("CREATE UNIQUE INDEX once ON installs (app_name)");
  recordMove(move());
  recordMove(move({"/file"}));
  EXPECT_EQ(scene::sql("SELECT count(*) FROM installs"), (Rows{"1"}));
  EXPECT_TRUE(scene::sql("SELECT * FROM tracked_files").empty());
}

TEST(InstallsDBWriter, aRestoreClosesTheLatestOfTwoMovesOnly) {
  scene::makeInstallsDB();
  recordMove(move({"/file"}), 60);
  recordMove(move(), 0);
  EXPECT_EQ(InstallsDB::entryForBundleId(hostPlatform(), "com.example.foo", database)->installedAt,
            "2026-01-31T09:06:00Z");
  recordRestore("/Applications/Foo.app", 120);
  EXPECT_EQ(scene::sql("SELECT installed_at, uninstalled_at FROM installs ORDER BY 1"),
            (Rows{"2026-01-31T09:05:00Z|NULL", "2026-01-31T09:06:00Z|2026-01-31T09:07:00Z"}));
  EXPECT_EQ(scene::sql("SELECT file_path FROM tracked_files"), (Rows{"/file"}));
  EXPECT_EQ(InstallsDB::entryForBundleId(hostPlatform(), "com.example.foo", database)->installedAt,
            "2026-01-31T09:05:00Z");
}

TEST(InstallsDBWriter, aRestoreGoesByTheNameWhereverItWas) {
  scene::makeInstallsDB();
  recordMove(move());
  recordRestore("/Applications/Foo", 1);
  recordRestore("/Applications/foo.app", 1);
  EXPECT_EQ(scene::sql("SELECT uninstalled_at FROM installs"), (Rows{"NULL"}));
  recordRestore("/Users/me/Applications/Foo.app", 1);
  EXPECT_EQ(scene::sql("SELECT uninstalled_at FROM installs"), (Rows{"2026-01-31T09:05:01Z"}));
}

TEST(InstallsDBWriter, aClosedRowKeepsItsDate) {
  scene::makeInstallsDB();
  recordMove(move());
  recordRestore("/Applications/Foo.app", 1);
  recordRestore("/Applications/Foo.app", 2);
  EXPECT_EQ(scene::sql("SELECT uninstalled_at FROM installs"), (Rows{"2026-01-31T09:05:01Z"}));
}

TEST(InstallsDBWriter, aRestoreLeavesInstallsOfAnotherTypeAlone) {
  scene::makeInstallsDB();
  recordMove(move());
  scene::sql("UPDATE installs SET install_type = 'manual'");
  recordRestore("/Applications/Foo.app");
  EXPECT_EQ(scene::sql("SELECT uninstalled_at FROM installs"), (Rows{"NULL"}));
}

TEST(InstallsDBWriter, onlyRowsOfFilesThatAreGoneAreForgotten) {
  scene::makeInstallsDB();
  scene::write("/tmp/there", "x");
  scene::link("/tmp/dangling", "/nowhere");
  scene::sql(
      "INSERT INTO tracked_files (install_id, file_path) VALUES ('a', '/tmp/there'), ('a', '/gone'), "
      "('a', '/tmp/dangling'), ('b', '/gone'), ('a', NULL)");
  EXPECT_EQ(forget("a"), 2);
  EXPECT_EQ(scene::sql("SELECT install_id, file_path FROM tracked_files"),
            (Rows{"a|/tmp/there", "b|/gone", "a|NULL"}));
  EXPECT_EQ(forget("a"), 0);
  EXPECT_EQ(forget("c"), 0);
}

TEST(InstallsDBWriter, aFileTrackedTwiceCountsTwice) {
  scene::makeInstallsDB();
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('a', '/gone'), ('a', '/gone')");
  EXPECT_EQ(forget("a"), 2);
  EXPECT_TRUE(scene::sql("SELECT * FROM tracked_files").empty());
}

TEST(InstallsDBWriter, withoutADatabaseNothingIsMade) {
  recordMove(move({"/file"}));
  recordRestore("/Applications/Foo.app");
  EXPECT_EQ(forget("a"), 0);
  EXPECT_FALSE(scene::exists(scene::home + "/.claude"));
}

/// Every writing operation, against a database that must stay as it is.
void writeEverything() {
  recordMove(move({"/file"}));
  recordRestore("/Applications/Foo.app");
  EXPECT_EQ(forget("a"), 0);
}

TEST(InstallsDBWriter, aFileThatIsNoDatabaseStaysAsItIs) {
  const std::string content = "this is no database, however long one looks at it";
  scene::write(scene::installsDB, content);
  writeEverything();
  EXPECT_EQ(scene::read(scene::installsDB), content);
}

TEST(InstallsDBWriter, aDatabaseOfAnotherSchemaStaysAsItIs) {
  scene::write(scene::installsDB, "");
  scene::sql("CREATE TABLE installs (install_id TEXT, app_name TEXT, bundle_id TEXT)");
  const std::string before = scene::read(scene::installsDB);
  writeEverything();
  EXPECT_EQ(scene::read(scene::installsDB), before);
}

TEST(InstallsDBWriter, aLockedDatabaseStaysAsItIsAndNobodyWaits) {
  scene::makeInstallsDB();
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('a', '/gone')");
  const std::string before = scene::read(scene::installsDB);
  const auto begin = std::chrono::steady_clock::now();
  {
    const DatabaseLock lock(scene::installsDB);
    writeEverything();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  EXPECT_EQ(scene::read(scene::installsDB), before);
  EXPECT_EQ(forget("a"), 1);
}

TEST(InstallsDBWriter, aDatabaseThatMayNotBeWrittenStaysAsItIs) {
  scene::makeInstallsDB();
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('a', '/gone')");
  const std::string before = scene::read(scene::installsDB);
  ::chmod(scene::installsDB.c_str(), 0444);
  EXPECT_EQ(child::failuresWithoutRights([] { writeEverything(); }), "");
  EXPECT_EQ(scene::read(scene::installsDB), before);
}

}  // namespace
}  // namespace quarn
