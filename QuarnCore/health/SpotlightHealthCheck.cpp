#include "QuarnCore/health/SpotlightHealthCheck.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::SpotlightHealthCheck {
namespace {

constexpr const char* volumes[] = {"/System/Volumes/Data", "/"};

std::string warning(const std::string& state, const std::string& volume) {
  return state + " for " + volume + ". Launchpad search may not show new apps. Run: sudo mdutil -i on " +
         volume;
}

}  // namespace

std::vector<std::string> warnings(const ReadOnlyPlatform& platform) {
  for (const std::string volume : volumes) {
    const CommandResult result = CommandRunner::run(platform, "/usr/bin/mdutil", {"-s", volume});
    const std::string text = result.standardOutput + "\n" + result.standardError;
    if (Text::localizedCaseInsensitiveContains(text, "read-only")) {
      return {warning("Spotlight index is read-only", volume)};
    }
    if (Text::localizedCaseInsensitiveContains(text, "disabled")) {
      return {warning("Spotlight indexing is disabled", volume)};
    }
    if (result.succeeded()) return {};
  }
  return {};
}

}  // namespace quarn::SpotlightHealthCheck
