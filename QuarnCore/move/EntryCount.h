#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Platform/Platform.h"

namespace quarn {

/// The number of lines that `find` prints for an item and all below it, hidden ones too. It counts from
/// the moment it is made, while its owner does something else.
class EntryCount {
 public:
  EntryCount(const ReadOnlyPlatform& platform, const Path& root);
  ~EntryCount();
  EntryCount(const EntryCount&) = delete;
  EntryCount& operator=(const EntryCount&) = delete;

  /// Waits for the end. Nothing if `find` can't be started, met a part it can't read, or printed what is
  /// no text.
  std::optional<std::int64_t> value();

 private:
  struct Run;
  std::unique_ptr<Run> run_;
};

}  // namespace quarn
