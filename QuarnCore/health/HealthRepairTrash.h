#pragma once

#include <functional>
#include <map>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthReport.h"

namespace quarn {

/// Takes to the Trash what a report found. It remembers which items these were: whatever stands at one of the
/// paths by then, because another drive or another program put it there, stays. Nor does it take what belongs
/// where it is, such as a home folder that a record or a link names.
class HealthRepairTrash {
 public:
  HealthRepairTrash(Platform& platform, const HealthReport& report,
                    std::function<void(const std::string& line)> say);

  /// Moves an item to the user's Trash, and returns whether it is there. If that fails, says so.
  bool trash(const Path& item) const;

 private:
  void requireFound(const Path& item) const;

  Platform& platform_;
  std::function<void(const std::string& line)> say_;
  std::map<std::string, FileIdentity> found_;  ///< by path
};

}  // namespace quarn
