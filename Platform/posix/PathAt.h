#pragma once

#include <fcntl.h>
#include <optional>
#include <string>

#include "Platform/Path.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// The flag for opening a folder only to look up names in it; it need not be readable then. macOS has
/// O_SEARCH since version 13, and Linux calls it O_PATH (open(2) of both).
#ifdef O_PATH
inline constexpr int searchOnly = O_PATH;
#else
inline constexpr int searchOnly = O_SEARCH;
#endif

/// A path in the form that the *at calls take: a folder and a path relative to it. A path longer than one
/// call accepts is walked in pieces, so its length doesn't matter.
class PathAt {
 public:
  explicit PathAt(const Path& path);

  /// Returns an error number if the beginning of a long path can't be opened or the path contains a NUL; else
  /// 0.
  int error() const { return error_; }
  int folder() const;
  const char* name() const { return rest_.c_str(); }

 private:
  void walkTo(std::size_t longest);

  Descriptor holder_;
  std::string rest_;
  int error_ = 0;
};

/// Opens the item at a path of any length. On failure the result isn't open and `errno` is set.
Descriptor openAt(const Path& path, int flags);

/// Returns the stored target of a link, of any length. Returns nothing, with `errno` set, if it can't be
/// read.
std::optional<std::string> linkText(int folder, const char* name);

/// Reads all bytes of a file; follows links. Returns 0 or the error number.
int readWhole(const PathAt& file, std::string& content);
/// Does the same for the first bytes, at most `count`.
int readStart(const PathAt& file, std::size_t count, std::string& content);

}  // namespace quarn
