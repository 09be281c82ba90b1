#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MoveSelection.h"

namespace quarn::MoveCommands {
namespace {

bool isPlain(const AppEntry& entry) {
  return !MoveSelection::isRisky(entry) && !entry.isAlreadySymlinked;
}

std::vector<AppEntry> listedApps(const ReadOnlyPlatform& platform, bool all) {
  std::vector<AppEntry> apps;
  for (const AppEntry& entry : AppScanner::discoverMetadata(platform)) {
    if (all || isPlain(entry)) apps.push_back(AppScanner::computeSizes(platform, entry));
  }
  std::stable_sort(apps.begin(), apps.end(),
                   [](const AppEntry& a, const AppEntry& b) { return a.totalSize() > b.totalSize(); });
  return apps;
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto listed = listedApps(invocation.platform, invocation.args.contains(MoveFlags::all));
  Console::print(
      ReportText::tabSeparated({"name", "bundle_id", "risk", "app_size", "data_size", "total", "path"}));
  for (const AppEntry& app : listed) {
    Console::print(ReportText::tabSeparated(
        {app.name, app.bundleIdentifier.value_or(""), std::string(rawValue(app.riskLevel())),
         SizeCalculator::format(app.appSize), SizeCalculator::format(app.dataSize),
         SizeCalculator::format(app.totalSize()), app.bundlePath.text()}));
  }
  return ExitStatus::success;
}

constexpr Flag flags[] = {MoveFlags::all};

}  // namespace

constinit const Command apps{
    .words = "move apps",
    .purpose = "lists the applications with their sizes, the largest first",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn move apps [--all]",
};

}  // namespace quarn::MoveCommands
