#include "QuarnCLI/Console.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCore/installer/UninstallPlanner.h"

namespace quarn::InstallCommands {
namespace {

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const InstallerSession session = InstallArgs::sessionOf(invocation.platform, invocation.args);
  for (const std::string& line : UninstallPlanner::plan(session)) Console::print(line);
  return ExitStatus::success;
}

}  // namespace

constinit const Command uninstallPlan{
    .words = "install uninstall-plan",
    .purpose = "shows what `install uninstall` would do",
    .operand = InstallArgs::sessionID,
    .outcomes = {.success = "shown", .failure = "no such session"},
    .handler = run,
    .usageLine = "quarn install uninstall-plan <session-id>",
};

}  // namespace quarn::InstallCommands
