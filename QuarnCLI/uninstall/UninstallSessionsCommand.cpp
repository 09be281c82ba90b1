#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallCommands.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/uninstall/UninstallSessionStore.h"

namespace quarn::UninstallCommands {
namespace {

std::string tomlOf(const std::vector<AppUninstallSession>& sessions) {
  std::string text;
  for (const AppUninstallSession& session : sessions) text += UninstallTOMLFormatter::session(session);
  return text;
}

std::string report(const std::vector<AppUninstallSession>& sessions, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return UninstallHumanFormatter::sessions(sessions);
    case InstallOutputFormat::toml:
      return tomlOf(sessions);
    case InstallOutputFormat::tsv:
      break;
  }
  return UninstallTSVFormatter::sessions(sessions);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  const ReadOnlyPlatform& platform = invocation.platform;
  const Path root = AppStorageNames::uninstallSessionRoot(platform.places);
  Console::printText(report(UninstallSessionStore::list(platform, root), format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command sessions{
    .words = "uninstall sessions",
    .purpose = "lists the recorded removals",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn uninstall sessions [--format tsv|toml]",
};

}  // namespace quarn::UninstallCommands
