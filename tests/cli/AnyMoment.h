#pragma once

#include <chrono>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>

#include "tests/support/CampaignExtent.h"
#include "tests/support/Scene.h"

/// Ends runs from outside at random moments.
namespace anymoment {

using std::chrono::microseconds;

/// How often each end is tried.
inline int rounds() {
  return extent::count(2, 40);
}

/// Moments from the start of a run to well behind its end, the same ones in each test.
class Moments {
 public:
  explicit Moments(microseconds longest) : upTo_(0, static_cast<int>(longest.count())) {}
  microseconds next() { return microseconds(upTo_(random_)); }

 private:
  std::uniform_int_distribution<> upTo_;
  std::mt19937 random_{20'261'122};
};

/// A run that was ended, or came to its end before.
struct Ended {
  int status;
  std::string said;
  bool wasEnded;    ///< its status says nothing
  std::string how;  ///< for whoever reads a failure
};

/// Runs a command line, and sends it a signal.
inline Ended bySignal(const std::string& line, int number, microseconds moment) {
  // What an earlier run said stays if this one is ended before it begins.
  scene::write("/tmp/said", "");
  scene::Background run({"/bin/sh", "-c", "exec " + line + " >/tmp/said 2>&1"});
  std::this_thread::sleep_for(moment);
  ::kill(run.pid(), number);
  const int status = run.wait();
  EXPECT_TRUE(status == -number || status >= 0) << status;
  return {status, scene::read("/tmp/said"), status == -number,
          "signal " + std::to_string(number) + " after " + std::to_string(moment.count()) + " us"};
}

/// Runs a command line whose output goes to a pipe, and closes the pipe.
inline Ended byClosedPipe(const std::string& line, microseconds moment) {
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.6f", static_cast<double>(moment.count()) / 1e6);
  scene::shell("{ " + line + " 2>&1; echo $? >/tmp/status; } | sleep " + seconds);
  const int status = std::stoi(scene::read("/tmp/status"));
  EXPECT_TRUE(status == 0 || status == 1 || status == 128 + SIGPIPE) << status;
  return {status, "", true, std::string("a pipe closed after ") + seconds + " s"};
}

}  // namespace anymoment
