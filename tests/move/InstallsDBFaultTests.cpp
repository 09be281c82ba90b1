#include <functional>
#include <gtest/gtest.h>

#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "tests/move/Moving.h"
#include "tests/support/FailingDatabases.h"

// Each call on the installs database fails once, the first, the second, and so on until a run meets no fault.

namespace quarn {
namespace {

using Rows = std::vector<std::string>;
using Files = std::vector<std::string>;

const Path database(scene::installsDB);

/// Runs the body for n = 1, 2, … until it runs through; how many calls there were that can fail. `before`
/// sets the scene anew each time.
int faultsMet(const std::function<void()>& before, const std::function<void(Platform&, bool&)>& body) {
  for (int n = 1; n < 100; ++n) {
    before();
    FailingDatabases databases(hostPlatform().databases, n);
    Platform platform = replacing({.databases = &databases});
    bool ranThrough = false;
    body(platform, ranThrough);
    EXPECT_EQ(databases.fired(), !ranThrough) << "fault " << n;
    if (!databases.fired()) return n - 1;
  }
  return -1;
}

void makeLedger() {
  std::filesystem::remove(scene::installsDB);
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id, install_type, installed_at) VALUES "
      "('id', 'Foo.app', 'com.example.foo', 'app_move', '2026-01-01T00:00:00Z')");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('id', '/gone 1'), ('id', '/gone 2')");
}

void makeAppAndLedger() {
  std::filesystem::remove_all(moving::app);
  std::filesystem::remove_all(moving::movedApp);
  scene::makeApp(moving::app);
  makeLedger();
}

Rows openMoves() {
  return scene::sql("SELECT install_id FROM installs WHERE uninstalled_at IS NULL ORDER BY installed_at");
}
Rows trackedRows() {
  return scene::sql("SELECT file_path FROM tracked_files");
}

TEST(InstallsDBFaults, anEntryThatCannotBeReadIsAbsent) {
  const int faults = faultsMet(makeLedger, [](Platform& platform, bool& ranThrough) {
    const auto entry = InstallsDB::entryForBundleId(platform, "com.example.foo", database);
    ranThrough = entry.has_value();
    if (entry) {
      EXPECT_EQ(entry->installId, "id");
    }
  });
  EXPECT_EQ(faults, 3) << "to open, to prepare, to take the one step";
}

TEST(InstallsDBFaults, aNameIsAskedForWhereTheIdentifierCannotBe) {
  makeLedger();
  scene::makeApp("/Volumes/X9/Foo.app", {.identifier = "com.example.foo"});
  for (int n = 1; n <= 3; ++n) {
    FailingDatabases databases(hostPlatform().databases, n);
    const auto entry = InstallsDBEntryResolver::resolve(
        replacing({.databases = &databases}), Path("/Applications/Foo.app"), Path("/Volumes/X9/Foo.app"));
    EXPECT_TRUE(databases.fired());
    ASSERT_TRUE(entry) << "fault " << n;
    EXPECT_EQ(entry->installId, "id");
  }
}

TEST(InstallsDBFaults, trackedFilesAreReadAsFarAsTheRowsCome) {
  const Files all = {"/gone 1", "/gone 2"};
  std::vector<Files> given;
  const int faults = faultsMet(makeLedger, [&](Platform& platform, bool& ranThrough) {
    given.push_back(InstallsDB::trackedFiles(platform, "id", database));
    ranThrough = given.size() == 6;
  });
  EXPECT_EQ(faults, 5) << "to open, to prepare, three steps, of which the last finds no row";
  EXPECT_EQ(given, (std::vector<Files>{{}, {}, {}, {"/gone 1"}, all, all}));
}

TEST(InstallsDBFaults, aMoveIsRecordedWithTheRowsThatCouldBeWritten) {
  std::vector<Rows> given;
  const auto record = [&](Platform& platform, bool& ranThrough) {
    InstallsDBWriter::recordMove(platform,
                                 {.source = Path("/Applications/Bar.app"),
                                  .destination = Path("/Volumes/X9/Bar.app"),
                                  .bundleId = std::nullopt,
                                  .version = std::nullopt,
                                  .sizeBytes = 1,
                                  .trackedFiles = {"/a", "/b"}},
                                 database);
    Rows rows = scene::sql("SELECT app_name FROM installs WHERE app_name = 'Bar.app'");
    const Rows files = scene::sql("SELECT file_path FROM tracked_files WHERE install_id <> 'id'");
    rows.insert(rows.end(), files.begin(), files.end());
    given.push_back(rows);
    ranThrough = rows.size() == 3;
  };
  EXPECT_EQ(faultsMet(makeLedger, record), 7) << "to open; to prepare and to write each of three rows";
  const Rows onlyB = {"Bar.app", "/b"}, onlyA = {"Bar.app", "/a"};
  EXPECT_EQ(given, (std::vector<Rows>{{}, {}, {}, onlyB, onlyB, onlyA, onlyA, Rows{"Bar.app", "/a", "/b"}}));
}

TEST(InstallsDBFaults, aRestoreThatCannotBeRecordedLeavesTheRowOpen) {
  const int faults = faultsMet(makeLedger, [](Platform& platform, bool& ranThrough) {
    InstallsDBWriter::recordRestore(platform, Path("/Applications/Foo.app"), database);
    ranThrough = openMoves().empty();
  });
  EXPECT_EQ(faults, 3) << "to open, to prepare, to write";
}

TEST(InstallsDBFaults, onlyRowsThatWereForgottenAreCounted) {
  const int faults = faultsMet(makeLedger, [](Platform& platform, bool& ranThrough) {
    const int forgotten = InstallsDBWriter::forgetMissingTrackedFiles(platform, "id", database);
    EXPECT_EQ(static_cast<std::size_t>(forgotten), 2 - trackedRows().size());
    FailingDatabases& databases = static_cast<FailingDatabases&>(platform.databases);
    ranThrough = !databases.fired();
  });
  EXPECT_EQ(faults, 10) << "to open; five to read; two to forget each of two rows";
}

TEST(InstallsDBFaults, aMoveCountsWhateverTheLedgerDoes) {
  const int faults = faultsMet(makeAppAndLedger, [](Platform& platform, bool& ranThrough) {
    EXPECT_EQ(moving::move(platform), "nothing");
    EXPECT_EQ(scene::target(moving::app), moving::movedApp);
    ranThrough = openMoves().size() == 2;
  });
  EXPECT_EQ(faults, 3) << "to open, to prepare, to write";
}

TEST(InstallsDBFaults, aHomecomingCountsWhateverTheLedgerDoes) {
  const auto scene = [] {
    makeAppAndLedger();
    ASSERT_EQ(moving::move(), "nothing");
  };
  const int faults = faultsMet(scene, [](Platform& platform, bool& ranThrough) {
    EXPECT_EQ(moving::restore(platform), "nothing");
    EXPECT_TRUE(std::filesystem::is_directory(moving::app + "/Contents"));
    EXPECT_FALSE(scene::isLink(moving::app));
    ranThrough = openMoves() == Rows{"id"};
  });
  EXPECT_EQ(faults, 3) << "to open, to prepare, to write";
}

}  // namespace
}  // namespace quarn
