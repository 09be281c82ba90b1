#include "Platform/LocalizedError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/QuarnCLI.h"

namespace {

quarn::QuarnCLI cli;

}  // namespace

int main(int count, char** values) {
  if (count > 0) {
    cli.program = values[0];
    cli.arguments.assign(values + 1, values + count);
  }
  try {
    return static_cast<int>(cli.run(quarn::hostPlatform()));
  } catch (const quarn::LocalizedError& error) {
    quarn::Console::writeError("error\t" + error.localizedDescription() + "\n");
    return static_cast<int>(quarn::ExitStatus::failure);
  }
}
