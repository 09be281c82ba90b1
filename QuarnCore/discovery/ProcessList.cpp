#include "QuarnCore/discovery/ProcessList.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn {

namespace ProcessList {
namespace {

/// Ignores the exit status: what a failing `ps` has printed still counts.
std::vector<std::string> linesOfPs(const ReadOnlyPlatform& platform,
                                   const std::vector<std::string>& arguments) {
  return CommandRunner::capture(platform, Path("/bin/ps"), arguments, OutputStreams::separate)
      .valueOr({})
      .lines();
}

/// Returns the line after the process identifier, or nothing if the identifier isn't one of `identifiers`.
std::optional<std::string> lineOfOne(const std::vector<int>& identifiers, std::string_view numbered) {
  numbered.remove_prefix(std::min(numbered.find_first_not_of(' '), numbered.size()));
  int identifier = 0;
  const auto number = std::from_chars(numbered.data(), numbered.data() + numbered.size(), identifier);
  if (number.ec != std::errc() || number.ptr == numbered.data() + numbered.size()) return std::nullopt;
  const bool isWanted = std::find(identifiers.begin(), identifiers.end(), identifier) != identifiers.end();
  if (!isWanted || *number.ptr != ' ') return std::nullopt;
  return std::string(numbered.substr(static_cast<std::size_t>(number.ptr - numbered.data()) + 1));
}

/// Asked for separately and by identifier, because the whole list has no column for it.
std::vector<std::string> linesOfLineage(const ReadOnlyPlatform& platform) {
  const std::vector<int> identifiers = platform.processes.lineage();
  std::string list;
  for (const int identifier : identifiers) {
    list += (list.empty() ? "" : ",") + std::to_string(identifier);
  }
  std::vector<std::string> lines;
  for (const std::string& numbered : linesOfPs(platform, {"-ww", "-o", "pid,comm,args", "-p", list})) {
    if (auto line = lineOfOne(identifiers, numbered)) lines.push_back(*std::move(line));
  }
  return lines;
}

/// Finds an ancestor's line in the whole list. That list may be truncated to the width given in the
/// environment (COLUMNS, ps(1)); the ancestor's own line, printed with -ww, never is.
std::vector<std::string>::iterator lineOf(const std::string& own, std::vector<std::string>& all) {
  const auto whole = std::find(all.begin(), all.end(), own);
  if (whole != all.end()) return whole;
  return std::find_if(all.begin(), all.end(),
                      [&own](const std::string& line) { return own.starts_with(line); });
}

}  // namespace

std::vector<std::string> lines(const ReadOnlyPlatform& platform,
                               const std::function<bool(const std::string& line)>& isOfInterest) {
  std::vector<std::string> all = linesOfPs(platform, {"-axo", "comm,args"});
  std::erase_if(all, std::not_fn(isOfInterest));
  if (all.empty()) return all;
  // Removes one line per ancestor, so that another process with an identical line stays.
  for (const std::string& own : linesOfLineage(platform)) {
    const auto found = lineOf(own, all);
    if (found != all.end()) all.erase(found);
  }
  return all;
}
}  // namespace ProcessList

namespace NamedBundles {
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
}  // namespace NamedBundles

}  // namespace quarn
