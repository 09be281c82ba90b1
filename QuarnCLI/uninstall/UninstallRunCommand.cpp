#include "QuarnCLI/Console.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallArgs.h"
#include "QuarnCLI/uninstall/UninstallCommands.h"
#include "QuarnCLI/uninstall/UninstallFlags.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/uninstall/AppUninstallRunner.h"

namespace quarn::UninstallCommands {
namespace {

std::string report(const AppUninstallSession& session, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return UninstallHumanFormatter::session(session);
    case InstallOutputFormat::tsv:
      return UninstallTSVFormatter::sessions({session});
    case InstallOutputFormat::toml:
      break;
  }
  return UninstallTOMLFormatter::session(session);
}

/// Tells the steps if they were asked for, what isn't in the Trash, and where everything is if that couldn't
/// be recorded.
AppUninstallReporter reporterFor(bool tellsSteps) {
  AppUninstallReporter reporter;
  if (tellsSteps)
    reporter.log = [](const std::string& line) { Console::writeError("progress\t" + line + "\n"); };
  reporter.warn = [](const std::string& sentence) { Console::writeError("warning\t" + sentence + "\n"); };
  reporter.unrecorded = [](const AppUninstallSession& session) {
    Console::writeError(UninstallTOMLFormatter::session(session));
  };
  return reporter;
}

AppUninstallSession rehearse(const ReadOnlyPlatform& platform, const CLIArgs& args,
                             const UninstallSelection& selection, const AppUninstallReporter& reporter) {
  const AppRecord app = UninstallArgs::appOf(platform, args);
  const auto plan = AppUninstallPlanner::plan(platform, app, selection);
  return AppUninstallRunner::rehearse(platform, plan, selection, std::nullopt, reporter);
}

AppUninstallSession carryOut(Platform& platform, const CLIArgs& args, const UninstallSelection& selection,
                             const AppUninstallReporter& reporter) {
  // What can't be found isn't waited for. What was found may have changed when the turn comes.
  UninstallArgs::appOf(platform, args);
  const Turn turn(platform, Console::tellOfWaiting);
  const AppRecord app = UninstallArgs::appOf(platform, args);
  const auto plan = AppUninstallPlanner::plan(platform, app, selection);
  return AppUninstallRunner::run(platform, plan, selection, false, std::nullopt, reporter);
}

ExitStatus run(const Invocation& invocation) {
  const CLIArgs& args = invocation.args;
  const auto format = ReportFlags::chosen(args, InstallOutputFormat::toml);
  const bool isVerbose = args.contains(UninstallFlags::verbose);
  const bool tellsSteps = args.contains(UninstallFlags::progress) || isVerbose;
  const bool isDry = args.contains(UninstallFlags::dryRun);
  const auto selection = UninstallArgs::uninstallSelectionDefaultAll(args);
  const AppUninstallReporter reporter = reporterFor(tellsSteps);
  const auto session = isDry ? rehearse(invocation.platform, args, selection, reporter)
                             : carryOut(invocation.platform, args, selection, reporter);
  Console::printText(report(session, format));
  return ExitStatus::success;
}

using namespace UninstallFlags;

constexpr Flag flags[] = {
    dryRun,
    includeData,
    includeCaches,
    includeLogs,
    includePrefs,
    includeContainers,
    includeReceipts,
    includeLaunchAgents,
    includeLaunchDaemons,
    includeExternalTarget,
    executableOnly,
    minimal,
    ReportFlags::format,
    progress,
    verbose,
};
constexpr TellingLine tellingLines[] = {
    {"succeeded = false", "an item is still where it was; standard error names it"},
};

}  // namespace

constinit const Command uninstall{
    .words = "uninstall run",
    .purpose = "takes an application and what belongs to it to the Trash",
    .operand = UninstallArgs::appPath,
    .flags = flags,
    .outcomes = {.success = "carried out; the report tells of each item",
                 .failure = "no such application, a part of the system, no application, or the record "
                            "couldn't be written"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn uninstall run <app-path> [--dry-run] [include flags] [--format tsv|toml] [--progress]",
};

}  // namespace quarn::UninstallCommands
