#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCLI/Command.h"

namespace quarn {

/// One run of the program.
struct QuarnCLI {
  std::vector<std::string> arguments;  ///< without the program's name
  std::string program;                 ///< as invoked

  /// Carries out one command. Throws a `LocalizedError`.
  ExitStatus run(Platform& platform) const;
};

}  // namespace quarn
