#include "Platform/system/Unicode.h"

#include <algorithm>

#include "Platform/macos/FoundationText.h"

namespace quarn::Unicode {

namespace {

/// Converts any bytes to a text. Bytes that aren't valid UTF-8 become one character each, so that they can
/// still be ordered.
NSString* anyText(std::string_view bytes) {
  if (NSString* text = foundationText(bytes)) return text;
  return [[NSString alloc] initWithBytes:bytes.data() length:bytes.size() encoding:NSISOLatin1StringEncoding];
}

bool isLineEndOfTwo(NSString* text, NSUInteger begin) {
  return begin + 1 < text.length && [text characterAtIndex:begin] == '\r' &&
         [text characterAtIndex:begin + 1] == '\n';
}

/// Calls `visit` for each character as people count them, until it returns false.
template <class Visit>
void forEachCharacter(NSString* text, Visit visit) {
  NSUInteger begin = 0;
  while (begin < text.length) {
    NSRange range = [text rangeOfComposedCharacterSequenceAtIndex:begin];
    // Foundation treats CR and LF as two characters.
    if (isLineEndOfTwo(text, begin)) range.length = 2;
    if (!visit(range)) return;
    begin = NSMaxRange(range);
  }
}

}  // namespace

std::string canonical(std::string_view text) {
  @autoreleasepool {
    return bytesOf(foundationText(text).precomposedStringWithCanonicalMapping);
  }
}

int compare(std::string_view a, std::string_view b) {
  @autoreleasepool {
    return static_cast<int>([anyText(a) localizedCaseInsensitiveCompare:anyText(b)]);
  }
}

bool contains(std::string_view text, std::string_view part) {
  @autoreleasepool {
    return [anyText(text) localizedCaseInsensitiveContainsString:anyText(part)];
  }
}

std::string lowercased(std::string_view text) {
  @autoreleasepool {
    NSString* source = foundationText(text);
    // Character by character, so that a capital sigma at the end of a word becomes the same small sigma as
    // elsewhere.
    NSMutableString* result = [NSMutableString string];
    forEachCharacter(source, [&](NSRange range) {
      [result appendString:[source substringWithRange:range].lowercaseString];
      return true;
    });
    return bytesOf(result);
  }
}

std::string uppercased(std::string_view text) {
  @autoreleasepool {
    return bytesOf(foundationText(text).uppercaseString);
  }
}

std::size_t prefixLength(std::string_view text, std::size_t count) {
  @autoreleasepool {
    NSString* source = foundationText(text);
    if (!source) return std::min(count, text.size());
    NSUInteger end = 0;
    forEachCharacter(source, [&](NSRange range) {
      if (count-- == 0) return false;
      end = NSMaxRange(range);
      return true;
    });
    // The offset is needed in bytes, but Foundation counts UTF-16 units.
    return bytesOf([source substringToIndex:end]).size();
  }
}

std::size_t characterCount(std::string_view text) {
  @autoreleasepool {
    NSString* source = foundationText(text);
    if (!source) return text.size();
    std::size_t count = 0;
    forEachCharacter(source, [&](NSRange) {
      ++count;
      return true;
    });
    return count;
  }
}

}  // namespace quarn::Unicode
