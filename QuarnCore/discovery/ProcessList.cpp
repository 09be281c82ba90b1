#include "QuarnCore/discovery/ProcessList.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::ProcessList {
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

}  // namespace quarn::ProcessList
