#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Platform/HostPlatform.h"

namespace quarn {

namespace {

namespace fs = std::filesystem;

/// A folder with a database of another program, which this one only visits.
class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() {
    std::string pattern = fs::temp_directory_path() / "quarn-database-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    owner(
        "CREATE TABLE files (id TEXT, path TEXT);"
        "INSERT INTO files VALUES ('1', '/a'), ('1', NULL), ('2', '/\u00E9''\"');");
  }
  ~DatabaseTest() override { fs::remove_all(folder_); }

  Path file() const { return Path((folder_ / "installs.db").string()); }

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
    auto database = hostPlatform().databases.openForReading(file());
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
  bool canRead() { return canDo("SELECT path FROM files;", hostPlatform().databases.openForReading(file())); }
  bool canWrite() { return canDo("DELETE FROM files;", hostPlatform().databases.openForWriting(file())); }

  fs::path folder_;
};

using Texts = std::vector<std::optional<std::string>>;

}  // namespace

TEST_F(DatabaseTest, rowsComeInOrderAndNullIsAbsent) {
  EXPECT_EQ(paths("1"), (Texts{"/a", std::nullopt}));
  EXPECT_EQ(paths("2"), (Texts{"/\u00E9'\""}));
  EXPECT_EQ(paths("3"), Texts{});
}

TEST_F(DatabaseTest, anAbsentTextIsBoundAsNull) {
  {
    auto database = hostPlatform().databases.openForWriting(file());
    auto statement = database->prepare("INSERT INTO files VALUES (?, ?);");
    statement->bind(1, std::nullopt);
    statement->bind(2, "/b");
    EXPECT_EQ(statement->step(), Statement::Step::done);
  }
  EXPECT_EQ(paths(std::nullopt), (Texts{"/b"}));
}

TEST_F(DatabaseTest, aBoundTextIsKeptWhenTheCallersGoes) {
  auto database = hostPlatform().databases.openForReading(file());
  auto statement = database->prepare("SELECT ?;");
  {
    std::string text = "a text too long to be stored within its own object";
    statement->bind(1, text);
    text.assign(text.size(), 'x');
  }
  ASSERT_EQ(statement->step(), Statement::Step::row);
  EXPECT_EQ(statement->text(0), "a text too long to be stored within its own object");
}

TEST_F(DatabaseTest, aTextIsNeverReadAsCode) {
  EXPECT_EQ(paths("1' OR '1'='1"), Texts{});
}

TEST_F(DatabaseTest, changedRowsAreCounted) {
  auto database = hostPlatform().databases.openForWriting(file());
  auto statement = database->prepare("DELETE FROM files WHERE id = ?;");
  statement->bind(1, "1");
  EXPECT_EQ(statement->step(), Statement::Step::done);
  EXPECT_EQ(database->changes(), 2);
  EXPECT_EQ(paths("1"), Texts{});
}

TEST_F(DatabaseTest, aZeroByteInItsPathOpensNothing) {
  const Path cut(file().text() + std::string("\0x", 2));
  EXPECT_FALSE(hostPlatform().databases.openForReading(cut));
}

TEST_F(DatabaseTest, aReaderCannotWrite) {
  EXPECT_FALSE(canDo("DELETE FROM files;", hostPlatform().databases.openForReading(file())));
  EXPECT_EQ(paths("1").size(), 2u);
}

TEST_F(DatabaseTest, aMissingFileIsNotCreated) {
  fs::remove(file().text());
  EXPECT_FALSE(hostPlatform().databases.openForReading(file()));
  EXPECT_FALSE(hostPlatform().databases.openForWriting(file()));
  EXPECT_FALSE(fs::exists(file().text()));
}

TEST_F(DatabaseTest, aFolderInPlaceOfTheFileCannotBeOpened) {
  fs::remove(file().text());
  fs::create_directory(file().text());
  EXPECT_FALSE(hostPlatform().databases.openForReading(file()));
  EXPECT_FALSE(hostPlatform().databases.openForWriting(file()));
}

TEST_F(DatabaseTest, aFileThatIsNoDatabaseFailsAndStaysAsItIs) {
  std::ofstream(file().text(), std::ios::trunc) << std::string(4096, 'x');
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
  EXPECT_EQ(fs::file_size(file().text()), 4096u);
}

TEST_F(DatabaseTest, aDatabaseCutShortFails) {
  fs::resize_file(file().text(), 1000);
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_F(DatabaseTest, aStatementForAnotherSchemaIsNotToBeHad) {
  auto database = hostPlatform().databases.openForReading(file());
  EXPECT_FALSE(database->prepare("SELECT path FROM tracked_files;"));
  EXPECT_FALSE(database->prepare("SELECT size FROM files;"));
  EXPECT_FALSE(database->prepare("SELEKT"));
  EXPECT_FALSE(database->prepare(""));
  EXPECT_TRUE(database->prepare("SELECT path FROM files;"));
}

TEST_F(DatabaseTest, aLockedDatabaseFailsAtOnce) {
  ASSERT_TRUE(canRead());
  const auto lock = owner("BEGIN EXCLUSIVE;");
  EXPECT_FALSE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_F(DatabaseTest, aDatabaseThatIsBeingWrittenCanStillBeRead) {
  const auto lock = owner("BEGIN IMMEDIATE;");
  EXPECT_TRUE(canRead());
  EXPECT_FALSE(canWrite());
}

TEST_F(DatabaseTest, nothingIsHeldOnceItIsGone) {
  EXPECT_TRUE(canWrite());
  owner("BEGIN EXCLUSIVE; DROP TABLE files; COMMIT;");
  EXPECT_FALSE(canRead());
}

}  // namespace quarn
