#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallReports.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/installer/InstallerInspector.h"

namespace quarn::InstallCommands {
namespace {

std::string report(const InstallerInspection& inspection, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return InstallHumanFormatter::inspection(inspection);
    case InstallOutputFormat::toml:
      return TOMLFormatter::inspection(inspection);
    case InstallOutputFormat::tsv:
      break;
  }
  return TSVFormatter::inspection(inspection);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  const InstallerSource source = InstallArgs::sourceOf(invocation.platform, invocation.args);
  const auto inspection =
      InstallerInspector::inspect(invocation.platform, invocation.temporaryFolders, source);
  Console::printText(report(inspection, format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};
constexpr TellingLine tellingLines[] = {
    {"warning\t…", "something to know before it is installed, or why it couldn't be looked into"},
};

}  // namespace

constinit const Command inspect{
    .words = "install inspect",
    .purpose = "shows what a source holds, and whether it is to be trusted",
    .operand = InstallArgs::source,
    .flags = flags,
    .outcomes = {.success = "shown", .failure = "no source"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn install inspect <source> [--format tsv|toml]",
};

}  // namespace quarn::InstallCommands
