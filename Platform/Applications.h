#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// A running application. Its process may have ended since.
struct RunningApplication {
  int processIdentifier = 0;
  std::optional<Path> bundlePath;
  bool operator==(const RunningApplication&) const = default;
};

class Applications {
 public:
  virtual ~Applications() = default;
  /// Returns what is running now. That includes every process whose executable lies in a bundle; such a
  /// bundle is given by its real path.
  virtual std::vector<RunningApplication> running() const = 0;
  /// Asks the application to quit and returns at once; the application may refuse. Does nothing if the
  /// process has ended or if its identifier has since been reused; the same holds for `forceTerminate`.
  virtual void terminate(const RunningApplication& application) = 0;
  /// Kills the application without asking, and returns before it has ended.
  virtual void forceTerminate(const RunningApplication& application) = 0;
  /// Waits, and keeps the list of running applications up to date meanwhile. On a Mac part of that list
  /// doesn't change while a thread merely sleeps.
  virtual void wait(std::chrono::milliseconds duration) = 0;
};

}  // namespace quarn
