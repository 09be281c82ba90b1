#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// Makes folders of a run's own among the user's temporary files, and takes away those and nothing else. It
/// is what code that only looks may be handed where it has to unpack what it looks into.
class TemporaryFolders {
 public:
  explicit TemporaryFolders(Platform& platform) : platform_(platform) {}
  TemporaryFolders(const TemporaryFolders&) = delete;
  TemporaryFolders& operator=(const TemporaryFolders&) = delete;

  /// Makes a new empty folder, "<prefix><UUID>", and its missing parents. Throws.
  Path make(const std::string& prefix);
  /// Moves a folder that was made here to the Trash, or else beside itself (see `FileStash`). Never throws;
  /// ignores any other folder.
  void setAside(const Path& folder, const std::string& reason);
  /// Removes a folder that was made here, with its contents. Never throws; ignores any other folder.
  void remove(const Path& folder);

 private:
  bool isOurs(const Path& folder) const;

  Platform& platform_;
  std::vector<Path> made_;
};

}  // namespace quarn
