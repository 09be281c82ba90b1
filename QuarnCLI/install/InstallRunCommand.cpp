#include <optional>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallFlags.h"
#include "QuarnCLI/install/InstallProgress.h"
#include "QuarnCLI/install/InstallReports.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/installer/InstallerRunner.h"

namespace quarn::InstallCommands {
namespace {

std::string report(const InstallerSession& session, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return "Installed session " + session.id + "\n";
    case InstallOutputFormat::tsv:
      return TSVFormatter::sessions({session});
    case InstallOutputFormat::toml:
      break;
  }
  return TOMLFormatter::session(session);
}

InstallerSession sessionOf(Platform& platform, const InstallerSource& source, InstallRequest request,
                           bool tellsSteps) {
  std::optional<InstallProgress> progress;
  if (tellsSteps) progress.emplace("progress\t");
  request.reporter = progress ? progress->reporter() : InstallProgress::quiet();
  return InstallerRunner::run(platform, source, request);
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const CLIArgs& args = invocation.args;
  const bool tellsProgress = args.contains(InstallFlags::progress);
  const bool tellsSteps = args.contains(InstallFlags::verbose) || tellsProgress;
  const bool useGantrix = args.contains(InstallFlags::useGantrix);
  const auto format = ReportFlags::chosen(args, InstallOutputFormat::toml);
  const auto choice = InstallArgs::choiceOf(platform, args);
  const InstallRequest request{
      .option = choice.option, .targetDrive = choice.targetDrive, .useGantrix = useGantrix};
  Console::printText(report(sessionOf(platform, choice.source, request, tellsSteps), format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {
    InstallFlags::option,     InstallFlags::targetDrive, InstallFlags::applicationLinkRoot,
    InstallFlags::useGantrix, InstallFlags::progress,    InstallFlags::verbose,
    ReportFlags::format};
constexpr TellingLine tellingLines[] = {
    {"actions = …",
     "with \"externalize-failed\" in it: an application hasn't reached the drive; "
     "`install pending` lists it"},
};

}  // namespace

constinit const Command install{
    .words = "install run",
    .purpose = "installs from a source onto a drive, and records what changed",
    .operand = InstallArgs::source,
    .flags = flags,
    .outcomes = {.success = "installed",
                 .failure = "no source, no such option, no drive given, or the installation failed"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn install run <source> --option <id> --target-drive <path> [--use-gantrix] [--progress]",
};

}  // namespace quarn::InstallCommands
