#include "tests/support/linux/FailedAt.h"

#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/LookingCalls.h"

namespace scene {
namespace {

/// A whole move has some thousand; a program that tries a failing call again and again has no end.
constexpr int mostCalls = 200'000;

std::optional<std::string> entered(const TracedProgram& program, const CallStop& stop, CallKind kind) {
  if (kind == CallKind::looking) return lookEntered(program, stop);
  const auto call = callEntered(program, stop);
  if (!call || writesNoFile(*call)) return std::nullopt;
  return call->text();
}

}  // namespace

std::optional<FailedRun> failedAt(int n, const Failure& failure, const std::vector<std::string>& command) {
  TracedProgram program(command);
  FailedRun run;
  int count = 0;
  while (const auto stop = program.next()) {
    const auto call = entered(program, *stop, failure.kind);
    if (!call || ++count < n || (count > n && !failure.forGood)) continue;
    if (count > mostCalls || !program.refuse(failure.error)) return std::nullopt;
    if (!run.hasFailed) run.call = *call;
    run.hasFailed = true;
  }
  if (!program.status()) return std::nullopt;
  run.status = *program.status();
  run.said = program.said();
  return run;
}

}  // namespace scene
