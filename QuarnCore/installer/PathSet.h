#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quarn {

/// Distinct paths in path order, in which a folder is directly followed by everything below it: byte by byte,
/// with "/" below every other byte. Each path is stored as what it shares with the one before it and the
/// rest, because a snapshot has a path for every file of every application.
class PathSet {
 public:
  /// Goes through the paths of a set, which must neither change nor end meanwhile. Stands before the first
  /// one at first.
  class Cursor {
   public:
    explicit Cursor(const PathSet& paths) : rest_(paths.bytes_) {}

    /// Moves on. Returns false, with an empty path, if there was no further one.
    bool next();
    /// Returns the path, which is valid until the next move.
    std::string_view path() const { return path_; }
    /// Returns how many bytes the path has in common with the one before it.
    std::size_t shared() const { return shared_; }
    /// Returns the rest of the path, which is valid as long as the set.
    std::string_view own() const { return own_; }

   private:
    std::size_t number();

    std::string_view rest_;
    std::string_view own_;
    std::string path_;
    std::size_t shared_ = 0;
  };

  PathSet() = default;
  /// Takes paths in any order and with repetitions. An empty text is no path.
  explicit PathSet(std::vector<std::string> paths);

  /// Adds a path that comes behind all others. Returns false, and adds nothing, if it doesn't.
  bool append(std::string_view path);
  std::size_t count() const { return count_; }
  /// Returns the last path, or an empty text.
  const std::string& last() const { return last_; }
  bool operator==(const PathSet&) const = default;

 private:
  void addNumber(std::size_t number);

  std::string bytes_;
  std::string last_;
  std::size_t count_ = 0;
};

/// Returns whether a path comes before another one in path order.
bool precedesInPathOrder(std::string_view a, std::string_view b);

/// Returns whether a path lies inside a folder, at any depth.
bool isBelow(std::string_view path, std::string_view folder);

/// Returns the paths of either set.
PathSet united(const PathSet& a, const PathSet& b);

/// Returns the paths of a set that another one doesn't hold, in path order.
std::vector<std::string> difference(const PathSet& paths, const PathSet& others);

}  // namespace quarn
