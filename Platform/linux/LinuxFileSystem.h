#pragma once

#include "Platform/posix/PosixFileSystem.h"

namespace quarn {

class LinuxFileSystem : public PosixFileSystem {
 public:
  Path resolvingLinks(const Path& path) const override;
  Path standardized(const Path& path) const override;
};

}  // namespace quarn
