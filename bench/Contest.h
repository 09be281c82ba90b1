#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

using Command = std::vector<std::string>;

/// What one run of a command took, that of the tools it started and waited for included.
struct Timing {
  double wallSeconds = 0;
  double processorSeconds = 0;
  double peakMegabytes = 0;
};

/// Runs a command with its output thrown away. Ends the program if it doesn't succeed, as `outputOf` does.
Timing timed(const Command& command);
/// What a run took beyond one of its steps, which was timed alone. The peak is that of the whole run.
Timing less(const Timing& run, const Timing& step);
/// What a command prints.
std::string outputOf(const Command& command);

/// Subject and rival take turns; each turn is a pair.
struct Contest {
  Command subject;
  Command rival;
  int pairs = 7;
  std::function<void()> beforeEach = [] {};
  std::function<Timing(const Command&)> measure = timed;
};

struct Outcome {
  double ratio = 0;  ///< median over the pairs of the subject's wall time to the rival's
  Timing subject;    ///< medians
  Timing rival;
};

Outcome compete(const Contest& contest);

double median(std::vector<double> values);

}  // namespace bench
