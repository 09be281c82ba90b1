#include "QuarnCore/discovery/NamedBundles.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quarn::NamedBundles {
namespace {

constexpr std::string_view ending = ".app";
constexpr std::string_view wayIn = "/Contents/";

// The characters with the Unicode property White_Space, which `\s` matches. A line feed doesn't occur here.
constexpr std::string_view spacesOfASCII = "\t\v\f\r ";
constexpr std::array<std::string_view, 19> otherSpaces{
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000",
};

bool isASCII(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

/// Returns how many bytes after ".app" show that the bundle ends there, or nothing if it doesn't end there.
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

/// Appends the bundles in a piece of the line. `piece` contains no double quote, and `endsLine` is true if
/// none follows it. A path can reach every later ".app" in the piece. So if the first slash leads to no
/// bundle, no later slash does, and one pass is enough.
void append(std::string_view piece, bool endsLine, std::vector<std::string_view>& bundles) {
  constexpr auto none = std::string_view::npos;
  std::size_t slash = piece.find('/');
  std::size_t search = slash + 2;  // at least one character stands between the slash and the dot
  while (slash != none) {
    const std::size_t dot = piece.find(ending, search);
    if (dot == none) return;
    search = dot + ending.size();
    const std::string_view rest = piece.substr(search);
    const auto end = rest.empty() && endsLine ? 0 : lengthOfEnd(rest);
    // ".application" and the like: the search goes on behind it.
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
