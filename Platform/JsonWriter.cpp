#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "Platform/Json.h"

namespace quarn {

namespace {

// A Mac's encoder also escapes the slash, which RFC 8259 permits but doesn't require.
void appendEscaped(std::string& text, char c) {
  constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
  constexpr std::string_view letters = "\"\\/bfnrt";
  constexpr std::string_view hexDigits = "0123456789abcdef";
  if (const auto index = meanings.find(c); index != std::string_view::npos) {
    text.append("\\") += letters[index];
  } else if (const auto code = static_cast<unsigned char>(c); code < 0x20) {
    text.append("\\u00") += hexDigits[code >> 4];
    text += hexDigits[code & 0xF];
  } else {
    text += c;
  }
}

void appendQuoted(std::string& text, const std::string& content) {
  text += '"';
  for (const char c : content) appendEscaped(text, c);
  text += '"';
}

/// Writes the shortest digits that read back as the same number, laid out like the `description` of a Swift
/// `Double`: with an exponent below 1e-4 and above 2^53. (A Mac's encoder drops the trailing ".0".)
void appendNumber(std::string& text, double number) {
  const double size = std::abs(number);
  const bool hasExponent = size > 9007199254740992.0 || (size < 1e-4 && size > 0);
  std::array<char, 32> digits;  // up to 17 digits, a sign, a point, zeros or an exponent
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                 hasExponent ? std::chars_format::scientific : std::chars_format::fixed);
  text.append(digits.data(), end.ptr);
}

/// Returns the members sorted by the bytes of their keys. Equal keys keep their order.
std::vector<const std::pair<std::string, Json>*> sorted(const Json::Object& members) {
  std::vector<const std::pair<std::string, Json>*> pointers;
  for (const auto& member : members) pointers.push_back(&member);
  std::stable_sort(pointers.begin(), pointers.end(),
                   [](const auto* a, const auto* b) { return a->first < b->first; });
  return pointers;
}

}  // namespace

/// Appends a value of any kind to a text.
struct Json::Writer {
  std::string& text;
  Layout layout;
  std::size_t level = 0;

  void operator()(std::monostate) { text += "null"; }
  void operator()(bool flag) { text += flag ? "true" : "false"; }
  void operator()(std::int64_t number) { text += std::to_string(number); }
  void operator()(double number) { appendNumber(text, number); }
  void operator()(const std::string& content) { appendQuoted(text, content); }
  void operator()(const Array& items) {
    appendBracketed("[]", items, [&](const Json& item) { appendNested(item); });
  }
  void operator()(const Object& members) {
    if (layout == Layout::pretty) {
      appendBracketed("{}", sorted(members), [&](const auto* member) { appendMember(*member); });
    } else {
      appendBracketed("{}", members, [&](const auto& member) { appendMember(member); });
    }
  }

 private:
  /// In the pretty layout each element has a line of its own. The line break before the first element is
  /// written even for an empty container, which therefore spans three lines.
  template <class Elements, class AppendElement>
  void appendBracketed(const char* brackets, const Elements& elements, const AppendElement& appendElement) {
    text += brackets[0];
    ++level;
    bool isFirst = true;
    for (const auto& element : elements) {
      if (!isFirst) text += ',';
      isFirst = false;
      appendLine();
      appendElement(element);
    }
    --level;
    if (isFirst && layout == Layout::pretty) text += '\n';
    appendLine();
    text += brackets[1];
  }
  void appendLine() {
    if (layout == Layout::pretty) text.append("\n").append(2 * level, ' ');
  }
  void appendMember(const std::pair<std::string, Json>& member) {
    appendQuoted(text, member.first);
    text += layout == Layout::pretty ? " : " : ":";
    appendNested(member.second);
  }
  void appendNested(const Json& value) { std::visit(*this, value.value_); }
};

std::string Json::text(Layout layout) const {
  std::string text;
  std::visit(Writer{text, layout}, value_);
  return text;
}

std::string Json::prettyText() const {
  return text(Layout::pretty);
}

std::string Json::compactText() const {
  return text(Layout::compact);
}

}  // namespace quarn
