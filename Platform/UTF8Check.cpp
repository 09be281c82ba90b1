#include "Platform/UTF8Check.h"

namespace quarn {

void UTF8Check::take(std::string_view bytes) {
  for (const char byte : bytes) {
    if (!valid_) return;
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
  if (byte >= 0xC2 && byte <= 0xDF) {
    expected_ = 1;
  } else if (byte >= 0xE0 && byte <= 0xEF) {
    expected_ = 2;
    if (byte == 0xE0) low_ = 0xA0;
    if (byte == 0xED) high_ = 0x9F;
  } else if (byte >= 0xF0 && byte <= 0xF4) {
    expected_ = 3;
    if (byte == 0xF0) low_ = 0x90;
    if (byte == 0xF4) high_ = 0x8F;
  } else {
    valid_ = false;
  }
}

}  // namespace quarn
