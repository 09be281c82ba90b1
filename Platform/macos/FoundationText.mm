#include "Platform/macos/FoundationText.h"

namespace quarn {

NSString* foundationText(std::string_view bytes) {
  return [[NSString alloc] initWithBytes:bytes.data() length:bytes.size() encoding:NSUTF8StringEncoding];
}

std::string bytesOf(NSString* text) {
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

NSString* foundationPath(const Path& path) {
  if (path.text().empty() || path.holdsNul()) return nil;
  return foundationText(path.text());
}

NSURL* foundationURL(const Path& path) {
  if (!foundationPath(path)) return nil;
  return [NSURL fileURLWithFileSystemRepresentation:path.text().c_str() isDirectory:NO relativeToURL:nil];
}

Path pathOf(NSURL* url) {
  return url ? Path(url.fileSystemRepresentation) : Path();
}

}  // namespace quarn
