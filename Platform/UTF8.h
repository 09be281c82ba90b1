#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quarn {

/// Checks whether bytes that arrive in chunks are valid UTF-8 as a whole. A chunk may end in the middle of a
/// character.
class UTF8Check {
 public:
  void take(std::string_view bytes);
  /// Returns true if everything so far consists of whole characters.
  bool isText() const { return valid_ && expected_ == 0; }

 private:
  void takeByte(std::uint8_t byte);
  void beginCharacter(std::uint8_t byte);

  bool valid_ = true;
  int expected_ = 0;  ///< how many more bytes the current character needs
  /// The bounds of the next byte. They are narrower after a first byte that could begin an overlong form, a
  /// surrogate or a number beyond the last code point (Unicode Standard, table 3-7).
  std::uint8_t low_ = 0x80;
  std::uint8_t high_ = 0xBF;
};

namespace UTF8Text {
/// Returns whether a text may contain this code point: not NUL, and not a surrogate.
bool isScalar(std::uint32_t number);
/// Appends a code point, which must be at most 0x10FFFF.
void append(std::string& text, std::uint32_t scalar);
}  // namespace UTF8Text

}  // namespace quarn
