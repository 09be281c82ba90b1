#pragma once

#include <chrono>

namespace quarn {

/// A moment of the calendar, in seconds and fractions since 1970.
using Moment = std::chrono::system_clock::time_point;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Moment now() const = 0;
  /// Time that never jumps, for lengths of time.
  virtual std::chrono::steady_clock::time_point steadyNow() const = 0;
  /// The moment so many seconds from now, of the time that never jumps.
  std::chrono::steady_clock::time_point after(double seconds) const {
    using Steps = std::chrono::steady_clock::duration;
    return steadyNow() + std::chrono::duration_cast<Steps>(std::chrono::duration<double>(seconds));
  }
  virtual void sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace quarn
