#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallReports.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/InstallerOptionLoader.h"

namespace quarn::InstallCommands {
namespace {

std::string report(const std::vector<InstallerOption>& options, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return InstallHumanFormatter::options(options);
    case InstallOutputFormat::toml:
      return TOMLFormatter::options(options);
    case InstallOutputFormat::tsv:
      break;
  }
  return TSVFormatter::options(options);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto options =
      InstallerOptionLoader::loadAll(platform, AppStorageNames::userInstallerOptionsRoot(platform.places));
  Console::printText(report(options, format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command options{
    .words = "install options",
    .purpose = "lists the install options",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn install options [--format tsv|toml]",
};

}  // namespace quarn::InstallCommands
