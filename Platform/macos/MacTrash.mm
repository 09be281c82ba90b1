#include "Platform/macos/FoundationText.h"
#include "Platform/macos/MacPlatform.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

Result<Path> MacTrash::moveToTrash(const Path& item) {
  @autoreleasepool {
    NSURL* url = foundationURL(item);
    NSURL* inTrash = nil;
    NSError* error = nil;
    if (url && [NSFileManager.defaultManager trashItemAtURL:url resultingItemURL:&inTrash error:&error])
      return pathOf(inTrash);
    if (error.code == NSFeatureUnsupportedError && [error.domain isEqualToString:NSCocoaErrorDomain])
      return CocoaError::noTrash(item, volumeName(item));
    return foundationError(CocoaError::Operation::trash, error, item);
  }
}

}  // namespace quarn
