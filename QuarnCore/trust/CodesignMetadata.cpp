#include "QuarnCore/trust/CodesignMetadata.h"

#include <utility>

#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::CodesignMetadata {
namespace {

constexpr std::string_view developerMark = "Authority=Developer ID Application: ";
constexpr std::string_view storeMark = "Authority=Apple Mac OS Application Signing";

/// The first words that occur decide.
constexpr std::pair<std::string_view, const char*> verdicts[] = {
    {"source=Notarized Developer ID", "Notarized"},
    {"source=Mac App Store", "Mac App Store"},
    {"rejected", "Not signed"},
    {"accepted", "Accepted"},
};

}  // namespace

std::string teamName(const ReadOnlyPlatform& platform, const Path& item) {
  const std::string text =
      CommandRunner::run(platform, "/usr/bin/codesign", {"-dvv", item.text()}).standardError;
  for (const std::string_view line : Text::nonEmptyLines(text)) {
    if (line.starts_with(developerMark)) {
      const std::string_view name = line.substr(developerMark.size());
      return Text::trimmingWhitespace(name.substr(0, name.find('(')));
    }
    if (line.starts_with(storeMark)) return "Apple (Mac App Store)";
  }
  return "Unsigned / Ad-hoc";
}

std::string notarizationStatus(const ReadOnlyPlatform& platform, const Path& item) {
  const std::string text =
      CommandRunner::run(platform, "/usr/sbin/spctl", {"-a", "-vv", item.text()}).standardError;
  for (const auto& [words, verdict] : verdicts) {
    if (text.find(words) != std::string::npos) return verdict;
  }
  return "Unknown";
}

}  // namespace quarn::CodesignMetadata
