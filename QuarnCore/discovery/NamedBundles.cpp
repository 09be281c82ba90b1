#include "QuarnCore/discovery/NamedBundles.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quarn::NamedBundles {
namespace {

constexpr std::string_view ending = ".app";
constexpr std::string_view wayIn = "/Contents/";

// The characters with the property White_Space, which is what `\s` takes; a line feed isn't met here.
constexpr std::string_view spacesOfASCII = "\t\v\f\r ";
constexpr std::array<std::string_view, 19> otherSpaces{
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000",
};

bool isASCII(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

/// How much of what follows ".app" shows that the bundle ends there; nothing if it doesn't.
std::optional<std::size_t> lengthOfEnd(std::string_view rest) {
  if (rest.starts_with(wayIn)) return wayIn.size();
  if (rest.empty()) return std::nullopt;
  if (isASCII(rest.front())) {
    return spacesOfASCII.find(rest.front()) == std::string_view::npos ? std::nullopt
                                                                      : std::optional<std::size_t>(1);
  }
  const auto found = std::find_if(otherSpaces.begin(), otherSpaces.end(),
                                  [rest](std::string_view space) { return rest.starts_with(space); });
  return found == otherSpaces.end() ? std::nullopt : std::optional(found->size());
}

/// `piece` holds no double quote and `endsLine` if none follows it. A path that begins in it reaches every
/// ".app" behind, so when the first slash leads to no bundle, no later one does.
void append(std::string_view piece, bool endsLine, std::vector<std::string_view>& bundles) {
  constexpr auto none = std::string_view::npos;
  std::size_t slash = piece.find('/');
  std::size_t search = slash + 2;  // between the slash and the dot stands one character at least
  while (slash != none) {
    const std::size_t dot = piece.find(ending, search);
    if (dot == none) return;
    search = dot + ending.size();
    const std::string_view rest = piece.substr(search);
    const auto end = rest.empty() && endsLine ? 0 : lengthOfEnd(rest);
    if (!end) continue;
    bundles.push_back(piece.substr(slash, search - slash));
    slash = piece.find('/', search + *end);
    search = slash + 2;
  }
}

}  // namespace

std::vector<std::string_view> inLine(std::string_view line) {
  std::vector<std::string_view> bundles;
  while (!line.empty()) {
    const std::size_t quote = std::min(line.find('"'), line.size());
    append(line.substr(0, quote), quote == line.size(), bundles);
    line.remove_prefix(std::min(quote + 1, line.size()));
  }
  return bundles;
}

}  // namespace quarn::NamedBundles
