#include <array>
#include <charconv>

#include "Platform/Json.h"

namespace quarn {

namespace {

void appendLine(std::string& text, std::size_t level) {
  text.append("\n").append(2 * level, ' ');
}

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

/// The shortest digits that read back the same.
void appendNumber(std::string& text, double number) {
  std::array<char, 400> digits;  // the longest one without an exponent has 344
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
  text.append(digits.data(), end.ptr);
}

/// Elements on a line each. The line of the first one is there even when it never comes, so that an empty
/// pair of brackets spans three lines.
template <class Elements, class AppendElement>
void appendBracketed(std::string& text, const char* brackets, const Elements& elements, std::size_t level,
                     const AppendElement& appendElement) {
  text += brackets[0];
  bool isFirst = true;
  for (const auto& element : elements) {
    if (!isFirst) text += ',';
    isFirst = false;
    appendLine(text, level + 1);
    appendElement(element);
  }
  if (isFirst) text += '\n';
  appendLine(text, level);
  text += brackets[1];
}

}  // namespace

/// Appends one value of each kind.
struct Json::PrettyWriter {
  std::string& text;
  std::size_t level;

  void operator()(std::monostate) { text += "null"; }
  void operator()(bool flag) { text += flag ? "true" : "false"; }
  void operator()(std::int64_t number) { text += std::to_string(number); }
  void operator()(double number) { appendNumber(text, number); }
  void operator()(const std::string& content) { appendQuoted(text, content); }
  void operator()(const Array& items) {
    appendBracketed(text, "[]", items, level, [&](const Json& item) { appendNested(item); });
  }
  void operator()(const Object& members) {
    appendBracketed(text, "{}", members, level, [&](const auto& member) {
      appendQuoted(text, member.first);
      text += " : ";
      appendNested(member.second);
    });
  }
  void appendNested(const Json& value) { std::visit(PrettyWriter{text, level + 1}, value.value_); }
};

std::string Json::prettyText() const {
  std::string text;
  std::visit(PrettyWriter{text, 0}, value_);
  return text;
}

}  // namespace quarn
