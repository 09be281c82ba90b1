#pragma once

#include <fcntl.h>
#include <optional>
#include <string>

#include "Platform/Path.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// How a folder is opened of which only names are looked up; it need not be readable then. macOS has O_SEARCH
/// since 13, Linux calls it O_PATH (open(2) of both).
#ifdef O_PATH
inline constexpr int searchOnly = O_PATH;
#else
inline constexpr int searchOnly = O_SEARCH;
#endif

/// A path in the form that the *at calls take: a folder and a text that begins there. A path longer than
/// one call accepts is walked in pieces, so that its length doesn't matter.
class PathAt {
 public:
  explicit PathAt(const Path& path);

  /// Not 0 if the beginning of a long path can't be reached, or if the path holds a zero byte.
  int error() const { return error_; }
  int folder() const;
  const char* name() const { return rest_.c_str(); }

 private:
  void walkTo(std::size_t longest);

  Descriptor holder_;
  std::string rest_;
  int error_ = 0;
};

/// Opens the item at a path of any length. Not open, with `errno` set, if that fails.
Descriptor openAt(const Path& path, int flags);

/// The stored text of a link, of any length. Nothing, with `errno` set, if it can't be read.
std::optional<std::string> linkText(int folder, const char* name);

/// All bytes of a file; follows links. Gives 0 or the number of the failure.
int readWhole(const PathAt& file, std::string& content);

}  // namespace quarn
