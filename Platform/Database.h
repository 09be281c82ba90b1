#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/Path.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quarn {

/// One prepared statement, finalized when it goes.
class Statement {
 public:
  enum class Step { row, done, failed };

  /// Positions of parameters begin at 1. An absent text binds NULL.
  void bind(int parameter, const std::optional<std::string>& text);
  Step step();
  /// Columns begin at 0. Absent for NULL.
  std::optional<std::string> text(int column) const;

 private:
  friend class Database;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An SQLite database that is there already: never created, no busy handler, closed when it goes. A
/// locked database fails like a missing one.
class Database {
 public:
  enum class Access { reading, writing };

  /// Nothing if it can't be opened.
  static std::optional<Database> open(const Path& file, Access access);
  /// Nothing if the database doesn't offer what the statement asks for.
  std::optional<Statement> prepare(const std::string& sql);
  /// Rows that the last statement changed.
  int changes() const;

 private:
  struct Close {
    void operator()(sqlite3* handle) const;
  };
  std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace quarn
