#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// What came of one run of an external tool. The streams are not called stdout and stderr, since those
/// are macros of the C library.
struct CommandResult {
  std::int32_t status = 0;     ///< exit status; `CommandRunner::notStarted` for a tool that can't be started
  std::string standardOutput;  ///< whole; empty when it isn't UTF-8
  std::string standardError;   ///< likewise; the reason when the tool could not be started
  bool timedOut = false;       ///< the time-out expired and the tool had to be ended

  bool succeeded() const { return status == 0 && !timedOut; }
  /// Of standard output, between line feeds; empty ones left out.
  std::vector<std::string> lines() const;
  bool operator==(const CommandResult&) const = default;
};

namespace CommandRunner {

inline constexpr std::int32_t notStarted = 127;

/// Runs a tool by absolute path and blocks until it has ended and its output is read to the end, which
/// a process left behind by the tool can delay. Never throws. `timeout` in seconds; absent means to
/// wait as long as it takes. A tool that outlives it is asked to end, and killed 2 seconds later.
CommandResult run(const ReadOnlyPlatform& platform, const std::string& executable,
                  const std::vector<std::string>& arguments, std::optional<double> timeout = std::nullopt);

/// Runs a tool and reads its output on the calling thread, as long as it takes; with `OutputStreams::joined`
/// standard error stands among standard output, else it is dropped. For those who are to see why a tool can't
/// be started, which is the error here.
Result<CommandResult> capture(const ReadOnlyPlatform& platform, const Path& executable,
                              const std::vector<std::string>& arguments, OutputStreams streams);

}  // namespace CommandRunner
}  // namespace quarn
