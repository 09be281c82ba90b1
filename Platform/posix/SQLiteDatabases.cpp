#include "Platform/posix/SQLiteDatabases.h"

#include <sqlite3.h>
#include <sys/stat.h>

namespace quarn {
namespace {

struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

class SQLiteStatement : public Statement {
 public:
  explicit SQLiteStatement(sqlite3_stmt* handle) : handle_(handle) {}

  void bind(int parameter, const std::optional<std::string>& text) override {
    if (text) {
      // SQLITE_TRANSIENT makes SQLite copy the text, which may not live as long as the statement.
      sqlite3_bind_text(handle_.get(), parameter, text->c_str(), -1, SQLITE_TRANSIENT);
    } else {
      sqlite3_bind_null(handle_.get(), parameter);
    }
  }
  Step step() override {
    switch (sqlite3_step(handle_.get())) {
      case SQLITE_ROW:
        return Step::row;
      case SQLITE_DONE:
        return Step::done;
      default:
        return Step::failed;
    }
  }
  std::optional<std::string> text(int column) const override {
    const auto* text = sqlite3_column_text(handle_.get(), column);
    if (!text) return std::nullopt;
    return reinterpret_cast<const char*>(text);
  }

 private:
  std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

struct Close {
  void operator()(sqlite3* handle) const { sqlite3_close(handle); }
};

class SQLiteDatabase : public Database {
 public:
  explicit SQLiteDatabase(sqlite3* handle) : handle_(handle) {}

  std::unique_ptr<Statement> prepare(const std::string& sql) override {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &statement, nullptr);
    // An empty statement is prepared as a null pointer, and without an error.
    if (code != SQLITE_OK || !statement) return nullptr;
    return std::make_unique<SQLiteStatement>(statement);
  }
  int changes() const override { return sqlite3_changes(handle_.get()); }

 private:
  std::unique_ptr<sqlite3, Close> handle_;
};

std::unique_ptr<Database> open(const Path& file, int flags) {
  if (file.holdsNul()) return nullptr;
  struct stat status;
  // Opening a FIFO would wait for another process, for ever if none comes. The check is also what keeps
  // SQLite from opening a folder or a device.
  if (::stat(file.text().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(file.text().c_str(), &handle, flags, nullptr);
  // Owned before the result is checked: sqlite3_open_v2 may return a handle to close even when it fails.
  auto database = std::make_unique<SQLiteDatabase>(handle);
  if (code != SQLITE_OK) return nullptr;
  return database;
}

}  // namespace

std::unique_ptr<Database> SQLiteDatabases::openForReading(const Path& file) const {
  return open(file, SQLITE_OPEN_READONLY);
}

std::unique_ptr<Database> SQLiteDatabases::openForWriting(const Path& file) {
  return open(file, SQLITE_OPEN_READWRITE);
}

}  // namespace quarn
