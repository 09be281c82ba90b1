#include "Platform/macos/FoundationText.h"

namespace quarn {
namespace {

constexpr std::string_view byteOrderMark = "\uFEFF";

}  // namespace

NSString* foundationText(std::string_view bytes) {
  // The decoder drops a leading byte-order mark. The result would be another, shorter text, and offsets into
  // it would be wrong.
  NSMutableString* marks = [NSMutableString string];
  for (; bytes.starts_with(byteOrderMark); bytes.remove_prefix(byteOrderMark.size()))
    [marks appendString:@"\uFEFF"];
  NSString* rest = [[NSString alloc] initWithBytes:bytes.data()
                                            length:bytes.size()
                                          encoding:NSUTF8StringEncoding];
  return rest ? [marks stringByAppendingString:rest] : nil;
}

std::string bytesOf(NSString* text) {
  // A lossy conversion, because half a surrogate pair has no UTF-8 form and would otherwise give no data at
  // all.
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

NSString* foundationPath(const Path& path) {
  if (path.text().empty() || path.holdsNul()) return nil;
  return foundationText(path.text());
}

NSURL* foundationURL(const Path& path) {
  if (!foundationPath(path)) return nil;
  // `isDirectory:NO` avoids a look at the disk. The file-system form keeps the bytes; other initializers
  // decompose accented letters.
  return [NSURL fileURLWithFileSystemRepresentation:path.text().c_str() isDirectory:NO relativeToURL:nil];
}

Path pathOf(NSURL* url) {
  return url ? Path(url.fileSystemRepresentation) : Path();
}

}  // namespace quarn
