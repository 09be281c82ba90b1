#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Platform/Platform.h"

namespace quarn {

/// Counts the lines that `find` prints for an item and everything below it, hidden items included. Counting
/// starts with the constructor, while the owner does something else.
class EntryCount {
 public:
  EntryCount(const ReadOnlyPlatform& platform, const Path& root);
  ~EntryCount();
  EntryCount(const EntryCount&) = delete;
  EntryCount& operator=(const EntryCount&) = delete;

  /// Waits for the result. Returns nothing if `find` can't be started, couldn't read some part, or printed
  /// something that isn't UTF-8.
  std::optional<std::int64_t> value();

 private:
  struct Run;
  std::unique_ptr<Run> run_;
};

}  // namespace quarn
