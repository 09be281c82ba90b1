#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/Path.h"

namespace quarn {

/// One prepared statement, finalized when it goes.
class Statement {
 public:
  enum class Step { row, done, failed };

  virtual ~Statement() = default;
  /// Positions of parameters begin at 1. An absent text binds NULL.
  virtual void bind(int parameter, const std::optional<std::string>& text) = 0;
  virtual Step step() = 0;
  /// Columns begin at 0. Absent for NULL.
  virtual std::optional<std::string> text(int column) const = 0;
};

/// An open SQLite database, closed when it goes. There is no busy handler: a locked database fails at once.
class Database {
 public:
  virtual ~Database() = default;
  /// Null pointer if the database doesn't offer what the statement asks for.
  virtual std::unique_ptr<Statement> prepare(const std::string& sql) = 0;
  /// Rows that the last statement changed.
  virtual int changes() const = 0;
};

/// SQLite databases that are there already; none is ever created. A null pointer stands for one that is
/// missing, no regular file, or can't be opened.
class Databases {
 public:
  virtual ~Databases() = default;
  /// SQLite itself refuses a statement that would change it (sqlite3_open_v2, SQLITE_OPEN_READONLY).
  virtual std::unique_ptr<Database> openForReading(const Path& file) const = 0;
  virtual std::unique_ptr<Database> openForWriting(const Path& file) = 0;
};

}  // namespace quarn
