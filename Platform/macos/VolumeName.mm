#include "Platform/macos/FoundationText.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

NSString* nameFor(const Path& path) {
  NSString* name = nil;
  [foundationURL(path) getResourceValue:&name forKey:NSURLVolumeNameKey error:nullptr];
  return name;
}

}  // namespace

std::string volumeName(const Path& path) {
  @autoreleasepool {
    NSString* name = nameFor(path);
    // The item itself need not exist.
    if (!name) name = nameFor(path.parent());
    return name ? bytesOf(name) : std::string();
  }
}

}  // namespace quarn
