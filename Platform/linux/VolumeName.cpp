#include "Platform/posix/VolumeName.h"

#include "Platform/linux/MountTable.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

std::string volumeName(const Path& path) {
  const auto found = MountTable::volumes();
  return MountTable::holding(found.value_or(std::vector<MountedVolume>{}), withParentResolved(path)).name();
}

}  // namespace quarn
