#include <filesystem>
#include <fstream>
#include <set>
#include <sqlite3.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/FailingDatabases.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/VolumeTraits.h"

namespace quarn::contract {
namespace {

namespace fs = std::filesystem;
using DatabasesSubject = Subject<quarn::Databases>;

std::shared_ptr<quarn::Databases> theHosts() {
  return notOwned(hostPlatform().databases);
}
std::shared_ptr<quarn::Databases> failing() {
  return std::make_shared<FailingDatabases>(hostPlatform().databases, 0);
}

/// A folder with a database of another program, which this one only visits.
class Databases : public testing::TestWithParam<DatabasesSubject> {
 protected:
  Databases() {
    owner(
        "CREATE TABLE files (id TEXT, path TEXT);"
        "INSERT INTO files VALUES ('1', '/a'), ('1', NULL), ('2', '/\u00E9''\"');");
  }

  quarn::Databases& databases() const { return *databases_; }
  Path file() const { return scratch_ / name_; }

  /// The names in the folder of the database.
  std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& item : fs::directory_iterator(scratch_.path().text())) {
      found.insert(item.path().filename().string());
    }
    return found;
  }

  /// What the owner of the database does; returns its connection, which may hold a lock.
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> owner(const std::string& sql) {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(file().text().c_str(), &handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(handle);
    return {handle, sqlite3_close};
  }

  std::vector<std::optional<std::string>> paths(const std::optional<std::string>& id) {
    std::vector<std::optional<std::string>> found;
    auto database = databases().openForReading(file());
    auto statement = database->prepare("SELECT path FROM files WHERE id IS ?1 ORDER BY rowid;");
    statement->bind(1, id);
    while (statement->step() == Statement::Step::row) found.push_back(statement->text(0));
    return found;
  }

  /// The outcome of a whole operation, from opening to the last step.
  bool canDo(const std::string& sql, const std::unique_ptr<Database>& database) {
    if (!database) return false;
    auto statement = database->prepare(sql);
    return statement && statement->step() != Statement::Step::failed;
  }
  bool canRead() { return canDo("SELECT path FROM files;", databases().openForReading(file())); }
  bool canWrite() { return canDo("DELETE FROM files;", databases().openForWriting(file())); }

  /// A database as its owner leaves it in WAL mode, under any name.
  void ownerKeepsALog(const std::string& name = "installs.db") {
    fs::rename(file().text(), (scratch_ / name).text());
    name_ = name;
    owner("PRAGMA journal_mode = WAL; INSERT INTO files VALUES ('3', '/c');");
  }
  Path beside(const std::string& suffix) const { return Path(file().text() + suffix); }

  ScratchFolder scratch_;

 private:
  std::string name_ = "installs.db";
  std::shared_ptr<quarn::Databases> databases_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Databases,
                         testing::Values(DatabasesSubject{"Host", theHosts},
                                         DatabasesSubject{"FailingDatabases", failing}),
                         nameOf<DatabasesSubject>);

using Texts = std::vector<std::optional<std::string>>;

TEST_P(Databases, rowsComeInOrderAndNullIsAbsent) {
  EXPECT_EQ(paths("1"), (Texts{"/a", std::nullopt}));
  EXPECT_EQ(paths("2"), (Texts{"/\u00E9'\""}));
  EXPECT_EQ(paths("3"), Texts{});
}

TEST_P(Databases, anAbsentTextIsBoundAsNull) {
  {
    auto database = databases().openForWriting(file());
    auto statement = database->prepare("INSERT INTO files VALUES (?, ?);");
    statement->bind(1, std::nullopt);
    statement->bind(2, "/b");
    EXPECT_EQ(statement->step(), Statement::Step::done);
  }
  EXPECT_EQ(paths(std::nullopt), (Texts{"/b"}));
}

TEST_P(Databases, aBoundTextIsKeptWhenTheCallersGoes) {
  auto database = databases().openForReading(file());
  auto statement = database->prepare("SELECT ?;");
  {
    std::string text = "a text too long to be stored within its own object";
    statement->bind(1, text);
    text.assign(text.size(), 'x');
  }
  ASSERT_EQ(statement->step(), Statement::Step::row);
  EXPECT_EQ(statement->text(0), "a text too long to be stored within its own object");
}

TEST_P(Databases, aTextIsNeverReadAsCode) {
  EXPECT_EQ(paths("1' OR '1'='1"), Texts{});
}

TEST_P(Databases, changedRowsAreCounted) {
  auto database = databases().openForWriting(file());
  auto statement = database->prepare("DELETE FROM files WHERE id = ?;");
  statement->bind(1, "1");
  EXPECT_EQ(statement->step(), Statement::Step::done);
  EXPECT_EQ(database->changes(), 2);
  EXPECT_EQ(paths("1"), Texts{});
}

TEST_P(Databases, aZeroByteInItsPathOpensNothing) {
  const Path cut(file().text() + std::string("\0x", 2));
  EXPECT_FALSE(databases().openForReading(cut));
}

TEST_P(Databases, aReaderCannotWrite) {
  EXPECT_FALSE(canDo("DELETE FROM files;", databases().openForReading(file())));
  EXPECT_EQ(paths("1").size(), 2u);
}

TEST_P(Databases, aMissingFileIsNotCreated) {
  fs::remove(file().text());
  EXPECT_FALSE(databases().openForReading(file()));
  EXPECT_FALSE(databases().openForWriting(file()));
  EXPECT_FALSE(fs::exists(file().text()));
}

TEST_P(Databases, aFolderInPlaceOfTheFileCannotBeOpened) {
  fs::remove(file().text());
  fs::create_directory(file().text());
  EXPECT_FALSE(databases().openForReading(file()));
  EXPECT_FALSE(databases().openForWriting(file()));
}

TEST_P(Databases, aFileThatIsNoDatabaseFailsAndStaysAsItIs) {
  std::ofstream(file().text(), std::ios::trunc) << std::string(4096, 'x');
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
  EXPECT_EQ(fs::file_size(file().text()), 4096u);
}

TEST_P(Databases, aDatabaseCutShortFails) {
  fs::resize_file(file().text(), 1000);
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_P(Databases, aStatementForAnotherSchemaIsNotToBeHad) {
  auto database = databases().openForReading(file());
  EXPECT_FALSE(database->prepare("SELECT path FROM tracked_files;"));
  EXPECT_FALSE(database->prepare("SELECT size FROM files;"));
  EXPECT_FALSE(database->prepare("SELEKT"));
  EXPECT_FALSE(database->prepare(""));
  EXPECT_TRUE(database->prepare("SELECT path FROM files;"));
}

TEST_P(Databases, aLockedDatabaseFailsAtOnce) {
  ASSERT_TRUE(canRead());
  const auto lock = owner("BEGIN EXCLUSIVE;");
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_P(Databases, aDatabaseThatIsBeingWrittenCanStillBeRead) {
  const auto lock = owner("BEGIN IMMEDIATE;");
  EXPECT_TRUE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_P(Databases, nothingIsHeldOnceItIsGone) {
  EXPECT_TRUE(canWrite());
  owner("BEGIN EXCLUSIVE; DROP TABLE files; COMMIT;");
  EXPECT_FALSE(canRead());
}

using Names = std::set<std::string>;

TEST_P(Databases, readingADatabaseWithALogLeavesNoFileBesideIt) {
  ownerKeepsALog();
  ASSERT_EQ(names(), Names{"installs.db"}) << "the owner has written its log back";
  EXPECT_EQ(paths("3"), (Texts{"/c"}));
  EXPECT_EQ(names(), Names{"installs.db"});
}

TEST_P(Databases, withALogItIsReadUnderAnyName) {
  const std::string letter = traitsOf(scratch_).anyBytes ? "\xFF" : "\u00E9";
  const std::string name = "a %41?b=c#d&e" + letter + ".db";
  ownerKeepsALog(name);
  EXPECT_EQ(paths("3"), (Texts{"/c"}));
  EXPECT_EQ(names(), Names{name});
}

TEST_P(Databases, anEmptyLogIsLeftAsItIs) {
  ownerKeepsALog();
  std::ofstream(beside("-wal").text()).flush();
  EXPECT_EQ(paths("3"), (Texts{"/c"}));
  EXPECT_EQ(names(), (Names{"installs.db", "installs.db-wal"}));
}

TEST_P(Databases, readingThroughALinkLeavesNoFileWhereItLeadsTo) {
  ownerKeepsALog("real.db");
  fs::create_symlink("real.db", (scratch_ / "link.db").text());
  EXPECT_TRUE(canDo("SELECT path FROM files;", databases().openForReading(scratch_ / "link.db")));
  EXPECT_EQ(names(), (Names{"link.db", "real.db"}));
}

TEST_P(Databases, aLogOfALiveOwnerIsRead) {
  ownerKeepsALog();
  const auto open = owner("INSERT INTO files VALUES ('4', '/d');");
  const Names before = names();
  ASSERT_EQ(before, (Names{"installs.db", "installs.db-shm", "installs.db-wal"}));
  EXPECT_EQ(paths("4"), (Texts{"/d"}));
  EXPECT_EQ(names(), before);
}

TEST_P(Databases, aLeftOverLogWithoutItsIndexIsNotOpened) {
  ownerKeepsALog();
  const auto log = beside("-wal"), kept = beside("-kept");
  {
    const auto open = owner("INSERT INTO files VALUES ('4', '/d');");
    fs::copy_file(log.text(), kept.text());
  }
  fs::rename(kept.text(), log.text());
  ASSERT_GT(fs::file_size(log.text()), 0u);
  EXPECT_FALSE(databases().openForReading(file()));
  EXPECT_EQ(names(), (Names{"installs.db", "installs.db-wal"}));
}

}  // namespace
}  // namespace quarn::contract
