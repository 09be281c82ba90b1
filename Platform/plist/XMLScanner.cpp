#include "Platform/plist/XMLScanner.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace quarn {

namespace {

constexpr std::array<std::pair<std::string_view, char>, 5> entities{
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

/// Returns the beginning of a text, up to the first character for which `ends` is true. This is several times
/// as fast as looking up each character in a set.
template <class Ends>
std::string_view upTo(const Ends& ends, std::string_view text) {
  return text.substr(0,
                     static_cast<std::size_t>(std::find_if(text.begin(), text.end(), ends) - text.begin()));
}

/// Appends the character whose number stands between "&#" and ";".
bool appendCharacter(std::string& content, std::string_view number) {
  const bool isHexadecimal = number.starts_with('x');
  if (isHexadecimal) number.remove_prefix(1);
  std::uint32_t scalar = 0;
  const char* end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, scalar, isHexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end || !UTF8Text::isScalar(scalar)) return false;
  UTF8Text::append(content, scalar);
  return true;
}

}  // namespace

bool XMLScanner::take(std::string_view expected) {
  if (!rest_.starts_with(expected)) return false;
  rest_.remove_prefix(expected.size());
  return true;
}

std::optional<std::string_view> XMLScanner::takeUntil(std::string_view end) {
  const auto found = rest_.find(end);
  if (found == std::string_view::npos) return std::nullopt;
  const auto taken = rest_.substr(0, found);
  rest_.remove_prefix(found + end.size());
  return taken;
}

/// Takes everything up to the first of `ends` outside quotation marks. That character itself isn't taken.
std::optional<std::string_view> XMLScanner::takeUntilUnquoted(std::string_view ends) {
  char quote = 0;
  for (std::size_t i = 0; i < rest_.size(); ++i) {
    const char c = rest_[i];
    if (!quote && ends.find(c) != std::string_view::npos) {
      const auto taken = rest_.substr(0, i);
      rest_.remove_prefix(i);
      return taken;
    }
    if (c == quote) {
      quote = 0;
    } else if (!quote && (c == '"' || c == '\'')) {
      quote = c;
    }
  }
  return std::nullopt;
}

void XMLScanner::skipBlanks() {
  rest_.remove_prefix(upTo([](char c) { return !isBlank(c); }, rest_).size());
}

bool XMLScanner::skipToTag() {
  for (;;) {
    skipBlanks();
    if (take("<!--")) {
      if (!skipBehind("-->")) return false;
    } else if (take("<?")) {
      if (!skipBehind("?>")) return false;
    } else {
      return rest_.starts_with('<');
    }
  }
}

bool XMLScanner::skipProlog() {
  while (skipToTag()) {
    if (!take("<!DOCTYPE")) return true;
    if (!takeUntilUnquoted("[>") || !(take(">") || skipDeclarations())) return false;
  }
  return false;
}

/// Moves past the declarations in the brackets of a document type. Entities declared there stay unknown, so a
/// list can't expand into more than it contains.
bool XMLScanner::skipDeclarations() {
  take("[");
  for (;;) {
    if (skipToTag()) {
      if (!take("<!") || !takeUntilUnquoted(">") || !take(">")) return false;
    } else if (take("%")) {
      if (!skipBehind(";")) return false;
    } else {
      if (!take("]")) return false;
      skipBlanks();
      return take(">");
    }
  }
}

std::optional<XMLScanner::Tag> XMLScanner::openingTag() {
  if (!take("<")) return std::nullopt;
  const auto name = upTo([](char c) { return isBlank(c) || c == '/' || c == '>'; }, rest_);
  rest_.remove_prefix(name.size());
  const auto attributes = takeUntilUnquoted(">");
  if (!attributes || !take(">")) return std::nullopt;
  return Tag{name, attributes->ends_with('/')};
}

bool XMLScanner::takeClosingTag(std::string_view name) {
  // White space may stand before the ">" (XML 1.0, section 3.1).
  const auto start = rest_;
  if (take("</") && take(name)) {
    skipBlanks();
    if (take(">")) return true;
  }
  rest_ = start;
  return false;
}

std::string_view XMLScanner::content() {
  const auto found = rest_.substr(0, rest_.find('<'));
  rest_.remove_prefix(found.size());
  return found;
}

std::optional<std::string> XMLScanner::text() {
  std::string content;
  for (;;) {
    const auto plain = upTo([](char c) { return c == '<' || c == '&'; }, rest_);
    content += plain;
    rest_.remove_prefix(plain.size());
    if (take("&")) {
      if (!entity(content)) return std::nullopt;
    } else if (take("<![CDATA[")) {
      const auto section = takeUntil("]]>");
      if (!section) return std::nullopt;
      content += *section;
    } else {
      break;
    }
  }
  if (!Text::isUTF8(content) || content.find('\0') != std::string::npos) return std::nullopt;
  return content;
}

bool XMLScanner::entity(std::string& content) {
  // Without this limit each "&" in a text would be searched for its ";" up to the end of the text.
  constexpr std::size_t longest = 32;
  const auto name = rest_.substr(0, std::min(rest_.substr(0, longest).find(';'), longest));
  rest_.remove_prefix(std::min(name.size(), rest_.size()));
  if (!take(";")) return false;
  if (name.starts_with('#')) return appendCharacter(content, name.substr(1));
  const auto* found =
      std::find_if(entities.begin(), entities.end(), [&](const auto& entry) { return entry.first == name; });
  if (found == entities.end()) return false;
  content += found->second;
  return true;
}

}  // namespace quarn
