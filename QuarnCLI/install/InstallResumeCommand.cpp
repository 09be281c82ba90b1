#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/install/InstallProgress.h"
#include "QuarnCore/installer/ResumeCoordinator.h"

namespace quarn::InstallCommands {
namespace {

const char* wordsFor(InstallerSessionStatus status) {
  switch (status) {
    case InstallerSessionStatus::done:
      return "done";
    case InstallerSessionStatus::failed:
      return "failed";
    case InstallerSessionStatus::pendingExternalize:
      break;
  }
  return "partial — some apps still pending";
}

void print(const InstallerSession& session) {
  Console::print("session\t" + session.id + "\t" + wordsFor(session.status));
  if (session.status != InstallerSessionStatus::pendingExternalize) return;
  for (const std::string& app : session.pendingExternalizeApps) Console::print("pending\t" + app);
}

ExitStatus run(const Invocation& invocation) {
  // A flag in that place is an identifier, too.
  const auto id = invocation.args.first();
  if (!id) throw CLIError("Usage: install resume <session-id>");
  InstallProgress progress("");
  print(ResumeCoordinator::resume(invocation.platform, *id, progress.reporter()));
  return ExitStatus::success;
}

constexpr TellingLine tellingLines[] = {
    {"session\t…\tfailed", "it failed"},
    {"session\t…\tpartial — some apps still pending", "some applications have not reached the drive"},
    {"pending\t…", "one of them"},
};

}  // namespace

constinit const Command resume{
    .words = "install resume",
    .purpose = "finishes an installation that was broken off",
    .operand = InstallArgs::sessionID,
    .outcomes = {.success = "looked after; the line tells how it went", .failure = "anything else"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn install resume <session-id>     # finish externalize for a killed install",
};

}  // namespace quarn::InstallCommands
