#pragma once

#include <functional>
#include <memory>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// A lock that one process holds at a time. It is released when its last holder destroys it, and when the
/// process ends, however it ends.
class Lock {
 public:
  virtual ~Lock() = default;
};

class Locks {
 public:
  virtual ~Locks() = default;
  /// Locks an existing folder against other processes that lock it too. It doesn't stop anybody from working
  /// in the folder, and leaves nothing on the disk. If another process holds the lock, calls `waiting` once
  /// and then waits for as long as it takes. Locking a folder that this process has already locked returns
  /// the same lock. On a volume without such locks the lock that is returned keeps nobody out.
  virtual Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) = 0;
};

}  // namespace quarn
