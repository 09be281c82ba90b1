#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// An application that runs. The process may have ended since.
struct RunningApplication {
  int processIdentifier = 0;
  std::optional<Path> bundlePath;
  bool operator==(const RunningApplication&) const = default;
};

class Applications {
 public:
  virtual ~Applications() = default;
  /// What runs now, with every process whose program lies in a bundle, by the real path of the bundle.
  virtual std::vector<RunningApplication> running() const = 0;
  /// Asks politely; returns at once, and the application may refuse. Nothing happens if the process has
  /// ended, or its number belongs to another one by now; the same holds for `forceTerminate`.
  virtual void terminate(const RunningApplication& application) = 0;
  /// Doesn't ask; returns before the application has ended.
  virtual void forceTerminate(const RunningApplication& application) = 0;
  /// Lets time pass while the list of running applications is kept current. On a Mac a part of that list
  /// stands still while a thread merely sleeps.
  virtual void wait(std::chrono::milliseconds duration) = 0;
};

}  // namespace quarn
