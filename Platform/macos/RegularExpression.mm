#include "Platform/RegularExpression.h"

#include "Platform/macos/FoundationText.h"

namespace quarn {
namespace {

/// Bytes that are no UTF-8 are taken as one character each, so that they come back as they were.
NSStringEncoding encodingOf(std::string_view text) {
  return foundationText(text) ? NSUTF8StringEncoding : NSISOLatin1StringEncoding;
}

std::string encoded(NSString* text, NSStringEncoding encoding) {
  NSData* data = [text dataUsingEncoding:encoding allowLossyConversion:YES];
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

}  // namespace

struct RegularExpression::Compiled {
  NSRegularExpression* expression;  // null if it doesn't compile
};

RegularExpression::RegularExpression(std::string_view pattern) : compiled_(std::make_unique<Compiled>()) {
  @autoreleasepool {
    NSString* text = foundationText(pattern);
    if (text)
      compiled_->expression = [NSRegularExpression regularExpressionWithPattern:text options:0 error:nullptr];
  }
}

RegularExpression::~RegularExpression() = default;

std::vector<std::string> RegularExpression::captures(std::string_view text, int number) const {
  @autoreleasepool {
    const auto group = static_cast<NSUInteger>(number);
    if (group > compiled_->expression.numberOfCaptureGroups) return {};
    const NSStringEncoding encoding = encodingOf(text);
    NSString* source = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:encoding];
    std::vector<std::string> found;
    const NSRange all = NSMakeRange(0, source.length);
    for (NSTextCheckingResult* match in [compiled_->expression matchesInString:source options:0 range:all]) {
      const NSRange range = [match rangeAtIndex:group];
      if (range.location == NSNotFound) continue;
      found.push_back(encoded([source substringWithRange:range], encoding));
    }
    return found;
  }
}

}  // namespace quarn
