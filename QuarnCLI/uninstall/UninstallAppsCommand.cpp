#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallCommands.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"
#include "QuarnCore/uninstall/InstalledAppsScanner.h"

namespace quarn::UninstallCommands {
namespace {

std::string report(const std::vector<AppRecord>& apps, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return UninstallHumanFormatter::apps(apps);
    case InstallOutputFormat::toml:
      return UninstallTOMLFormatter::apps(apps);
    case InstallOutputFormat::tsv:
      break;
  }
  return UninstallTSVFormatter::apps(apps);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  Console::printText(report(InstalledAppsScanner::discover(invocation.platform), format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command apps{
    .words = "uninstall apps",
    .purpose = "lists the installed applications",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn uninstall apps [--format tsv|toml]",
};

}  // namespace quarn::UninstallCommands
