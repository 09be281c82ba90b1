#include <algorithm>
#include <array>

#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/trust/TrustSummary.h"

namespace quarn::PackageTrustInspector {
namespace {

using Lines = std::vector<std::string>;

constexpr double signatureTimeLimit = 15;
constexpr double contentsTimeLimit = 30;
constexpr std::array<std::string_view, 4> privilegedFolders = {
    "Library/LaunchDaemons", "Library/PrivilegedHelperTools", "Library/SystemExtensions",
    "Library/Extensions"};

Lines signatureLines(const ReadOnlyPlatform& platform, const Path& package) {
  CommandResult result = CommandRunner::run(platform, "/usr/sbin/pkgutil",
                                            {"--check-signature", package.text()}, signatureTimeLimit);
  result.standardOutput += result.standardError;
  return result.lines();
}

bool isSigned(const Lines& lines) {
  const auto someLineContains = [&lines](std::string_view words) {
    return std::any_of(lines.begin(), lines.end(), [words](const std::string& line) {
      return Text::localizedCaseInsensitiveContains(line, words);
    });
  };
  return someLineContains("Status: signed") || someLineContains("trusted");
}

/// The names in the archive.
Lines pkgArchiveContents(const ReadOnlyPlatform& platform, const Path& package) {
  const CommandResult result =
      CommandRunner::run(platform, "/usr/bin/xar", {"-tf", package.text()}, contentsTimeLimit);
  return result.succeeded() ? result.lines() : Lines();
}

bool isPrivileged(const std::string& entry) {
  return std::any_of(privilegedFolders.begin(), privilegedFolders.end(),
                     [&entry](std::string_view folder) { return entry.find(folder) != std::string::npos; });
}

bool isOfScripts(const std::string& entry) {
  return entry == "Scripts" || entry.ends_with("/Scripts") || entry.find("/Scripts/") != std::string::npos;
}

}  // namespace

TrustSummary inspect(const ReadOnlyPlatform& platform, const Path& package) {
  const Lines details = signatureLines(platform, package);
  const Lines contents = pkgArchiveContents(platform, package);
  return {.status = isSigned(details) ? "trusted" : "untrusted",
          .details = details,
          .hasScripts = std::any_of(contents.begin(), contents.end(), isOfScripts),
          .hasPrivilegedPayload = std::any_of(contents.begin(), contents.end(), isPrivileged)};
}

}  // namespace quarn::PackageTrustInspector
