#pragma once

#include <vector>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"

/// What the suites of `Platform/FileSystem.h` have in common.
namespace quarn::contract {

std::vector<Subject<FileSystem>> fileSystems();
/// Without those whose walks meet a list of the test's own.
std::vector<Subject<FileSystem>> fileSystemsThatWalkTheDisk();
/// The host's, which walks in path order even if it isn't asked to: that, too, is a walk.
Subject<FileSystem> alwaysSorted();

class FileSystemContract : public testing::TestWithParam<Subject<FileSystem>> {
 protected:
  FileSystem& files() const { return *files_; }

 private:
  std::shared_ptr<FileSystem> files_ = GetParam().make();
};

inline constexpr const char* noOtherVolume = "there is no second volume to write to";

}  // namespace quarn::contract
