#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

/// Forwards every operation to another file system. A derived class overrides only what it does differently.
class FileSystemDecorator : public FileSystem {
 public:
  explicit FileSystemDecorator(FileSystem& inner) : inner_(inner) {}

  bool exists(const Path& path) const override { return inner_.exists(path); }
  bool isFolder(const Path& path) const override { return inner_.isFolder(path); }
  Result<FileAttributes> attributes(const Path& path) const override { return inner_.attributes(path); }
  Result<std::string> readSymbolicLink(const Path& path) const override {
    return inner_.readSymbolicLink(path);
  }
  Result<Path> realPath(const Path& path) const override { return inner_.realPath(path); }
  Path standardized(const Path& path) const override { return inner_.standardized(path); }
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override {
    return inner_.list(folder, hidden);
  }
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    inner_.walk(root, hidden, visitor);
  }
  void walkSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    inner_.walkSorted(root, hidden, visitor);
  }
  Result<std::string> read(const Path& file) const override { return inner_.read(file); }
  Result<std::string> readStart(const Path& file, std::size_t count) const override {
    return inner_.readStart(file, count);
  }
  std::optional<PlatformError> obstacleToRemoval(const Path& item) const override {
    return inner_.obstacleToRemoval(item);
  }

  Result<void> createFolder(const Path& folder) override { return inner_.createFolder(folder); }
  Result<void> createSymbolicLink(const Path& link, const std::string& target) override {
    return inner_.createSymbolicLink(link, target);
  }
  Result<void> claim(const Path& place, FileKind folderOrRegular) override {
    return inner_.claim(place, folderOrRegular);
  }
  Result<void> remove(const Path& item) override { return inner_.remove(item); }
  Result<void> removeSymbolicLink(const Path& link) override { return inner_.removeSymbolicLink(link); }
  Result<bool> rename(const Path& source, const Path& destination) override {
    return inner_.rename(source, destination);
  }
  Result<void> copy(const Path& source, const Path& destination) override {
    return inner_.copy(source, destination);
  }
  Result<void> copyAttributes(const Path& source, const Path& destination) override {
    return inner_.copyAttributes(source, destination);
  }
  Result<void> setPermissions(const Path& item, std::uint32_t mode) override {
    return inner_.setPermissions(item, mode);
  }
  Result<void> writeAtomically(const Path& file, std::string_view content) override {
    return inner_.writeAtomically(file, content);
  }
  Result<void> flush(const Path& item) override { return inner_.flush(item); }

 private:
  FileSystem& inner_;
};

}  // namespace quarn
