#include "QuarnCore/discovery/CuratedDomains.h"

#include <map>

#include "Platform/Text.h"

namespace quarn::CuratedDomains {
namespace {

using Table = std::map<std::string, OwnedPaths>;

const Table& table() {
  static const Table domains = {
      {"com.anthropic.claudefordesktop", {true, {}}},
      {"com.anthropic.claude-code-url-handler", {true, {}}},
      {"com.apple.logic10",
       {false, {"/Library/Application Support/Logic", "/Library/Application Support/GarageBand"}}},
      {"com.apple.finalcut", {false, {"/Library/Application Support/ProApps"}}},
      {"com.adobe.photoshop", {false, {"/Library/Application Support/Adobe"}}},
      {"com.arobas-music.guitarpro8", {false, {"/Library/Application Support/Arobas Music"}}},
      {"com.image-line.flstudio", {false, {"/Library/Application Support/Image-Line"}}},
      {"com.steinberg.spectralayers12", {false, {"/Library/Application Support/Steinberg"}}},
  };
  return domains;
}

}  // namespace

std::optional<OwnedPaths> entry(const std::optional<std::string>& bundleIdentifier) {
  if (!bundleIdentifier) return std::nullopt;
  const auto found = table().find(Text::lowercased(*bundleIdentifier));
  if (found == table().end()) return std::nullopt;
  return found->second;
}

}  // namespace quarn::CuratedDomains
