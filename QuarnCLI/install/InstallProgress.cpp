#include "QuarnCLI/install/InstallProgress.h"

#include <chrono>
#include <mutex>

#include "Platform/RepeatingTimer.h"
#include "QuarnCLI/Console.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;

constexpr int secondsOfSilence = 2;

std::string wordOf(const std::string& line) {
  return line.substr(0, line.find('\t'));
}

}  // namespace

struct InstallProgress::State {
  explicit State(std::string linePrefix) : prefix(std::move(linePrefix)) {}

  void tell(const std::string& line) {
    const std::lock_guard guard(lock);
    step = wordOf(line);
    seconds = 0;
    Console::writeError(prefix + line + "\n");
  }

  void aSecondPassed() {
    const std::lock_guard guard(lock);
    if (++seconds < secondsOfSilence) return;
    Console::writeError(prefix + "still\t" + step + "\t" + std::to_string(seconds) + " s\n");
  }

  const std::string prefix;
  std::mutex lock;
  std::string step = "start";
  int seconds = 0;  ///< since the step began
  // The last member, and so the first to go.
  RepeatingTimer timer{1s, [this] { aSecondPassed(); }};
};

InstallProgress::InstallProgress(std::string prefix) : state_(std::make_unique<State>(std::move(prefix))) {}

InstallProgress::~InstallProgress() = default;

InstallerRunReporter InstallProgress::reporter() {
  return {.sink = [state = state_.get()](const std::string& line) { state->tell(line); },
          .waiting = Console::tellOfWaiting};
}

InstallerRunReporter InstallProgress::quiet() {
  return {.sink = {}, .waiting = Console::tellOfWaiting};
}

}  // namespace quarn
