#include <exception>

#include "Platform/HostPlatform.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/dispatch/QuarnCLI.h"

namespace {

using quarn::ExitStatus;

quarn::QuarnCLI cli;

ExitStatus failed(const std::string& description) {
  quarn::Console::writeError("error\t" + description + "\n");
  return ExitStatus::failure;
}

ExitStatus run() {
  try {
    const ExitStatus status = cli.run(quarn::hostPlatform());
    // A report that was cut must not pass for a whole one, nor a run for one that found nothing to do.
    return quarn::Console::allWasWritten() ? status : failed("Standard output could not be written.");
  } catch (const std::exception& error) {
    // A `LocalizedError`, or the system had no memory or no thread left.
    return failed(error.what());
  }
}

}  // namespace

int main(int count, char** values) {
  if (count > 0) {
    cli.program = values[0];
    cli.arguments.assign(values + 1, values + count);
  }
  return static_cast<int>(run());
}
