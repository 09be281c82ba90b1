#pragma once

#include <map>

#include "Platform/Locks.h"

namespace quarn {

/// Locks folders with flock(2). The kernel releases such a lock when its descriptor is closed. Use it from
/// one thread only.
class FolderLocks : public Locks {
 public:
  Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) override;

  // Weak, so that this map doesn't keep a lock alive.
 private:
  std::map<std::string, std::weak_ptr<Lock>> held_;
};

}  // namespace quarn
