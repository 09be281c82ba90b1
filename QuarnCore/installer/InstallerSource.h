#pragma once

#include <string>

#include "Platform/PathText.h"

namespace quarn {

/// What is to be installed.
struct InstallerSource {
  std::string given;  ///< the path as it was given, which reports and sessions repeat
  Path path;          ///< absolute

  /// A relative path starts at the current folder.
  static InstallerSource of(const Places& places, const std::string& given) {
    return {given, PathText::fileURL(places, given)};
  }
};

}  // namespace quarn
