#include "Platform/posix/UTF8Text.h"

namespace quarn::UTF8Text {

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

}  // namespace quarn::UTF8Text
