#pragma once

#include <map>

#include "Platform/Locks.h"

namespace quarn {

/// Locks by `flock`, which the kernel gives back with the descriptor. For one thread.
class FolderLocks : public Locks {
 public:
  Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) override;

 private:
  std::map<std::string, std::weak_ptr<Lock>> held_;
};

}  // namespace quarn
