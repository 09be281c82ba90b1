#pragma once

#include <string>

#include "bench/Contest.h"

namespace bench {

struct Row {
  std::string what;
  std::string rival;
  double limit;
  double peakLimit = 0;  ///< MB; none at 0
};

void printHeading();
void print(const Row& row, const Outcome& outcome);

/// What follows a figure: a mark if it misses its limit.
const char* mark(double figure, double limit);

}  // namespace bench
