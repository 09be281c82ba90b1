#pragma once

#include <string>
#include <vector>

#include "QuarnCLI/CLIArgs.h"
#include "QuarnCLI/ExitStatus.h"
#include "QuarnCLI/Invocation.h"

/// The one table of groups and commands, from which dispatch and the usage text are made.
namespace quarn::CommandTable {

using Handler = ExitStatus (*)(const Invocation&);

struct Match {
  Handler run;
  CLIArgs arguments;
};

/// The command that the words ask for. Throws `CLIError` for a word that is missing or unknown, and
/// for a command that this version doesn't have.
Match find(const std::vector<std::string>& words);

/// A line for every command, joined by line feeds.
std::string usage();

}  // namespace quarn::CommandTable
