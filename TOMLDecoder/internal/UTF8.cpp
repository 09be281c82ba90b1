#include "TOMLDecoder/internal/UTF8.h"

#include "TOMLDecoder/internal/Words.h"

namespace toml::UTF8 {

namespace {

/// Every byte before the result is ASCII.
const char* skipASCII(const char* at, const char* end) {
  while (end - at >= 32) {
    const std::uint64_t all =
        Words::load(at) | Words::load(at + 8) | Words::load(at + 16) | Words::load(at + 24);
    if ((all & Words::tops) != 0) break;
    at += 32;
  }
  while (at < end && static_cast<signed char>(*at) >= 0) ++at;
  return at;
}

/// What may follow a byte that begins a character: the bounds of the next byte, and how many bytes in all.
struct Lead {
  std::ptrdiff_t length = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
};

/// The Unicode Standard, table 3-7, "Well-Formed UTF-8 Byte Sequences".
Lead leadOf(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {2};
  if (byte == 0xE0) return {3, 0xA0};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {3};
  if (byte == 0xF0) return {4, 0x90};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  if (byte >= 0xF1 && byte <= 0xF3) return {4};
  return {};
}

/// The length of the character of several bytes that begins here; 0 if that isn't one.
std::ptrdiff_t longCharacter(const char* at, const char* end) {
  const auto byte = [at](std::ptrdiff_t index) { return static_cast<unsigned char>(at[index]); };
  const Lead lead = leadOf(byte(0));
  if (lead.length == 0 || end - at < lead.length) return 0;
  if (byte(1) < lead.low || byte(1) > lead.high) return 0;
  for (std::ptrdiff_t index = 2; index < lead.length; ++index) {
    if ((byte(index) & 0xC0) != 0x80) return 0;
  }
  return lead.length;
}

}  // namespace

std::size_t validPrefix(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while ((at = skipASCII(at, end)) < end) {
    const std::ptrdiff_t length = longCharacter(at, end);
    if (length == 0) break;
    at += length;
  }
  return static_cast<std::size_t>(at - text.data());
}

std::size_t firstCharacter(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = static_cast<unsigned char>(text.front());
  return byte < 0x80 ? 1 : static_cast<std::size_t>(leadOf(byte).length);
}

void append(std::string& text, std::uint32_t code) {
  const auto tail = [code](int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | (code >> 6)), tail(0)};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xE0 | (code >> 12)), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
  }
}

}  // namespace toml::UTF8
