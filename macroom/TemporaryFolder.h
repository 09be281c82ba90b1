#pragma once

#include <optional>
#include <string>

#include "Sys.h"

namespace quarn::room {

/// A folder with a name of its own, removed with all it holds at the end of its life. It is locked while it
/// is in use; making one removes those beside it whose owner was killed before it could.
class TemporaryFolder {
 public:
  /// Below `parent`; absent where nothing can be made there.
  static std::optional<TemporaryFolder> make(const std::string& parent);

  TemporaryFolder(TemporaryFolder&& other) noexcept
      : path_(std::exchange(other.path_, {})), lock_(std::move(other.lock_)) {}
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  ~TemporaryFolder();

  const std::string& path() const { return path_; }

 private:
  TemporaryFolder(std::string path, Descriptor lock) : path_(std::move(path)), lock_(std::move(lock)) {}

  std::string path_;
  Descriptor lock_;
};

}  // namespace quarn::room
