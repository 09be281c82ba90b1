#include "tests/toml/TaggedValue.h"

#include <algorithm>
#include <cstdlib>
#include <regex>
#include <stdexcept>

#include "TOMLDecoder/internal/UTF8.h"

namespace {

std::string floatMeaning(const std::string& text) {
  if (text.find("nan") != std::string::npos) return "nan";
  char exact[40];
  std::snprintf(exact, sizeof exact, "%a", std::strtod(text.c_str(), nullptr));
  return exact;
}

/// A capital T and no Z; three digits of a second.
std::string momentMeaning(const std::string& text) {
  static const std::regex form(
      R"((?:(\d{4}-\d\d-\d\d)[Tt ])?(\d\d:\d\d:\d\d)(?:\.(\d+))?(Z|z|[+-]\d\d:\d\d)?)");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) throw std::runtime_error("no date and time: " + text);
  const std::string zone = parts[4] == "Z" || parts[4] == "z" ? "+00:00" : parts[4].str();
  return parts[1].str() + "T" + parts[2].str() + "." + (parts[3].str() + "000").substr(0, 3) + zone;
}

std::string meaningOf(const std::string& type, const std::string& text) {
  if (type == "float") return floatMeaning(text);
  if (type == "datetime" || type == "datetime-local" || type == "time-local") return momentMeaning(text);
  if (type == "integer") return std::to_string(std::strtoll(text.c_str(), nullptr, 10));
  return text;
}

class Reader {
 public:
  explicit Reader(std::string_view json) : rest_(json) {}

  TaggedValue document() {
    TaggedValue value = next();
    skipBlank();
    if (!rest_.empty()) fail();
    return value;
  }

 private:
  [[noreturn]] void fail() const {
    throw std::runtime_error("no tagged JSON: " + std::string(rest_.substr(0, 40)));
  }

  void skipBlank() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  bool take(char byte) {
    skipBlank();
    if (rest_.empty() || rest_.front() != byte) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void expect(char byte) {
    if (!take(byte)) fail();
  }

  TaggedValue next() {
    if (take('[')) return array();
    if (take('{')) return table();
    TaggedValue text;
    text.type = "text";
    text.meaning = string();
    return text;
  }

  TaggedValue array() {
    TaggedValue found;
    found.kind = TaggedValue::Kind::array;
    if (take(']')) return found;
    do found.elements.push_back(next());
    while (take(','));
    expect(']');
    return found;
  }

  TaggedValue table() {
    TaggedValue found;
    found.kind = TaggedValue::Kind::table;
    if (take('}')) return found;
    do {
      std::string key = string();
      expect(':');
      found.members[std::move(key)] = next();
    } while (take(','));
    expect('}');
    return isTagged(found) ? tagged(found) : found;
  }

  static bool isTagged(const TaggedValue& found) {
    return found.members.size() == 2 && found.members.count("type") == 1 &&
           found.members.count("value") == 1 && found.members.at("type").type == "text" &&
           found.members.at("value").type == "text";
  }

  static TaggedValue tagged(const TaggedValue& found) {
    TaggedValue value;
    value.type = found.members.at("type").meaning;
    value.meaning = meaningOf(value.type, found.members.at("value").meaning);
    return value;
  }

  std::string string() {
    expect('"');
    std::string text;
    while (!rest_.empty() && rest_.front() != '"') {
      const char byte = rest_.front();
      rest_.remove_prefix(1);
      if (byte == '\\') {
        text += escaped();
      } else {
        text += byte;
      }
    }
    if (rest_.empty()) fail();
    rest_.remove_prefix(1);
    return text;
  }

  std::string escaped() {
    static constexpr std::string_view letters = "\"\\/bfnrt";
    static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    if (rest_.empty()) fail();
    const char letter = rest_.front();
    rest_.remove_prefix(1);
    if (const auto index = letters.find(letter); index != std::string_view::npos) return {meanings[index]};
    std::uint32_t code = hex();
    if (code >= 0xD800 && code < 0xDC00 && rest_.substr(0, 2) == "\\u") {
      rest_.remove_prefix(2);
      code = 0x10000 + ((code - 0xD800) << 10) + (hex() - 0xDC00);
    }
    std::string text;
    toml::UTF8::append(text, code);
    return text;
  }

  std::uint32_t hex() {
    const std::string digits(rest_.substr(0, 4));
    rest_.remove_prefix(std::min<std::size_t>(4, rest_.size()));
    return static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
  }

  std::string_view rest_;
};

}  // namespace

TaggedValue TaggedValue::parse(std::string_view json) {
  return Reader(json).document();
}
