#pragma once

#include <csignal>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/CocoaError.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"

namespace quarn::doubles {

/// Tools that exist only in a test. Each command, as its words joined by spaces, gets the answer with the
/// longest key that it begins with. A command without an answer is a tool that is missing.
class FakeTools : public Processes {
 public:
  struct Answer {
    int status = 0;
    std::string output = {};
    std::string error = {};
    bool hangs = false;  ///< until it is asked to end
  };

  Result<std::unique_ptr<Child>> start(const Path& executable, const std::vector<std::string>& arguments,
                                       OutputStreams) override {
    calls.push_back({executable.text()});
    calls.back().insert(calls.back().end(), arguments.begin(), arguments.end());
    const Answer* answer = answerTo(calls.back());
    if (!answer) return CocoaError::toolNotStarted(executable);
    return std::unique_ptr<Child>(std::make_unique<Answering>(*answer));
  }
  std::vector<int> lineage() const override { return hostPlatform().processes.lineage(); }

  /// How long the tools that hung were waited for, all together.
  double secondsWaited() const { return clock.seconds(); }
  Platform& platform() { return platform_; }

  std::map<std::string, Answer> answers;
  std::vector<std::vector<std::string>> calls;
  FakeClock clock;

 private:
  class Answering : public Child {
   public:
    explicit Answering(Answer answer) : answer_(std::move(answer)), runs_(answer_.hangs) {}
    bool isRunning() override { return runs_; }
    int waitForExit() override { return answer_.status; }
    void terminate() override { end(SIGTERM); }
    void kill() override { end(SIGKILL); }
    void readToEnd(const OutputSink& output, const OutputSink& error) override {
      output(answer_.output);
      error(answer_.error);
    }
    void readUntilExit(const OutputSink& output, const OutputSink& error) override {
      readToEnd(output, error);
    }

   private:
    void end(int signal) {
      if (runs_) answer_.status = signal;
      runs_ = false;
    }

    Answer answer_;
    bool runs_;
  };

  const Answer* answerTo(const std::vector<std::string>& words) const {
    std::string command;
    for (const std::string& word : words) command += (command.empty() ? "" : " ") + word;
    const Answer* found = nullptr;
    std::size_t length = 0;
    for (const auto& [key, answer] : answers) {
      if (!command.starts_with(key) || key.size() < length) continue;
      found = &answer;
      length = key.size();
    }
    return found;
  }

  Platform platform_ = replacing({.processes = this, .clock = &clock});
};

}  // namespace quarn::doubles
