#include "QuarnCLI/Console.h"
#include "QuarnCLI/install/InstallArgs.h"
#include "QuarnCLI/install/InstallCommands.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/UninstallPlanner.h"

namespace quarn::InstallCommands {
namespace {

ExitStatus run(const Invocation& invocation) {
  // What can't be found isn't waited for. What was found may have changed when the turn comes.
  InstallArgs::sessionOf(invocation.platform, invocation.args);
  const Turn turn(invocation.platform, Console::tellOfWaiting);
  const InstallerSession session = InstallArgs::sessionOf(invocation.platform, invocation.args);
  SessionUninstaller::carryOut(invocation.platform, session);
  return ExitStatus::success;
}

}  // namespace

constinit const Command uninstall{
    .words = "install uninstall",
    .purpose = "sets aside what an installation brought",
    .operand = InstallArgs::sessionID,
    .outcomes = {.success = "done, as far as possible; nothing is printed", .failure = "no such session"},
    .handler = run,
};

}  // namespace quarn::InstallCommands
