#include "Platform/Database.h"

#include <sqlite3.h>
#include <sys/stat.h>

namespace quarn {

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void Statement::bind(int parameter, const std::optional<std::string>& text) {
  if (text) {
    sqlite3_bind_text(statement_.get(), parameter, text->c_str(), -1, SQLITE_TRANSIENT);
  } else {
    sqlite3_bind_null(statement_.get(), parameter);
  }
}

Statement::Step Statement::step() {
  switch (sqlite3_step(statement_.get())) {
    case SQLITE_ROW:
      return Step::row;
    case SQLITE_DONE:
      return Step::done;
    default:
      return Step::failed;
  }
}

std::optional<std::string> Statement::text(int column) const {
  const auto* text = sqlite3_column_text(statement_.get(), column);
  if (!text) return std::nullopt;
  return reinterpret_cast<const char*>(text);
}

void Database::Close::operator()(sqlite3* handle) const {
  sqlite3_close(handle);
}

std::optional<Database> Database::open(const Path& file, Access access) {
  if (file.holdsNul()) return std::nullopt;
  struct stat status;
  // Opening a FIFO would wait for another process, for ever if none comes.
  if (::stat(file.text().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const int flags = access == Access::reading ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(file.text().c_str(), &handle, flags, nullptr);
  Database database;
  database.handle_.reset(handle);  // there may be a handle to close even when opening failed
  if (code != SQLITE_OK) return std::nullopt;
  return database;
}

std::optional<Statement> Database::prepare(const std::string& sql) {
  sqlite3_stmt* handle = nullptr;
  const int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &handle, nullptr);
  if (code != SQLITE_OK || !handle) return std::nullopt;
  Statement statement;
  statement.statement_.reset(handle);
  return statement;
}

int Database::changes() const {
  return sqlite3_changes(handle_.get());
}

}  // namespace quarn
