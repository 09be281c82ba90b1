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
  // A zero byte would silently name another item, the one before it.
  if (path.text().empty() || path.text().find('\0') != std::string::npos) return nil;
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
