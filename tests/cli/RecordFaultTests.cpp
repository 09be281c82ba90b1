#include <chrono>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

namespace fs = std::filesystem;

/// A move and the way back, which nothing about the records may hold up.
void expectBothWaysSucceed() {
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::tree(moved), before);
  EXPECT_EQ(shown(scene::quarn({"move", "back", "Foo"})), printed("moved back: " + app + "\n"));
  EXPECT_EQ(scene::tree(app), before);
}

/// Holds a database as another program does that writes to it.
class Holder {
 public:
  Holder() {
    sqlite3_open_v2(scene::installsDB.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr);
    held = sqlite3_exec(database_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  ~Holder() { sqlite3_close(database_); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  bool held = false;

 private:
  sqlite3* database_ = nullptr;
};

TEST(RecordFault, withoutALedgerNoneIsMade) {
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_FALSE(scene::exists(scene::home + "/.claude"));
}

TEST(RecordFault, aLockedLedgerIsPassedOverAtOnce) {
  scene::makeInstallsDB();
  scene::makeApp(app);
  {
    const Holder holder;
    ASSERT_TRUE(holder.held);
    const auto start = std::chrono::steady_clock::now();
    expectBothWaysSucceed();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  }
  EXPECT_EQ(scene::sql("SELECT count(*) FROM installs"), std::vector<std::string>{"0"});
}

TEST(RecordFault, aLedgerThatIsNoDatabaseStaysAsItIs) {
  for (const std::string& content : {std::string("no database"), std::string(), std::string(8192, '\xFF'),
                                     "SQLite format 3" + std::string(1, '\0') + std::string(4096, 'x')}) {
    scene::write(scene::installsDB, content);
    scene::makeApp(app);
    expectBothWaysSucceed();
    EXPECT_EQ(scene::read(scene::installsDB), content);
    EXPECT_EQ(names(fs::path(scene::installsDB).parent_path()), std::vector<std::string>{"installs.db"});
  }
}

TEST(RecordFault, aLedgerWithAnotherSchemaStaysAsItIs) {
  for (const std::string table : {"CREATE TABLE other (a TEXT)", "CREATE TABLE installs (install_id TEXT)",
                                  "CREATE VIEW installs AS SELECT 1 AS install_id"}) {
    fs::remove_all(fs::path(scene::installsDB).parent_path());
    scene::write(scene::installsDB, "");
    scene::sql(table);
    const std::string content = scene::read(scene::installsDB);
    scene::makeApp(app);
    expectBothWaysSucceed();
    EXPECT_EQ(scene::read(scene::installsDB), content) << table;
  }
}

TEST(RecordFault, aReadOnlyLedgerStaysAsItIs) {
  scene::makeInstallsDB();
  fs::permissions(scene::installsDB, fs::perms(0444));
  const std::string content = scene::read(scene::installsDB);
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_EQ(scene::read(scene::installsDB), content);
}

TEST(RecordFault, aLedgerThatIsAFolderOrADanglingLinkStaysAsItIs) {
  scene::makeFolder(scene::installsDB);
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_TRUE(fs::is_directory(scene::installsDB));
  fs::remove(scene::installsDB);
  scene::link(scene::installsDB, "/Users/me/Documents/none.db");
  expectBothWaysSucceed();
  EXPECT_FALSE(scene::exists("/Users/me/Documents/none.db"));
}

TEST(RecordFault, aCorruptManifestIsReplacedByTheNextRecord) {
  for (const std::string content :
       {"", "{", "null", "{}", "[{\"sourcePath\":\"/Applications/Old.app\"}]", "\xFF\xFE", "[1]"}) {
    scene::write(scene::manifest, content);
    scene::makeApp(app);
    const std::string bytes = sizeOf(app);
    EXPECT_EQ(shown(moveOne()), succeeded(bytes));
    const std::string written = scene::read(scene::manifest);
    EXPECT_TRUE(written.starts_with("[\n  {\n    \"bundleIdentifier\" : \"com.example.foo\",")) << written;
    EXPECT_EQ(written.find("Old.app"), std::string::npos);
    scene::quarn({"move", "back", "Foo"});
    EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
  }
}

TEST(RecordFault, theWayBackLeavesACorruptManifestAsItIs) {
  scene::makeApp(moved);
  scene::link(app, moved);
  scene::write(scene::manifest, "[{");
  EXPECT_EQ(shown(scene::quarn({"move", "back", "Foo"})), printed("moved back: " + app + "\n"));
  EXPECT_EQ(scene::read(scene::manifest), "[{");
}

TEST(RecordFault, aManifestThatMayNotBeWrittenStaysAndTheMoveCounts) {
  scene::write(scene::manifest, "[\n\n]");
  const std::string folder = fs::path(scene::manifest).parent_path();
  fs::permissions(scene::manifest, fs::perms(0444));
  fs::permissions(folder, fs::perms(0555));
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
  EXPECT_EQ(names(folder), std::vector<std::string>{"health-manifest.json"});
}

TEST(RecordFault, aReadOnlyManifestInAWritableFolderIsReplacedAndKeepsItsMode) {
  scene::write(scene::manifest, "[\n\n]");
  fs::permissions(scene::manifest, fs::perms(0444));
  scene::makeApp(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_NE(scene::read(scene::manifest).find("Foo.app"), std::string::npos);
  EXPECT_EQ(fs::status(scene::manifest).permissions(), fs::perms(0444));
}

TEST(RecordFault, anUnreadableManifestCountsAsEmpty) {
  scene::write(scene::manifest, "[{\"old\":1}]");
  fs::permissions(scene::manifest, fs::perms::none);
  scene::makeApp(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
}

TEST(RecordFault, aManifestThatIsAFolderStaysAndTheMoveCounts) {
  scene::write(scene::manifest + "/inside", "kept");
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_EQ(scene::read(scene::manifest + "/inside"), "kept");
  EXPECT_EQ(names(fs::path(scene::manifest).parent_path()), std::vector<std::string>{"health-manifest.json"});
}

TEST(RecordFault, aFileInPlaceOfTheFolderForRecordsStaysAndTheMoveCounts) {
  scene::write(scene::home + "/Library/Application Support/Quarn", "a file");
  scene::makeApp(app);
  expectBothWaysSucceed();
  EXPECT_EQ(scene::read(scene::home + "/Library/Application Support/Quarn"), "a file");
}

}  // namespace
