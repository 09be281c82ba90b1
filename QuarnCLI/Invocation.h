#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCLI/Command.h"
#include "QuarnCore/foundation/TemporaryFolders.h"

namespace quarn {

/// The arguments behind a command's own words. Flags are matched exactly, anywhere among them; unknown and
/// repeated ones don't matter.
///
/// A command can ask only for what its row lists, with the kind of value that the row tells: anything else is
/// a mistake in the program, and throws `std::logic_error`. So that no run meets one in the middle of its
/// work, a command asks for all its flags before it does anything.
struct CLIArgs {
  std::vector<std::string> values;
  const Command& row;

  /// For a flag without a value.
  bool contains(const Flag& flag) const;
  /// What follows the first occurrence of a flag; absent if there is none or it is the last.
  std::optional<std::string> value(const Flag& flag) const;
  /// The same for a path. An empty one is absent: it comes from a variable that isn't set, and would mean the
  /// current folder.
  std::optional<std::string> path(const Flag& flag) const;
  /// The same for one that must be there. Throws `CLIError`.
  std::string requiredPath(const Flag& flag) const;
  /// The operand: the first argument that doesn't begin with "--". It is looked for without regard to which
  /// flags take a value, so it has to stand before these.
  std::optional<std::string> positional() const;
  /// The operand where it has to come first: the first argument, even if it looks like a flag.
  std::optional<std::string> first() const;
};

/// What a command that changes something is handed.
struct Invocation {
  Platform& platform;
  std::string program;  ///< the program's path as invoked
  CLIArgs args;
};

/// What a command that only looks is handed. It can change nothing but folders of its own among the temporary
/// files.
struct ReadOnlyInvocation {
  ReadOnlyPlatform platform;
  TemporaryFolders& temporaryFolders;
  CLIArgs args;
};

}  // namespace quarn
