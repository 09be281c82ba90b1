#pragma once

#include "Platform/Clock.h"

namespace quarn {

class SystemClock : public Clock {
 public:
  Moment now() const override;
  std::chrono::steady_clock::time_point steadyNow() const override;
  void sleep(std::chrono::milliseconds duration) override;
};

}  // namespace quarn
