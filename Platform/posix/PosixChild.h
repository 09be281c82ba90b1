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
  /// The reading ends aren't open if the tool writes to our own streams.
  PosixChild(pid_t process, Descriptor output, Descriptor error);
  ~PosixChild() override;

  bool isRunning() override;
  int waitForExit() override;
  void terminate() override;
  void kill() override;
  void readToEnd(const OutputSink& output, const OutputSink& error) override;
  void readUntilExit(const OutputSink& output, const OutputSink& error) override;

 private:
  /// Returns whether the process has ended and, if so, collects its status, so that no zombie stays behind.
  /// The caller must hold the lock.
  bool collect();
  void signal(int number);

  const pid_t process_;
  Descriptor output_;
  Descriptor error_;
  // Guards collecting the status: from then on another process may have the same identifier.
  std::mutex lock_;
  std::optional<int> status_;
};

}  // namespace quarn
