#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quarn {

/// Tells whether bytes that come in pieces are UTF-8 as a whole; a character may be cut in two.
class UTF8Check {
 public:
  void take(std::string_view bytes);
  /// True if all that came is whole characters.
  bool isText() const { return valid_ && expected_ == 0; }

 private:
  void takeByte(std::uint8_t byte);
  void beginCharacter(std::uint8_t byte);

  bool valid_ = true;
  int expected_ = 0;  ///< bytes that the character still needs
  /// Bounds of the next byte; narrower behind the first bytes that could begin an overlong form, a
  /// surrogate or a number beyond the last code point.
  std::uint8_t low_ = 0x80;
  std::uint8_t high_ = 0xBF;
};

namespace UTF8Text {
/// Whether a text may hold the character of this number: not NUL, and no half of a surrogate pair.
bool isScalar(std::uint32_t number);
/// A number up to 0x10FFFF.
void append(std::string& text, std::uint32_t scalar);
}  // namespace UTF8Text

}  // namespace quarn
