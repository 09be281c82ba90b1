#include <filesystem>
#include <fstream>
#include <sqlite3.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/FailingDatabases.h"
#include "tests/support/ScratchFolder.h"

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
  Path file() const { return scratch_ / "installs.db"; }

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

 private:
  ScratchFolder scratch_;
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

}  // namespace
}  // namespace quarn::contract
