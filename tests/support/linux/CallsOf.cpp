#include "tests/support/linux/CallsOf.h"

namespace scene {
namespace {

int errorOf(const CallStop& stop) {
  return stop.exit.is_error ? static_cast<int>(-stop.exit.rval) : 0;
}

std::optional<TracedRun> follow(TracedProgram& program) {
  TracedRun run;
  bool isInside = false;
  while (const auto stop = program.next()) {
    if (auto call = callEntered(program, *stop); call && !writesNoFile(*call)) {
      run.calls.push_back(*std::move(call));
      isInside = true;
    } else if (isInside && stop->op == PTRACE_SYSCALL_INFO_EXIT) {
      run.calls.back().error = errorOf(*stop);
      isInside = false;
    }
  }
  if (!program.status()) return std::nullopt;
  run.status = *program.status();
  return run;
}

}  // namespace

std::vector<std::string> TracedRun::texts() const {
  std::vector<std::string> lines;
  for (const Call& call : calls) lines.push_back(call.text());
  return lines;
}

std::optional<TracedRun> callsOf(const std::vector<std::string>& command) {
  TracedProgram program(command);
  return follow(program);
}

std::optional<TracedRun> callsOf(const std::function<void()>& body) {
  TracedProgram program(body);
  return follow(program);
}

}  // namespace scene
