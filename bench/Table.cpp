#include "bench/Table.h"

#include <cstdio>

namespace bench {

void printHeading() {
  std::printf("| what | rival | ratio | limit | time | rival's time | peak | limit |\n");
  std::printf("|---|---|---|---|---|---|---|---|\n");
}

void print(const Row& row, const Outcome& outcome) {
  const double peak = outcome.subject.peakMegabytes;
  const bool limitsPeak = row.peakLimit > 0;
  std::printf("| %s | %s | %.2f%s | %.2f | %.1f ms | %.1f ms | %.1f MB%s | %s |\n", row.what.c_str(),
              row.rival.c_str(), outcome.ratio, mark(outcome.ratio, row.limit), row.limit,
              outcome.subject.wallSeconds * 1000, outcome.rival.wallSeconds * 1000, peak,
              limitsPeak ? mark(peak, row.peakLimit) : "",
              limitsPeak ? (std::to_string(static_cast<int>(row.peakLimit)) + " MB").c_str() : "");
  std::fflush(stdout);
}

const char* mark(double figure, double limit) {
  return figure > limit ? " ✗" : "";
}

}  // namespace bench
