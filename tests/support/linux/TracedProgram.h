#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/ptrace.h>
#include <vector>

namespace scene {

using CallStop = __ptrace_syscall_info;

/// A child that is stopped where it enters a system call and where it comes back from it. Its first
/// thread alone: neither the other threads nor the tools that it starts. It is killed when this goes.
class TracedProgram {
 public:
  /// A program run as an ordinary person.
  explicit TracedProgram(const std::vector<std::string>& command);
  /// A child that does no more than the body, with the rights of the test.
  explicit TracedProgram(const std::function<void()>& body);
  ~TracedProgram();
  TracedProgram(const TracedProgram&) = delete;
  TracedProgram& operator=(const TracedProgram&) = delete;

  /// Lets it go on to the next stop. Nothing once it has ended, or where it can't be followed.
  std::optional<CallStop> next();
  void kill();
  /// Lets the call that it has just entered not be carried out and answer with an error. False where that
  /// can't be done.
  bool refuse(int errorNumber);
  /// What it has printed on both streams so far.
  std::string said() const;
  /// Whether a path, as `pathOf` gives it, is where it prints.
  static bool isOutput(const std::string& path);
  /// Its exit status, or minus the number of the signal that ended it. Nothing while it hasn't ended.
  std::optional<int> status() const { return status_; }

  // What an argument of a call means, while the child is stopped.

  std::string textAt(std::uint64_t address) const;
  std::optional<std::uint64_t> numberAt(std::uint64_t address) const;
  /// What a descriptor leads to; AT_FDCWD is the current folder.
  std::string pathOf(int descriptor) const;

 private:
  int output_;  ///< a file in memory that stands for both streams
  pid_t process_ = -1;
  std::optional<int> status_;

  int wait();
};

}  // namespace scene
