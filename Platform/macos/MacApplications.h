#pragma once

#include "Platform/Applications.h"

namespace quarn {

class MacApplications : public Applications {
 public:
  std::vector<RunningApplication> running() const override;
  void terminate(const RunningApplication& application) override;
  void forceTerminate(const RunningApplication& application) override;
  void wait(std::chrono::milliseconds duration) override;
};

}  // namespace quarn
