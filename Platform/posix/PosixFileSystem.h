#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

/// The operations that both systems implement alike, through calls that take the bytes of a path as they are.
/// Resolving links is left to each system.
class PosixFileSystem : public FileSystem {
 public:
  bool exists(const Path& path) const override;
  bool isFolder(const Path& path) const override;
  Result<FileAttributes> attributes(const Path& path) const override;
  Result<std::string> readSymbolicLink(const Path& path) const override;
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override;
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override;
  void walkSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) const override;
  Result<std::string> read(const Path& file) const override;
  Result<std::string> readStart(const Path& file, std::size_t count) const override;
  std::optional<PlatformError> obstacleToRemoval(const Path& item) const override;

  Result<void> createFolder(const Path& folder) override;
  Result<void> createSymbolicLink(const Path& link, const std::string& target) override;
  Result<void> claim(const Path& place, FileKind folderOrRegular) override;
  Result<void> remove(const Path& item) override;
  Result<void> removeSymbolicLink(const Path& link) override;
  Result<bool> rename(const Path& source, const Path& destination) override;
  Result<void> copy(const Path& source, const Path& destination) override;
  Result<void> copyAttributes(const Path& source, const Path& destination) override;
  Result<void> setPermissions(const Path& item, std::uint32_t mode) override;
  Result<void> writeAtomically(const Path& file, std::string_view content) override;
  Result<void> flush(const Path& item) override;
};

}  // namespace quarn
