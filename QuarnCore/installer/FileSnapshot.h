#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "QuarnCore/installer/PathSet.h"

namespace quarn {

/// The part of a root that a snapshot couldn't see: what comes behind `last` in path order. If that is empty,
/// not even the root itself could be looked at.
struct UnseenPart {
  std::string root;
  std::string last;
  bool operator==(const UnseenPart&) const = default;
};

/// What stood below some roots at one moment. It is never stored.
struct FileSnapshot {
  PathSet paths;
  std::vector<UnseenPart> unseen;

  std::size_t count() const { return paths.count(); }
  /// Returns false for a path in an unseen part: whether anything stood there can't be told. That another
  /// root may have seen it doesn't count.
  bool knows(std::string_view path) const;
  bool operator==(const FileSnapshot&) const = default;
};

}  // namespace quarn
