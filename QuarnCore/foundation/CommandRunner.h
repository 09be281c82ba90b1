#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// The outcome of one run of an external tool. The members aren't called stdout and stderr because those are
/// macros of the C library.
struct CommandResult {
  std::int32_t status = 0;     ///< exit status; `CommandRunner::notStarted` if the tool can't be started
  std::string standardOutput;  ///< the whole output; empty if it isn't UTF-8
  std::string standardError;   ///< the same; the reason if the tool can't be started
  bool timedOut = false;       ///< the time limit passed and the tool had to be ended

  bool succeeded() const { return status == 0 && !timedOut; }
  /// Returns the lines of standard output, without empty ones.
  std::vector<std::string> lines() const;
  bool operator==(const CommandResult&) const = default;
};

namespace CommandRunner {

inline constexpr std::int32_t notStarted = 127;

/// Runs a tool by absolute path. Blocks until the tool has ended and its output has been read to the end,
/// which a process that the tool leaves behind can delay. Never throws. `timeout` is in seconds; without it
/// there is no limit. A tool that exceeds it is asked to end, and is killed 2 seconds later.
CommandResult run(const ReadOnlyPlatform& platform, const std::string& executable,
                  const std::vector<std::string>& arguments, std::optional<double> timeout = std::nullopt);

/// Runs a tool and reads its output on the calling thread, without a time limit. With `OutputStreams::joined`
/// standard error is part of the output; otherwise it is dropped. Returns an error only if the tool can't be
/// started.
Result<CommandResult> capture(const ReadOnlyPlatform& platform, const Path& executable,
                              const std::vector<std::string>& arguments, OutputStreams streams);

}  // namespace CommandRunner
}  // namespace quarn
