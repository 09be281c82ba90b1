#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn::MoveCommands {
namespace {

std::string yesOrNo(bool flag) {
  return flag ? "yes" : "no";
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  Console::print(ReportText::tabSeparated({"mount", "name", "internal", "writable", "free", "total"}));
  for (const DriveInfo& drive : DriveScanner::scan(invocation.platform)) {
    Console::print(ReportText::tabSeparated(
        {drive.mountPath.text(), drive.name, yesOrNo(drive.isInternal), yesOrNo(drive.isWritable),
         SizeCalculator::format(drive.freeBytes), SizeCalculator::format(drive.totalBytes)}));
  }
  return ExitStatus::success;
}

}  // namespace

constinit const Command drives{
    .words = "move drives",
    .purpose = "lists the mounted drives",
    .outcomes = {.success = "listed", .failure = ""},
    .handler = run,
    .usageLine = "quarn move drives",
};

}  // namespace quarn::MoveCommands
