#include "QuarnCLI/uninstall/UninstallArgs.h"

#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/uninstall/UninstallFlags.h"
#include "QuarnCore/uninstall/InstalledAppsScanner.h"

namespace quarn::UninstallArgs {

AppRecord appOf(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto given = args.first();
  if (!given || given->empty() || given->starts_with("--")) throw CLIError("Missing app path.");
  auto app = InstalledAppsScanner::inspect(platform, PathText::fileURL(platform.places, *given));
  if (!app) throw CLIError("App not found: " + *given);
  return *std::move(app);
}

UninstallSelection uninstallSelectionDefaultAll(const CLIArgs& args) {
  UninstallSelection named;
  for (const auto& [flag, governed] : UninstallFlags::includes) named.*governed = args.contains(*flag);
  const bool isMinimal = args.contains(UninstallFlags::minimal);
  const bool isAlone = args.contains(UninstallFlags::executableOnly) || isMinimal;
  if (isAlone) return UninstallSelection::executableOnly();
  return named == UninstallSelection() ? UninstallSelection::everything() : named;
}

}  // namespace quarn::UninstallArgs
