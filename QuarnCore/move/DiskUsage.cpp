#include "QuarnCore/move/DiskUsage.h"

#include <charconv>

#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::DiskUsage {
namespace {

/// Returns both output streams joined. Throws `MoveRefused` unless the exit status is 0.
std::string runAndCapture(const ReadOnlyPlatform& platform, const Path& executable,
                          const std::vector<std::string>& arguments) {
  const auto result =
      CommandRunner::capture(platform, executable, arguments, OutputStreams::joined).orThrow();
  if (result.succeeded()) return result.standardOutput;
  throw MoveRefused(executable.lastComponent() + " exited " + std::to_string(result.status) + ": " +
                    result.standardOutput);
}

std::string firstWord(const std::string& text) {
  const std::string separators = " \t\n";
  const auto begin = text.find_first_not_of(separators);
  if (begin == std::string::npos) return {};
  return text.substr(begin, text.find_first_of(separators, begin) - begin);
}

}  // namespace

std::int64_t kilobytes(const ReadOnlyPlatform& platform, const Path& item) {
  const std::string output = runAndCapture(platform, Path("/usr/bin/du"), {"-sk", item.text()});
  // A warning may come first in the joined output; then the first word isn't a number.
  const std::string word = firstWord(output);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (word.empty() || error != std::errc{} || end != word.data() + word.size() || number < 0) {
    throw MoveRefused("Could not parse du output for " + item.text() + ": " + output);
  }
  return number;
}

}  // namespace quarn::DiskUsage
