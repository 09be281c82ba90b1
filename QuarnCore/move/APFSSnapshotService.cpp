#include "QuarnCore/move/APFSSnapshotService.h"

#include "Platform/DateText.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::APFSSnapshotService {
namespace {

constexpr const char* tmutil = "/usr/bin/tmutil";
constexpr std::string_view dateMark = "date: ";
constexpr std::string_view namePrefix = "com.apple.TimeMachine";
/// The length of a date as `tmutil` prints it. A Mac's date formatter ignores whatever follows.
constexpr std::size_t dateLength = 17;

/// Returns the first piece between dots that contains a hyphen and is longer than 18 bytes, or else the whole
/// text. The names that `tmutil` lists have no such piece.
std::string datePiece(const std::string& text) {
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find('.', begin), text.size());
    const std::string piece = text.substr(begin, end - begin);
    if (piece.find('-') != std::string::npos && piece.size() > 18) return piece;
    begin = end + 1;
  }
  return text;
}

std::optional<Moment> timestamp(const std::string& text) {
  return DateText::parsingLocalDashed(Text::prefix(datePiece(text), dateLength));
}

std::optional<Snapshot> createdSnapshot(const std::string& output) {
  for (const std::string_view line : Text::nonEmptyLinesOfAnyEnd(output)) {
    const auto mark = line.find(dateMark);
    if (mark == std::string_view::npos) continue;
    const std::string date = Text::trimmingWhitespace(line.substr(mark + dateMark.size()));
    return Snapshot{std::string(namePrefix) + "." + date + ".local", timestamp(date)};
  }
  return std::nullopt;
}

}  // namespace

bool isSupported(const ReadOnlyPlatform& platform) {
  return platform.files.exists(Path(tmutil));
}

CreateResult create(Platform& platform, const std::optional<std::string>&) {
  if (!isSupported(platform)) return {std::nullopt, "", "tmutil not present", false};
  const CommandResult result = CommandRunner::run(platform, tmutil, {"localsnapshot"});
  return {createdSnapshot(result.standardOutput), result.standardOutput, result.standardError,
          result.succeeded()};
}

std::vector<Snapshot> list(const ReadOnlyPlatform& platform) {
  if (!isSupported(platform)) return {};
  const CommandResult result = CommandRunner::run(platform, tmutil, {"listlocalsnapshots", "/"});
  std::vector<Snapshot> snapshots;
  for (const std::string_view line : Text::nonEmptyLinesOfAnyEnd(result.standardOutput)) {
    if (line.find(namePrefix) == std::string_view::npos) continue;
    snapshots.push_back({std::string(line), timestamp(std::string(line))});
  }
  return snapshots;
}

}  // namespace quarn::APFSSnapshotService
