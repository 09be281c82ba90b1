#include "Platform/posix/FileOperations.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

PlatformError writeError(CocoaError::Operation operation, int errnoValue, const Path& item,
                         const Path& destination) {
  const Path& written = destination.text().empty() ? item : destination;
  return CocoaError::fromErrno(operation, errnoValue, item, destination, [&] { return volumeName(written); });
}

}  // namespace quarn
