#pragma once

#include "Platform/Processes.h"

namespace quarn {

class PosixProcesses : public Processes {
 public:
  Result<std::unique_ptr<Child>> start(const Path& executable, const std::vector<std::string>& arguments,
                                       OutputStreams streams) override;
  std::vector<int> lineage() const override;
};

}  // namespace quarn
