#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::doubles {

/// Starts nothing: answers every tool as a process list that the test wrote.
class FakePs : public Processes {
 public:
  explicit FakePs(std::string list) : all(std::move(list)) {}

  Result<std::unique_ptr<Child>> start(const Path& executable, const std::vector<std::string>& arguments,
                                       OutputStreams) override {
    calls.push_back({executable.text()});
    calls.back().insert(calls.back().end(), arguments.begin(), arguments.end());
    if (!startable) return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileNoSuchFile, "no such tool");
    const bool isAboutAll = !arguments.empty() && arguments[0] == "-axo";
    return std::unique_ptr<Child>(std::make_unique<Written>(isAboutAll ? all : numbered, status));
  }
  std::vector<int> lineage() const override { return ancestors; }

  std::string all;             ///< of every process
  std::string numbered;        ///< when asked for certain processes
  std::vector<int> ancestors;  ///< this process first
  bool startable = true;
  int status = 0;
  std::vector<std::vector<std::string>> calls;

 private:
  class Written : public Child {
   public:
    Written(std::string text, int status) : text_(std::move(text)), status_(status) {}
    bool isRunning() override { return false; }
    int waitForExit() override { return status_; }
    void terminate() override {}
    void kill() override {}
    void readToEnd(const OutputSink& output, const OutputSink&) override { output(text_); }
    void readUntilExit(const OutputSink& output, const OutputSink&) override { output(text_); }

   private:
    std::string text_;
    int status_;
  };
};

}  // namespace quarn::doubles
