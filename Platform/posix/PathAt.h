#pragma once

#include <string>

#include "Platform/Path.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

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

}  // namespace quarn
