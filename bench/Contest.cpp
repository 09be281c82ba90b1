#include "bench/Contest.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace bench {
namespace {

pid_t start(Command command, int output) {
  std::vector<char*> arguments;
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, output, 1);
  pid_t pid = 0;
  const int error = ::posix_spawnp(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    std::fprintf(stderr, "bench: can't start %s\n", arguments[0]);
    std::exit(1);
  }
  return pid;
}

/// Ends the program.
void failUnless(bool succeeded, const Command& command) {
  if (succeeded) return;
  std::fprintf(stderr, "bench: %s failed\n", command[0].c_str());
  std::exit(1);
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

template <class Field>
double medianOf(const std::vector<Timing>& timings, Field field) {
  std::vector<double> values;
  for (const Timing& timing : timings) values.push_back(timing.*field);
  return median(values);
}

Timing medians(const std::vector<Timing>& timings) {
  return {medianOf(timings, &Timing::wallSeconds), medianOf(timings, &Timing::processorSeconds),
          medianOf(timings, &Timing::peakMegabytes)};
}

}  // namespace

Timing timed(const Command& command) {
  static const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  const auto begin = std::chrono::steady_clock::now();
  const pid_t pid = start(command, nowhere);
  int status = 0;
  rusage usage{};
  ::wait4(pid, &status, 0, &usage);
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
  failUnless(status == 0, command);
  return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

Timing less(const Timing& run, const Timing& step) {
  return {run.wallSeconds - step.wallSeconds, run.processorSeconds - step.processorSeconds,
          run.peakMegabytes};
}

std::string outputOf(const Command& command) {
  int ends[2];
  failUnless(::pipe2(ends, O_CLOEXEC) == 0, command);
  const pid_t pid = start(command, ends[1]);
  ::close(ends[1]);
  std::string output;
  char buffer[4096];
  for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;) {
    output.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(ends[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  failUnless(status == 0, command);
  return output;
}

Outcome compete(const Contest& contest) {
  std::vector<Timing> subjects;
  std::vector<Timing> rivals;
  std::vector<double> ratios;
  for (int pair = 0; pair < contest.pairs; ++pair) {
    contest.beforeEach();
    rivals.push_back(contest.measure(contest.rival));
    contest.beforeEach();
    subjects.push_back(contest.measure(contest.subject));
    ratios.push_back(subjects.back().wallSeconds / rivals.back().wallSeconds);
  }
  return {median(ratios), medians(subjects), medians(rivals)};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace bench
