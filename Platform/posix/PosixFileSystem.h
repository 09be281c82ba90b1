#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

/// What both systems do alike, by calls that take the bytes of a path as they are. Resolving, removing
/// and moving are left to each.
class PosixFileSystem : public FileSystem {
 public:
  bool exists(const Path& path) const override;
  bool isDirectory(const Path& path) const override;
  Result<FileAttributes> attributes(const Path& path) const override;
  Result<std::string> readLink(const Path& path) const override;
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override;
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override;
  Result<std::string> read(const Path& file) const override;

  Result<void> createFolder(const Path& folder) override;
  Result<void> createLink(const Path& link, const std::string& target) override;
  Result<void> writeAtomically(const Path& file, std::string_view content) override;
};

}  // namespace quarn
