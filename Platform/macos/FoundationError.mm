#include <cerrno>

#include "Platform/macos/FoundationText.h"
#include "Platform/posix/FileOperations.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

PlatformError foundationError(CocoaError::Operation operation, NSError* error, const Path& item,
                              const Path& destination) {
  if (!error) return writeError(operation, EINVAL, item, destination);
  const int code = static_cast<int>(error.code);
  // Foundation's own sentence is in the user's language, while everything else that is printed is English. So
  // only its code is used.
  if ([error.domain isEqualToString:NSPOSIXErrorDomain])
    return writeError(operation, code, item, destination);
  if (![error.domain isEqualToString:NSCocoaErrorDomain])
    return CocoaError::ofDomain(bytesOf(error.domain), code);
  const Path& written = destination.text().empty() ? item : destination;
  return CocoaError::fromCode(operation, code, item, destination, [&] { return volumeName(written); });
}

}  // namespace quarn
