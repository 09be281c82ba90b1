#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "Platform/Json.h"
#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace quarn {

namespace {

constexpr int deepestNesting = 512;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Reads from the front of a valid UTF-8 text. A function that returns false or nothing has met an error; the
/// whole read then fails.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  std::optional<Json> document() {
    auto root = value();
    skipBlanks();
    if (!rest_.empty()) return std::nullopt;
    return root;
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  bool take(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  bool takeBehindBlanks(char expected) {
    skipBlanks();
    return take({&expected, 1});
  }

  std::optional<Json> value() {
    skipBlanks();
    if (rest_.starts_with('{')) return object();
    if (rest_.starts_with('[')) return array();
    if (rest_.starts_with('"')) return text();
    if (take("true")) return Json(true);
    if (take("false")) return Json(false);
    if (take("null")) return Json();
    return number();
  }

  /// Reads the elements between brackets of either kind. A comma after the last element is accepted, as a
  /// Mac's decoder does.
  template <class Element>
  bool elements(char close, const Element& element) {
    // The reader is recursive, so this bound also protects the stack.
    if (++nesting_ > deepestNesting) return false;
    rest_.remove_prefix(1);
    for (bool isOpen = !takeBehindBlanks(close); isOpen;) {
      if (!element()) return false;
      const bool goesOn = takeBehindBlanks(',');
      isOpen = !takeBehindBlanks(close);
      if (isOpen && !goesOn) return false;
    }
    --nesting_;
    return true;
  }

  std::optional<Json> array() {
    Json::Array items;
    const bool isRead = elements(']', [&] {
      auto item = value();
      if (item) items.push_back(std::move(*item));
      return item.has_value();
    });
    if (!isRead) return std::nullopt;
    return Json(std::move(items));
  }

  std::optional<Json> object() {
    Json::Object members;
    const bool isRead = elements('}', [&] {
      skipBlanks();
      auto key = text();
      if (!key || !takeBehindBlanks(':')) return false;
      auto item = value();
      if (item) members.emplace_back(std::move(*key), std::move(*item));
      return item.has_value();
    });
    if (!isRead) return std::nullopt;
    return Json(std::move(members));
  }

  std::optional<std::string> text() {
    if (!take("\"")) return std::nullopt;
    std::string content;
    while (!rest_.empty()) {
      const char c = rest_.front();
      rest_.remove_prefix(1);
      if (c == '"') return content;
      // RFC 8259 requires control characters to be escaped.
      if (static_cast<unsigned char>(c) < 0x20) return std::nullopt;
      if (c != '\\') {
        content += c;
      } else if (!escape(content)) {
        return std::nullopt;
      }
    }
    return std::nullopt;
  }

  bool escape(std::string& content) {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    if (take("u")) return scalarEscape(content);
    const auto index = rest_.empty() ? std::string_view::npos : letters.find(rest_.front());
    if (index == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    content += meanings[index];
    return true;
  }

  /// Reads a \u escape. A code point outside the Basic Multilingual Plane takes two of them, a surrogate pair
  /// (RFC 8259, section 7); half a pair is an error.
  bool scalarEscape(std::string& content) {
    auto scalar = fourHexDigits();
    if (!scalar) return false;
    if (*scalar >= 0xD800 && *scalar < 0xDC00) {
      const auto low = take("\\u") ? fourHexDigits() : std::nullopt;
      if (!low || *low < 0xDC00 || *low > 0xDFFF) return false;
      scalar = 0x10000 + ((*scalar - 0xD800) << 10) + (*low - 0xDC00);
    } else if (*scalar >= 0xDC00 && *scalar <= 0xDFFF) {
      return false;
    }
    UTF8Text::append(content, *scalar);
    return true;
  }

  std::optional<std::uint32_t> fourHexDigits() {
    const auto digits = rest_.substr(0, 4);
    std::uint32_t unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    // `from_chars` may stop early, at the first character that isn't a hexadecimal digit.
    if (error != std::errc() || end != digits.data() + 4) return std::nullopt;
    rest_.remove_prefix(4);
    return unit;
  }

  bool digits() {
    const auto count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    rest_.remove_prefix(count);
    return count > 0;
  }

  std::optional<Json> number() {
    const auto start = rest_;
    // RFC 8259 allows no leading zeros, no plus sign, and no point without digits on both sides.
    take("-");
    const bool isWholePartRead = take("0") ? rest_.empty() || !isDigit(rest_.front()) : digits();
    if (!isWholePartRead || (take(".") && !digits())) return std::nullopt;
    if (take("e") || take("E")) {
      if (!take("+")) take("-");
      if (!digits()) return std::nullopt;
    }
    return numberFrom(std::string(start.substr(0, start.size() - rest_.size())));
  }

  static std::optional<Json> numberFrom(const std::string& digits) {
    // Integers are parsed as such, because a double holds only those up to 2^53 exactly.
    std::int64_t whole = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), whole);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    // Minus zero exists only as a double.
    if (isWhole && digits != "-0") return Json(whole);
    const double number = std::strtod(digits.c_str(), nullptr);
    if (!std::isfinite(number)) return std::nullopt;
    return Json(number);
  }

  std::string_view rest_;
  int nesting_ = 0;
};

}  // namespace

std::optional<Json> Json::parse(std::string_view bytes) {
  const auto text = Text::decodingFile(bytes);
  if (!text) return std::nullopt;
  return Reader(*text).document();
}

}  // namespace quarn
