#include "QuarnCore/move/MoveSelection.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"

namespace quarn::MoveSelection {
namespace {

constexpr std::array<std::string_view, 12> protectedNames = {"Codex.app",
                                                             "Cursor.app",
                                                             "Claude.app",
                                                             "Quarn.app",
                                                             "Terminal.app",
                                                             "iTerm.app",
                                                             "iTerm2.app",
                                                             "Visual Studio Code.app",
                                                             "Visual Studio Code - Insiders.app",
                                                             "Xcode.app",
                                                             "Logic Pro 11.app",
                                                             "Final Cut Pro 11.app"};

constexpr std::array<std::string_view, 9> protectedIdentifiers = {"com.openai.codex",
                                                                  "com.todesktop.230313mzl4w4u92",
                                                                  "com.anthropic.claudefordesktop",
                                                                  "com.quarn.quarn",
                                                                  "com.apple.Terminal",
                                                                  "com.googlecode.iterm2",
                                                                  "com.microsoft.VSCode",
                                                                  "com.microsoft.VSCodeInsiders",
                                                                  "com.apple.dt.Xcode"};

constexpr std::array<std::string_view, 3> liveToolWords = {"Codex", "Cursor", "Claude"};
constexpr std::array<std::string_view, 2> ownNames = {"Quarn.app", "quarn"};
constexpr std::string_view ownIdentifier = "com.quarn.quarn";

template <class Names>
bool isOneOf(const Names& names, std::string_view text) {
  return std::any_of(names.begin(), names.end(),
                     [text](std::string_view name) { return Text::equal(name, text); });
}

bool isThisTool(const AppEntry& entry) {
  return isOneOf(ownNames, entry.bundlePath.lastComponent()) ||
         (entry.bundleIdentifier && Text::equal(*entry.bundleIdentifier, ownIdentifier));
}

}  // namespace

std::vector<AppEntry> eligibleApps(const ReadOnlyPlatform& platform, const Choices& choices) {
  const auto running = choices.includesRunning ? RunningAppsDetector::BundlePaths{}
                                               : RunningAppsDetector::bundlePaths(platform);
  std::vector<AppEntry> eligible;
  for (const AppEntry& entry : AppScanner::discoverMetadata(platform)) {
    if (isThisTool(entry)) continue;
    if (!choices.includesProtected && isProtectedLiveTool(platform, entry)) continue;
    if (!choices.includesRisky && isRisky(entry)) continue;
    if (RunningAppsDetector::isAmong(running, platform, entry.bundlePath)) continue;
    eligible.push_back(AppScanner::computeSizes(platform, entry));
  }
  return eligible;
}

bool isRisky(const AppEntry& entry) {
  return entry.hasSystemExtension || entry.isMacAppStore || entry.hasLoginItems;
}

bool isProtectedLiveTool(const ReadOnlyPlatform& platform, const AppEntry& entry) {
  if (isOneOf(protectedNames, entry.bundlePath.lastComponent())) return true;
  if (entry.bundleIdentifier && isOneOf(protectedIdentifiers, *entry.bundleIdentifier)) return true;
  return std::any_of(liveToolWords.begin(), liveToolWords.end(), [&](std::string_view word) {
    return Text::localizedCaseInsensitiveContains(entry.name, word) &&
           RunningAppsDetector::containsProcess(platform, std::string(word));
  });
}

}  // namespace quarn::MoveSelection
