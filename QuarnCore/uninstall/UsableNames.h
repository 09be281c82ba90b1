#pragma once

#include <optional>
#include <string>

#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn {

/// The words of an application by which its files are found, each only if it can be the name of a file. A
/// property list may say anything.
struct UsableNames {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> displayName;
  std::optional<std::string> slug;  ///< absent, too, if files of that name belong to another program

  static UsableNames of(const AppRecord& record);
};

}  // namespace quarn
