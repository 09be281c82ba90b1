#pragma once

#include <string>

#include "Platform/HostPlatform.h"
#include "tests/support/FileSystemDecorator.h"

namespace quarn {

/// The disk, but at one item and below it no link can be resolved, as where a disk fails for a moment.
class Unresolving : public FileSystemDecorator {
 public:
  static constexpr const char* sentence = "The disk fails.";
  /// What is told of an item that had to be looked at.
  static std::string of(const std::string& name) { return "“" + name + "” can’t be looked at: " + sentence; }

  explicit Unresolving(std::string item)
      : FileSystemDecorator(hostPlatform().files), item_(std::move(item)) {}

  Result<Path> realPath(const Path& path) const override {
    if (hides(path)) return failure();
    return FileSystemDecorator::realPath(path);
  }

 protected:
  bool hides(const Path& path) const { return (path.text() + "/").starts_with(item_ + "/"); }
  static PlatformError failure() {
    return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, sentence);
  }

 private:
  const std::string item_;
};

/// The disk, but one item and what lies below it can't be looked at in any way.
class Unseeable : public Unresolving {
 public:
  using Unresolving::Unresolving;

  bool exists(const Path& path) const override { return !hides(path) && Unresolving::exists(path); }
  bool isFolder(const Path& path) const override { return !hides(path) && Unresolving::isFolder(path); }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (hides(path)) return failure();
    return Unresolving::attributes(path);
  }
};

}  // namespace quarn
