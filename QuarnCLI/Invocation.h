#pragma once

#include <string>

#include "Platform/Platform.h"
#include "QuarnCLI/CLIArgs.h"

namespace quarn {

/// What a command is handed.
struct Invocation {
  Platform& platform;
  std::string program;  ///< the program's path as invoked
  CLIArgs args;         ///< what stands behind the command's own word
};

}  // namespace quarn
