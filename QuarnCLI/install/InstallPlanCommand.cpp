#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallFlags.h"
#include "QuarnCLI/install/InstallReports.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/installer/InstallerPlanner.h"

namespace quarn::InstallCommands {
namespace {

std::string report(const InstallerPlan& plan, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return InstallHumanFormatter::plan(plan);
    case InstallOutputFormat::tsv:
      return TSVFormatter::plan(plan);
    case InstallOutputFormat::toml:
      break;
  }
  return TOMLFormatter::plan(plan);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::toml);
  const auto choice = InstallArgs::choiceOf(platform, invocation.args);
  const auto plan = InstallerPlanner::plan(platform, invocation.temporaryFolders, choice.source,
                                           choice.option, choice.targetDrive);
  Console::printText(report(plan, format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {InstallFlags::option, InstallFlags::targetDrive, InstallFlags::applicationLinkRoot,
                          ReportFlags::format};

}  // namespace

constinit const Command plan{
    .words = "install plan",
    .purpose = "shows what `install run` would do",
    .operand = InstallArgs::source,
    .flags = flags,
    .outcomes = {.success = "shown", .failure = "no source, no such option, or no drive given"},
    .handler = run,
    .usageLine = "quarn install plan <source> --option <id> --target-drive <path>",
};

}  // namespace quarn::InstallCommands
