#include "Platform/UUID.h"

#include <array>
#include <cstdint>
#include <sys/random.h>
#include <unistd.h>

namespace quarn::UUID {
namespace {

constexpr char digits[] = "0123456789ABCDEF";

}  // namespace

// Made directly from random bytes. The usual library makes five more system calls for each identifier, and a
// plan needs hundreds.
std::string make() {
  std::array<std::uint8_t, 16> bytes{};
  // getentropy accepts up to 256 bytes at once and doesn’t fail for so few.
  static_cast<void>(::getentropy(bytes.data(), bytes.size()));
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random (RFC 9562)
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the variant of RFC 9562
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 0x0F];
  }
  return text;
}

}  // namespace quarn::UUID
