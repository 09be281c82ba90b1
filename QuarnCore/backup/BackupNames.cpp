#include "QuarnCore/backup/BackupNames.h"

#include "Platform/Text.h"

namespace quarn {

std::string BackupNames::sanitized(std::string_view name) {
  return Text::replacing(Text::replacing(name, "Quarn", "App"), "quarn", "app");
}

std::string BackupNames::ofSource(std::string_view name) {
  const std::string lower = Text::lowercased(name);
  if (lower.ends_with(".app")) return "InstalledApp.app";
  const std::string neutral = sanitized(name);
  return lower == "app" || neutral == "app" ? "SourceApp" : neutral;
}

}  // namespace quarn
