#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/Path.h"

namespace quarn {

/// A prepared statement. The destructor finalizes it.
class Statement {
 public:
  enum class Step { row, done, failed };

  virtual ~Statement() = default;
  /// Binds a text to a parameter, counted from 1. Binds NULL if there is no text.
  virtual void bind(int parameter, const std::optional<std::string>& text) = 0;
  virtual Step step() = 0;
  /// Returns the text of a column, counted from 0, or nothing if it is NULL.
  virtual std::optional<std::string> text(int column) const = 0;
};

/// An open SQLite database. The destructor closes it. It has no busy handler, so a locked database fails at
/// once.
class Database {
 public:
  virtual ~Database() = default;
  /// Returns a null pointer if the statement can't be prepared, for example because the database lacks a
  /// table that it names.
  virtual std::unique_ptr<Statement> prepare(const std::string& sql) = 0;
  /// Returns how many rows the last statement changed.
  virtual int changes() const = 0;
};

/// Opens SQLite databases that already exist; it never creates one. Both operations return a null pointer if
/// the file is missing, isn't a regular file or can't be opened.
class Databases {
 public:
  virtual ~Databases() = default;
  /// Opens a database read-only: SQLite refuses any statement that would change it (SQLITE_OPEN_READONLY of
  /// sqlite3_open_v2), and reading leaves no file beside it. Returns a null pointer for a database with a
  /// write-ahead log that can't be read without creating such a file.
  virtual std::unique_ptr<Database> openForReading(const Path& file) const = 0;
  virtual std::unique_ptr<Database> openForWriting(const Path& file) = 0;
};

}  // namespace quarn
