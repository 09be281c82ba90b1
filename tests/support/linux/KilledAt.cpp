#include "tests/support/linux/KilledAt.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include "tests/support/Scene.h"
#include "tests/support/linux/ChangingCalls.h"

namespace scene {

std::optional<KilledRun> killedAt(int n, const std::vector<std::string>& command) {
  TracedProgram program(command);
  int count = 0;
  while (const auto stop = program.next()) {
    const auto call = callEntered(program, *stop);
    if (!call || !changesTree(*call) || ++count < n) continue;
    program.kill();
    return KilledRun{true, -SIGKILL, call->text(), program.said()};
  }
  if (!program.status()) return std::nullopt;
  return KilledRun{false, *program.status(), {}, program.said()};
}

std::string whyNotTraced() {
  if (!hasMounts()) return "this room traces its processes itself, and a process has one tracer only";
  const auto run = killedAt(1, {"/bin/true"});
  return run && run->status == 0 ? ""
                                 : std::string("processes can't be traced here: ") + std::strerror(errno);
}

}  // namespace scene
