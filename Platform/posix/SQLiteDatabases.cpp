#include <sqlite3.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "Platform/posix/PosixPlatform.h"

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
using Handle = std::unique_ptr<sqlite3, Close>;

class SQLiteDatabase : public Database {
 public:
  explicit SQLiteDatabase(Handle handle) : handle_(std::move(handle)) {}

  std::unique_ptr<Statement> prepare(const std::string& sql) override {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &statement, nullptr);
    // An empty statement is prepared as a null pointer, and without an error.
    if (code != SQLITE_OK || !statement) return nullptr;
    return std::make_unique<SQLiteStatement>(statement);
  }
  int changes() const override { return sqlite3_changes(handle_.get()); }

 private:
  Handle handle_;
};

Handle open(const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &opened, flags, nullptr);
  // Owned before the result is checked: sqlite3_open_v2 may return a handle to close even when it fails.
  Handle handle(opened);
  return code == SQLITE_OK ? std::move(handle) : nullptr;
}

Handle openFile(const Path& file, int flags) {
  if (file.holdsNul()) return nullptr;
  struct stat status;
  // Opening a FIFO would wait for another process, for ever if none comes. The check is also what keeps
  // SQLite from opening a folder or a device.
  if (::stat(file.text().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  return open(file.text(), flags);
}

/// Returns whether a file exists and isn't empty.
bool hasContent(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && status.st_size > 0;
}

bool exists(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0;
}

/// Returns whether the header says that the database is in WAL mode: the "file format read version" is 2
/// (https://www.sqlite.org/fileformat2.html, section 1.3). It is read through SQLite's own descriptor,
/// because closing another one would release the locks that this process holds on the file (fcntl(2)).
bool isInWALMode(sqlite3* handle) {
  sqlite3_file* file = nullptr;
  const int code = sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (code != SQLITE_OK || !file || !file->pMethods) return false;
  unsigned char readVersion = 0;
  return file->pMethods->xRead(file, &readVersion, 1, 19) == SQLITE_OK && readVersion == 2;
}

/// Returns the URI of a file that SQLite is to read as if nobody could change it
/// (https://www.sqlite.org/uri.html). Every byte is written in hexadecimal, so none has a meaning of its own.
std::string immutableURI(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    uri += {'%', digits[byte >> 4], digits[byte & 0xF]};
  }
  return uri + "?immutable=1";
}

/// Makes sure that reading creates no file: SQLite would create the files "-wal" and "-shm" beside a database
/// in WAL mode if they are missing (https://www.sqlite.org/wal.html, section 5). SQLite looks for them where
/// a link leads to, and names that path as the one of the database.
Handle withoutTraces(Handle handle) {
  const std::string path = sqlite3_db_filename(handle.get(), "main");
  // The log holds changes that can't be read without an index of it.
  if (hasContent(path + "-wal")) return exists(path + "-shm") ? std::move(handle) : nullptr;
  if (!isInWALMode(handle.get())) return handle;
  // Without a log the file itself is the whole database.
  return open(immutableURI(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

std::unique_ptr<Database> owned(Handle handle) {
  return handle ? std::make_unique<SQLiteDatabase>(std::move(handle)) : nullptr;
}

}  // namespace

std::unique_ptr<Database> SQLiteDatabases::openForReading(const Path& file) const {
  Handle handle = openFile(file, SQLITE_OPEN_READONLY);
  return handle ? owned(withoutTraces(std::move(handle))) : nullptr;
}

std::unique_ptr<Database> SQLiteDatabases::openForWriting(const Path& file) {
  return owned(openFile(file, SQLITE_OPEN_READWRITE));
}

}  // namespace quarn
