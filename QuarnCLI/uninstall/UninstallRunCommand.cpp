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

void tellStep(const std::string& line) {
  Console::writeError("progress\t" + line + "\n");
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

/// Carries out, and tells the steps if that fails midway: then nothing else tells what went.
AppUninstallSession carryOutOrTell(Platform& platform, const CLIArgs& args,
                                   const UninstallSelection& selection, bool tellsSteps) {
  std::vector<std::string> untold;
  AppUninstallReporter reporter{tellStep};
  if (!tellsSteps) reporter.log = [&](const std::string& line) { untold.push_back(line); };
  try {
    return carryOut(platform, args, selection, reporter);
  } catch (const LocalizedError&) {
    for (const std::string& line : untold) tellStep(line);
    throw;
  }
}

void tellWhatStays(const AppUninstallSession& session) {
  for (const auto& item : session.movedItems) {
    if (!item.succeeded) Console::writeError("warning\t“" + item.originalPath + "” is still there.\n");
  }
}

ExitStatus run(const Invocation& invocation) {
  const CLIArgs& args = invocation.args;
  const auto format = ReportFlags::chosen(args, InstallOutputFormat::toml);
  const bool isVerbose = args.contains(UninstallFlags::verbose);
  const bool tellsSteps = args.contains(UninstallFlags::progress) || isVerbose;
  const bool isDry = args.contains(UninstallFlags::dryRun);
  const auto selection = UninstallArgs::uninstallSelectionDefaultAll(args);
  const auto session =
      isDry ? rehearse(invocation.platform, args, selection,
                       tellsSteps ? AppUninstallReporter{tellStep} : AppUninstallReporter::silent())
            : carryOutOrTell(invocation.platform, args, selection, tellsSteps);
  Console::printText(report(session, format));
  tellWhatStays(session);
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
