#pragma once

#include <cstdlib>
#include <string_view>

#include "tests/support/Sanitized.h"

/// How much a campaign tries of all that could go wrong: a sample, so that it takes seconds; everything with
/// QUARN_CAMPAIGN=all. Built with a sanitizer, a third of the sample: what a fault leaves on a disk is judged
/// where runs are fast, and mistakes with memory show wherever a run fails.
namespace extent {

constexpr int sparserIfSanitized = 3;

inline bool isWhole() {
  const char* wanted = std::getenv("QUARN_CAMPAIGN");
  return wanted && std::string_view(wanted) == "all";
}

/// From one call that is tried to the next. Where each of them is (1), there is no sample to make sparser.
inline int step(int sampled) {
  if (isWhole() || sampled == 1) return 1;
  return isSanitized ? sampled * sparserIfSanitized : sampled;
}

/// How often something is tried, at least once.
inline int count(int sampled, int whole) {
  if (isWhole()) return whole;
  return isSanitized ? (sampled + sparserIfSanitized - 1) / sparserIfSanitized : sampled;
}

}  // namespace extent
