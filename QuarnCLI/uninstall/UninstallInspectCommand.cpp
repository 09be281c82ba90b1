#include "QuarnCLI/Console.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallArgs.h"
#include "QuarnCLI/uninstall/UninstallCommands.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"

namespace quarn::UninstallCommands {
namespace {

std::string report(const AppRecord& app, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return UninstallHumanFormatter::inspection(app);
    case InstallOutputFormat::toml:
      return UninstallTOMLFormatter::inspection(app);
    case InstallOutputFormat::tsv:
      break;
  }
  return UninstallTSVFormatter::inspection(app);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  Console::printText(report(UninstallArgs::appOf(invocation.platform, invocation.args), format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command inspect{
    .words = "uninstall inspect",
    .purpose = "shows what is known of an application",
    .operand = UninstallArgs::appPath,
    .flags = flags,
    .outcomes = {.success = "shown", .failure = "no such application"},
    .handler = run,
    .usageLine = "quarn uninstall inspect <app-path> [--format tsv|toml]",
};

}  // namespace quarn::UninstallCommands
