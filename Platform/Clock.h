#pragma once

#include <chrono>

namespace quarn {

/// A point in calendar time: seconds since 1970, with fractions.
using Moment = std::chrono::system_clock::time_point;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Moment now() const = 0;
  /// Returns a time that never jumps. Use it to measure durations.
  virtual std::chrono::steady_clock::time_point steadyNow() const = 0;
  /// Returns the point `seconds` from now on the steady clock.
  std::chrono::steady_clock::time_point after(double seconds) const {
    using Steps = std::chrono::steady_clock::duration;
    return steadyNow() + std::chrono::duration_cast<Steps>(std::chrono::duration<double>(seconds));
  }
  virtual void sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace quarn
