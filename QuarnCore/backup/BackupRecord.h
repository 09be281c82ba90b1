#pragma once

#include <cstdint>
#include <string>

#include "Platform/Clock.h"

namespace quarn {

/// The record of one backup. Links count as what they lead to, and folders don't count.
struct BackupRecord {
  std::string id;        ///< when it was made, in local time; also the name of its folder
  std::string rootPath;  ///< its folder
  Moment createdAt{};
  std::int64_t sourceFileCount = 0;  ///< in the sources, when they were copied
  std::int64_t backupFileCount =
      0;  ///< in the copies; less if an item was set aside, or a link leads to a name that has changed

  bool operator==(const BackupRecord&) const = default;
};

}  // namespace quarn
