#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <sys/types.h>

#include "Platform/Processes.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

class PosixChild : public Child {
 public:
  /// The reading ends of the pipes are not open where the tool writes to our streams.
  PosixChild(pid_t process, Descriptor output, Descriptor error);
  ~PosixChild() override;

  bool isRunning() override;
  int waitForExit() override;
  void terminate() override;
  void kill() override;
  void readToEnd(const OutputSink& output, const OutputSink& error) override;
  void readUntilExit(const OutputSink& output, const OutputSink& error) override;

 private:
  /// Whether it has ended, and then collects it, so that no zombie stays. Needs the lock.
  bool collect();
  void signal(int number);

  const pid_t process_;
  Descriptor output_;
  Descriptor error_;
  // Guards the collecting: afterwards the number may belong to another process.
  std::mutex lock_;
  std::optional<int> status_;
};

}  // namespace quarn
