#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallReports.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/SessionStore.h"

namespace quarn::InstallCommands {
namespace {

std::string tomlOf(const std::vector<InstallerSession>& sessions) {
  std::string text;
  for (const InstallerSession& session : sessions) text += TOMLFormatter::session(session);
  return text;
}

std::string report(const std::vector<InstallerSession>& sessions, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return InstallHumanFormatter::sessions(sessions);
    case InstallOutputFormat::toml:
      return tomlOf(sessions);
    case InstallOutputFormat::tsv:
      break;
  }
  return TSVFormatter::sessions(sessions);
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::tsv);
  const ReadOnlyPlatform& platform = invocation.platform;
  Console::printText(
      report(SessionStore::list(platform, AppStorageNames::sessionRoot(platform.places)), format));
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command sessions{
    .words = "install sessions",
    .purpose = "lists the recorded installations",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn install sessions [--format tsv]",
};

}  // namespace quarn::InstallCommands
