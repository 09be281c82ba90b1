#pragma once

#include <string>
#include <vector>

#include "tests/support/FileSystemDecorator.h"

namespace quarn {

/// Each changing operation first passes `before`, which may fail it.
class GuardedFileSystem : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;

  Result<void> createFolder(const Path& folder) override {
    if (auto refusal = before("createFolder " + folder.text()); !refusal) return refusal;
    return FileSystemDecorator::createFolder(folder);
  }
  Result<void> createSymbolicLink(const Path& link, const std::string& target) override {
    if (auto refusal = before("createSymbolicLink " + link.text() + " -> " + target); !refusal)
      return refusal;
    return FileSystemDecorator::createSymbolicLink(link, target);
  }
  Result<void> claim(const Path& place, FileKind folderOrRegular) override {
    if (auto refusal = before("claim " + place.text()); !refusal) return refusal;
    return FileSystemDecorator::claim(place, folderOrRegular);
  }
  Result<void> remove(const Path& item) override {
    if (auto refusal = before("remove " + item.text()); !refusal) return refusal;
    return FileSystemDecorator::remove(item);
  }
  Result<void> removeSymbolicLink(const Path& link) override {
    if (auto refusal = before("removeSymbolicLink " + link.text()); !refusal) return refusal;
    return FileSystemDecorator::removeSymbolicLink(link);
  }
  Result<bool> rename(const Path& source, const Path& destination) override {
    if (auto refusal = before("rename " + source.text() + " -> " + destination.text()); !refusal)
      return refusal.error();
    return FileSystemDecorator::rename(source, destination);
  }
  Result<void> copy(const Path& source, const Path& destination) override {
    if (auto refusal = before("copy " + source.text() + " -> " + destination.text()); !refusal)
      return refusal;
    return FileSystemDecorator::copy(source, destination);
  }
  Result<void> copyAttributes(const Path& source, const Path& destination) override {
    if (auto refusal = before("copyAttributes " + source.text() + " -> " + destination.text()); !refusal)
      return refusal;
    return FileSystemDecorator::copyAttributes(source, destination);
  }
  Result<void> setPermissions(const Path& item, std::uint32_t mode) override {
    if (auto refusal = before("setPermissions " + item.text()); !refusal) return refusal;
    return FileSystemDecorator::setPermissions(item, mode);
  }
  Result<void> writeAtomically(const Path& file, std::string_view content) override {
    if (auto refusal = before("writeAtomically " + file.text()); !refusal) return refusal;
    return FileSystemDecorator::writeAtomically(file, content);
  }
  Result<void> flush(const Path& item) override {
    if (auto refusal = before("flush " + item.text()); !refusal) return refusal;
    return FileSystemDecorator::flush(item);
  }

 protected:
  virtual Result<void> before(const std::string& operation) = 0;
};

/// Keeps the changing operations as lines of text, in their order.
class Recording : public GuardedFileSystem {
 public:
  using GuardedFileSystem::GuardedFileSystem;
  const std::vector<std::string>& operations() const { return operations_; }

 protected:
  Result<void> before(const std::string& operation) override {
    operations_.push_back(operation);
    return {};
  }

 private:
  std::vector<std::string> operations_;
};

}  // namespace quarn
