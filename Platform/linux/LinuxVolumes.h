#pragma once

#include "Platform/Volumes.h"

namespace quarn {

class LinuxVolumes : public Volumes {
 public:
  Result<std::vector<Path>> mounted() const override;
  Result<std::vector<Path>> mountPoints() const override;
  Result<VolumeProperties> properties(const Path& item) const override;
};

}  // namespace quarn
