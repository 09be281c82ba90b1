#include <algorithm>
#include <array>

#include "Platform/Text.h"
#include "QuarnCore/trust/TrustSummary.h"

namespace quarn::ScriptTrustInspector {
namespace {

using Lines = std::vector<std::string_view>;

constexpr std::size_t linesLookedAt = 40;
constexpr std::array<std::string_view, 7> privilegedWords = {
    "/Applications/", "/Library/", "/usr/local/", "/private/", "sudo ", "$HOME/.", "~/."};

std::string textOf(const ReadOnlyPlatform& platform, const Path& script) {
  const auto bytes = platform.files.read(script);
  return bytes ? Text::decodingFile(*bytes).value_or("") : "";
}

bool isPrivileged(std::string_view text) {
  return std::any_of(privilegedWords.begin(), privilegedWords.end(),
                     [text](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

bool isReference(std::string_view line) {
  return line.find("/Applications") != std::string_view::npos ||
         line.find("/Library") != std::string_view::npos;
}

std::vector<std::string> detailsOf(const Lines& lines) {
  std::vector<std::string> details;
  if (!lines.empty()) details.emplace_back(lines.front());
  details.push_back("Lines: " + std::to_string(lines.size()));
  const auto end = lines.begin() + static_cast<std::ptrdiff_t>(std::min(linesLookedAt, lines.size()));
  const auto reference = std::find_if(lines.begin(), end, isReference);
  if (reference != end) details.push_back("References: " + Text::trimmingWhitespace(*reference));
  return details;
}

}  // namespace

TrustSummary inspect(const ReadOnlyPlatform& platform, const Path& script) {
  const std::string text = textOf(platform, script);
  return {.status = "untrusted-script",
          .details = detailsOf(Text::nonEmptyLinesOfAnyEnd(text)),
          .hasScripts = !text.empty(),
          .hasPrivilegedPayload = isPrivileged(text)};
}

}  // namespace quarn::ScriptTrustInspector
