#include "QuarnCore/uninstall/SystemLibraryFiles.h"

#include "QuarnCore/uninstall/UsableNames.h"

namespace quarn::SystemLibraryFiles {
namespace {

UninstallCategory categoryOf(const std::string& path) {
  const auto holds = [&](const char* word) { return path.find(word) != std::string::npos; };
  if (holds("LaunchDaemons")) return UninstallCategory::launchDaemons;
  if (holds("LaunchAgents")) return UninstallCategory::launchAgents;
  if (holds("PrivilegedHelperTools")) return UninstallCategory::launchDaemons;
  return UninstallCategory::applicationSupport;
}

/// What starts with the system isn't taken unasked.
UninstallCandidate candidate(const std::string& path) {
  const UninstallCategory category = categoryOf(path);
  return {.path = path,
          .category = category,
          .confidence = UninstallConfidence::medium,
          .reason = "System path matches bundle id",
          .defaultSelected = category == UninstallCategory::applicationSupport,
          .isPrivileged = true};
}

}  // namespace

std::vector<UninstallCandidate> candidates(const ReadOnlyPlatform& platform, const AppRecord& record) {
  const auto identifier = UsableNames::of(record).bundleIdentifier;
  std::vector<UninstallCandidate> found;
  if (!identifier) return found;
  for (const std::string& path :
       {"/Library/LaunchDaemons/" + *identifier + ".plist", "/Library/LaunchAgents/" + *identifier + ".plist",
        "/Library/Application Support/" + *identifier, "/Library/PrivilegedHelperTools/" + *identifier}) {
    if (platform.files.exists(Path(path))) found.push_back(candidate(path));
  }
  return found;
}

}  // namespace quarn::SystemLibraryFiles
