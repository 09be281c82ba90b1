#include "Platform/linux/WriteError.h"

#include "Platform/linux/MountTable.h"

namespace quarn {

PlatformError writeError(CocoaError::Operation operation, int errnoValue, const Path& item,
                         const Path& destination) {
  const Path& written = destination.text().empty() ? item : destination;
  return CocoaError::fromErrno(operation, errnoValue, item, destination,
                               [&] { return MountTable::volumeName(written); });
}

}  // namespace quarn
