#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/installer/ResumeCoordinator.h"

namespace quarn::InstallCommands {
namespace {

std::string commaSeparated(const std::vector<std::string>& texts) {
  std::string text;
  for (const std::string& one : texts) text += (text.empty() ? "" : ",") + one;
  return text;
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto pendingSessions = PendingSessionsLookup::all(invocation.platform);
  if (pendingSessions.empty()) {
    Console::print("No installer sessions awaiting externalization.");
    return ExitStatus::success;
  }
  Console::print("id\tsource\toption\ttarget-drive\tpending-apps");
  for (const InstallerSession& session : pendingSessions) {
    Console::print(
        ReportText::tabSeparated({session.id, session.sourcePath, session.optionID, session.targetDrivePath,
                                  commaSeparated(session.pendingExternalizeApps)}));
  }
  return ExitStatus::success;
}

constexpr TellingLine tellingLines[] = {
    {"No installer sessions awaiting externalization.", ""},
};

}  // namespace

constinit const Command pending{
    .words = "install pending",
    .purpose = "lists the installations whose applications have not all reached the drive",
    .outcomes = {.success = "listed", .failure = ""},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn install pending                 # list sessions awaiting externalize",
};

}  // namespace quarn::InstallCommands
