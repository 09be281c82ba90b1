#pragma once

#include <functional>
#include <memory>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// Held by one process at a time. Given back when the last holder lets it go, and when the process ends,
/// however it ends.
class Lock {
 public:
  virtual ~Lock() = default;
};

class Locks {
 public:
  virtual ~Locks() = default;
  /// Locks a folder, which must exist, against other processes that do the same; who merely works in it
  /// isn't hindered, and nothing is left on the disk. While another process holds it, this waits, for as
  /// long as it takes, and calls `waiting` once before. A folder that this process has locked already gives
  /// the same lock. A volume that knows no such locks gives one that keeps nobody out.
  virtual Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) = 0;
};

}  // namespace quarn
