#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/linux/ChangingCalls.h"

/// What a program asks of the system, in its order: for promises about what comes before what, such as
/// that nothing is removed before the copy has been written out.
namespace scene {

struct TracedRun {
  int status = 0;           ///< exit status, or minus the number of the signal that ended it
  std::vector<Call> calls;  ///< without writes to what is no file

  /// A line each.
  std::vector<std::string> texts() const;
};

/// Runs a program as an ordinary person. The calls of its first thread alone, not
/// those of the tools that it starts. Absent where `whyNotTraced` tells a reason.
std::optional<TracedRun> callsOf(const std::vector<std::string>& command);
/// The same of a piece of this program, run in a child with the rights of the test.
std::optional<TracedRun> callsOf(const std::function<void()>& body);

}  // namespace scene
