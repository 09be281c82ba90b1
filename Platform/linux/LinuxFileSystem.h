#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

class LinuxFileSystem : public FileSystem {
 public:
  bool exists(const Path& path) const override;
  bool isDirectory(const Path& path) const override;
  Result<FileAttributes> attributes(const Path& path) const override;
  Result<std::string> readLink(const Path& path) const override;
  Path resolvingLinks(const Path& path) const override;
  Path standardized(const Path& path) const override;
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override;
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override;
  Result<std::string> read(const Path& file) const override;

  Result<void> createFolder(const Path& folder) override;
  Result<void> createLink(const Path& link, const std::string& target) override;
  Result<void> remove(const Path& item) override;
  Result<void> move(const Path& source, const Path& destination) override;
  Result<void> writeAtomically(const Path& file, std::string_view content) override;
};

}  // namespace quarn
