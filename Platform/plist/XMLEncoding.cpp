#include "Platform/plist/XMLEncoding.h"

#include <algorithm>
#include <array>

#include "Platform/UTF8.h"
#include "Platform/plist/Words.h"

namespace quarn::XMLEncoding {

namespace {

enum class Order { highFirst, lowFirst };

/// Reads numbers of 2 or 4 bytes.
class Units {
 public:
  Units(std::string_view bytes, std::size_t width, Order order)
      : rest_(bytes), width_(width), order_(order) {}

  bool isAtEnd() const { return rest_.empty(); }

  std::optional<std::uint32_t> next() {
    if (rest_.size() < width_) return std::nullopt;
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < width_; ++i) {
      const char byte = rest_[order_ == Order::highFirst ? i : width_ - 1 - i];
      unit = unit << 8 | static_cast<unsigned char>(byte);
    }
    rest_.remove_prefix(width_);
    return unit;
  }

  /// Reads a character. In UTF-16 it may take two units, a surrogate pair.
  std::optional<std::uint32_t> nextCharacter() {
    const auto first = next();
    if (width_ != 2 || !first || *first < 0xD800 || *first > 0xDBFF) return first;
    const auto second = next();
    if (!second || *second < 0xDC00 || *second > 0xDFFF) return std::nullopt;
    return 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00);
  }

 private:
  std::string_view rest_;
  std::size_t width_;
  Order order_;
};

std::optional<std::string> decodedUnits(Units units) {
  std::string text;
  while (!units.isAtEnd()) {
    const auto character = units.nextCharacter();
    // A NUL is passed on: where it is an error depends on the value.
    if (!character || !(*character == 0 || UTF8Text::isScalar(*character))) return std::nullopt;
    UTF8Text::append(text, *character);
  }
  return text;
}

struct Mark {
  std::string_view bytes;
  std::size_t width;
  Order order;
};

/// The UTF-32 mark with the low byte first begins like that of UTF-16, so it is tried first.
constexpr std::array<Mark, 4> marks{{
    {{"\xFF\xFE\0\0", 4}, 4, Order::lowFirst},
    {{"\0\0\xFE\xFF", 4}, 4, Order::highFirst},
    {{"\xFF\xFE", 2}, 2, Order::lowFirst},
    {{"\xFE\xFF", 2}, 2, Order::highFirst},
}};

/// Returns the encoding named in `<?xml … encoding="…"?>` in lower case, or "utf-8" if there is none.
std::string declaredEncoding(std::string_view bytes) {
  constexpr std::string_view word = "encoding=";
  const auto declaration = bytes.substr(0, bytes.find("?>"));
  const auto found = declaration.find(word);
  if (!declaration.starts_with("<?xml") || found == std::string_view::npos) return "utf-8";
  const auto value = declaration.substr(found + word.size());
  const bool isQuoted = value.starts_with('"') || value.starts_with('\'');
  const auto end = isQuoted ? value.find(value.front(), 1) : std::string_view::npos;
  return end == std::string_view::npos ? "" : lowercasedWord(value.substr(1, end - 1));
}

std::string decodedLatin1(std::string_view bytes) {
  std::string text;
  // ISO-8859-1 has the same numbers as the first 256 characters of Unicode.
  for (const char byte : bytes) UTF8Text::append(text, static_cast<unsigned char>(byte));
  return text;
}

}  // namespace

std::optional<std::string> decodedUTF16(std::string_view bytes) {
  return decodedUnits({bytes, 2, Order::highFirst});
}

std::optional<std::string> decoded(std::string_view bytes) {
  constexpr std::string_view markOfUTF8 = "\uFEFF";
  if (bytes.starts_with(markOfUTF8)) return std::string(bytes.substr(markOfUTF8.size()));
  for (const Mark& mark : marks) {
    if (bytes.starts_with(mark.bytes)) {
      return decodedUnits({bytes.substr(mark.bytes.size()), mark.width, mark.order});
    }
  }
  const std::string name = declaredEncoding(bytes);
  if (name == "utf-8" || name == "utf8") return std::string(bytes);
  const bool isASCII =
      std::none_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) < 0; });
  if (name == "iso-8859-1" || (name == "us-ascii" && isASCII)) return decodedLatin1(bytes);
  return std::nullopt;
}

}  // namespace quarn::XMLEncoding
