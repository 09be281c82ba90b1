#include "Platform/PropertyList.h"

#include "Platform/macos/FoundationText.h"

namespace quarn::PropertyList {

namespace {

id read(std::string_view bytes) {
  NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
  return [NSPropertyListSerialization propertyListWithData:data
                                                   options:NSPropertyListImmutable
                                                    format:nullptr
                                                     error:nullptr];
}

}  // namespace

std::optional<std::map<std::string, std::string>> texts(std::string_view bytes) {
  @autoreleasepool {
    NSDictionary* root = read(bytes);
    if (![root isKindOfClass:NSDictionary.class]) return std::nullopt;
    std::map<std::string, std::string> found;
    for (id key in root) {
      id value = root[key];
      if ([key isKindOfClass:NSString.class] && [value isKindOfClass:NSString.class])
        found.emplace(bytesOf(key), bytesOf(value));
    }
    return found;
  }
}

}  // namespace quarn::PropertyList
