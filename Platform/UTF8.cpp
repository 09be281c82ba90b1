#include "Platform/UTF8.h"

namespace quarn {

void UTF8Check::take(std::string_view bytes) {
  for (const char byte : bytes) {
    if (!valid_) return;
    // ASCII is by far the most common case and needs no state.
    if (expected_ == 0 && static_cast<signed char>(byte) >= 0) continue;
    takeByte(static_cast<std::uint8_t>(byte));
  }
}

void UTF8Check::takeByte(std::uint8_t byte) {
  if (expected_ == 0) {
    beginCharacter(byte);
    return;
  }
  valid_ = byte >= low_ && byte <= high_;
  low_ = 0x80;
  high_ = 0xBF;
  --expected_;
}

void UTF8Check::beginCharacter(std::uint8_t byte) {
  // 0xC0 and 0xC1 could begin only overlong forms, and bytes above 0xF4 only numbers beyond U+10FFFF.
  if (byte >= 0xC2 && byte <= 0xDF) {
    expected_ = 1;
  } else if (byte >= 0xE0 && byte <= 0xEF) {
    expected_ = 2;
    // A0 excludes overlong forms, 9F excludes surrogates.
    if (byte == 0xE0) low_ = 0xA0;
    if (byte == 0xED) high_ = 0x9F;
  } else if (byte >= 0xF0 && byte <= 0xF4) {
    expected_ = 3;
    // 90 excludes overlong forms, 8F excludes numbers beyond U+10FFFF.
    if (byte == 0xF0) low_ = 0x90;
    if (byte == 0xF4) high_ = 0x8F;
  } else {
    valid_ = false;
  }
}

namespace UTF8Text {
bool isScalar(std::uint32_t number) {
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  return number != 0 && number <= 0x10FFFF && !isSurrogate;
}

void append(std::string& text, std::uint32_t scalar) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((scalar >> shift) & 0x3F)); };
  if (scalar < 0x80) {
    text += static_cast<char>(scalar);
  } else if (scalar < 0x800) {
    text += static_cast<char>(0xC0 | (scalar >> 6));
    tail(0);
  } else if (scalar < 0x10000) {
    text += static_cast<char>(0xE0 | (scalar >> 12));
    tail(6), tail(0);
  } else {
    text += static_cast<char>(0xF0 | (scalar >> 18));
    tail(12), tail(6), tail(0);
  }
}
}  // namespace UTF8Text

}  // namespace quarn
