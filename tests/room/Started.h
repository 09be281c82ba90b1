#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "Platform/posix/Descriptor.h"

namespace quarn::tests {

struct Finished {
  int status = -1;  // 128 + n for signal n
  std::string out, err;
};

/// A child process whose two outputs are gathered.
class Started {
 public:
  /// `before` runs in the child just before it becomes the program; the first word is an absolute path.
  explicit Started(
      const std::vector<std::string>& words, const std::function<void()>& before = [] {});

  pid_t pid() const { return pid_; }

  /// Waits until the standard output contains `text` or ends.
  void waitForOutput(const std::string& text);

  Finished finish();

 private:
  pid_t pid_ = -1;
  Descriptor out_, err_;
  Finished finished_;
};

inline Finished run(
    const std::vector<std::string>& words, const std::function<void()>& before = [] {}) {
  return Started(words, before).finish();
}

}  // namespace quarn::tests
