// Prints the table of the TOML reader. bench-toml FOLDER-OF-THE-PROGRAMS

#include <cstdio>
#include <map>
#include <sstream>
#include <string>

#include "bench/Contest.h"

namespace {

using bench::Command;
using bench::Timing;

struct Documents {
  std::string what;
  std::string name;
  int count;
  int smallCount = 0;      ///< of the same kind, to compare the time a byte with; none at 0
  double memoryLimit = 0;  ///< bytes held a byte of the text; none at 0
};

struct Task {
  std::string what;
  std::string each;
  double limit;  ///< how many times the rival's throughput it has to reach
};

constexpr double growthLimit = 1.5;
constexpr int pairs = 5;

/// Runs the programs. What is measured is told a byte of the text: the seconds as the wall time, and the
/// bytes held as the peak.
class Runner {
 public:
  explicit Runner(std::string folder) : folder_(std::move(folder)) {}

  bench::Outcome againstRival(const Documents& documents, const Task& task) {
    return compete(command("subject", documents.name, documents.count, task),
                   command("rival", documents.name, documents.count, task));
  }

  bench::Outcome againstSmall(const Documents& documents, const Task& task) {
    return compete(command("subject", documents.name, documents.count, task),
                   command("subject", documents.name, documents.smallCount, task));
  }

 private:
  Command command(const std::string& who, const std::string& name, int count, const Task& task) const {
    return {folder_ + "/bench-toml-" + who, name, std::to_string(count), task.each};
  }

  bench::Outcome compete(const Command& subject, const Command& rival) {
    const auto measure = [this](const Command& command) { return measured(command); };
    return bench::compete({subject, rival, pairs, [] {}, measure});
  }

  Timing measured(const Command& command) {
    double seconds = 0;
    double bytesHeld = 0;
    std::string checksum;
    std::istringstream(bench::outputOf(command)) >> seconds >> bytesHeld >> checksum;
    const auto known = checksums_.emplace(Command(command.begin() + 1, command.end()), checksum).first;
    if (checksum.empty() || known->second != checksum) {
      std::fprintf(stderr, "bench: subject and rival read different values from %s\n", command[1].c_str());
      std::exit(1);
    }
    return {seconds, 0, bytesHeld};
  }

  std::string folder_;
  std::map<Command, std::string> checksums_;  ///< by what is read from which documents
};

std::string factor(double value, double limit) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f | %.1f", value, limit);
  return limit > 0 ? text : " | ";
}

double megabytesPerSecond(const Timing& timing) {
  return 1 / timing.wallSeconds / 1e6;
}

void printRow(Runner& runner, const Documents& documents, const Task& task) {
  const bench::Outcome outcome = runner.againstRival(documents, task);
  const bool grows = documents.smallCount > 0;
  const double growth = grows ? runner.againstSmall(documents, task).ratio : 0;
  std::printf("| %s | %s | %.0f MB/s | %.0f MB/s | %s | %s | %s |\n", documents.what.c_str(),
              task.what.c_str(), megabytesPerSecond(outcome.subject), megabytesPerSecond(outcome.rival),
              factor(1 / outcome.ratio, task.limit).c_str(), factor(growth, grows ? growthLimit : 0).c_str(),
              factor(outcome.subject.peakMegabytes, documents.memoryLimit).c_str());
  std::fflush(stdout);
}

}  // namespace

int main(int count, char** values) {
  if (count != 2) return 2;
  Runner runner(values[1]);
  std::printf(
      "| documents | task | speed | rival's | ratio | at least | growth | at most | memory | at most |\n");
  std::printf("|---|---|---|---|---|---|---|---|---|---|\n");
  for (const Documents& documents : {Documents{"2,000 option files", "options", 2'000},
                                     {"10 MB of everything", "mixed", 10'000'000, 0, 4},
                                     {"100,000 keys in one table", "keys", 100'000, 1'000, 4},
                                     {"100,000 tables", "tables", 100'000, 1'000, 4},
                                     {"100,000 `[[x]]`", "elements", 100'000, 1'000, 4},
                                     {"100,000 dotted keys", "dotted", 100'000, 1'000, 4},
                                     {"headers 200 deep", "headers", 500},
                                     {"arrays 200 deep", "arrays", 500},
                                     {"inline tables 200 deep", "inline", 500}}) {
    for (const Task& task :
         {Task{"parse", "0", 6}, {"parse, read 1 %", "100", 6}, {"parse, read all", "1", 3}}) {
      printRow(runner, documents, task);
    }
  }
  return 0;
}
