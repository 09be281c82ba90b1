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
    if ((path.text() + "/").starts_with(item_ + "/"))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, sentence);
    return FileSystemDecorator::realPath(path);
  }

 private:
  const std::string item_;
};

}  // namespace quarn
