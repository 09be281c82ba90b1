#pragma once

#include <sqlite3.h>
#include <stdexcept>
#include <string>

/// Another tool that holds an SQLite database for itself, until this goes.
class DatabaseLock {
 public:
  explicit DatabaseLock(const std::string& path) {
    if (sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
        sqlite3_exec(handle_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) != SQLITE_OK) {
      sqlite3_close(handle_);
      throw std::runtime_error("can't lock " + path);
    }
  }
  ~DatabaseLock() {
    sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(handle_);
  }
  DatabaseLock(const DatabaseLock&) = delete;
  DatabaseLock& operator=(const DatabaseLock&) = delete;

 private:
  sqlite3* handle_ = nullptr;
};
