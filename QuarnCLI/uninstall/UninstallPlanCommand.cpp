#include "QuarnCLI/Console.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallArgs.h"
#include "QuarnCLI/uninstall/UninstallCommands.h"
#include "QuarnCLI/uninstall/UninstallFlags.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"
#include "QuarnCore/uninstall/AppUninstallPlanner.h"

namespace quarn::UninstallCommands {
namespace {

std::string report(const AppUninstallPlan& plan, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return UninstallHumanFormatter::plan(plan);
    case InstallOutputFormat::tsv:
      return UninstallTSVFormatter::plan(plan);
    case InstallOutputFormat::toml:
      break;
  }
  return UninstallTOMLFormatter::plan(plan);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::toml);
  const auto selection = UninstallArgs::uninstallSelectionDefaultAll(invocation.args);
  const AppRecord app = UninstallArgs::appOf(platform, invocation.args);
  Console::printText(report(AppUninstallPlanner::plan(platform, app, selection), format));
  return ExitStatus::success;
}

using namespace UninstallFlags;

constexpr Flag flags[] = {
    includeData,     includeCaches,       includeLogs,          includePrefs,          includeContainers,
    includeReceipts, includeLaunchAgents, includeLaunchDaemons, includeExternalTarget, executableOnly,
    minimal,         ReportFlags::format,
};

}  // namespace

constinit const Command plan{
    .words = "uninstall plan",
    .purpose = "shows what `uninstall run` would take",
    .operand = UninstallArgs::appPath,
    .flags = flags,
    .outcomes = {.success = "shown", .failure = "no such application"},
    .handler = run,
    .usageLine =
        "quarn uninstall plan <app-path> "
        "[--include-data|--include-caches|--include-logs|--include-prefs|--include-containers|--include-"
        "receipts|--include-launch-agents|--include-launch-daemons|--include-external-target|--executable-"
        "only] "
        "[--format tsv|toml]",
};

}  // namespace quarn::UninstallCommands
