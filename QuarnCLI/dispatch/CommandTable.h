#pragma once

#include <span>
#include <string>
#include <vector>

#include "QuarnCLI/Command.h"
#include "QuarnCLI/Invocation.h"

/// Gathers the groups, each of which owns the rows of its commands.
namespace quarn::CommandTable {

/// In the order of the usage text.
std::span<const Group* const> groups();

struct Match {
  const Command& command;
  CLIArgs args;
};

/// The command that the words ask for. Throws `CLIError` for a word that is missing or unknown.
Match find(const std::vector<std::string>& words);

/// A line for every command, joined by line feeds.
std::string usage();

}  // namespace quarn::CommandTable
