#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QuarnCore/installer/InstallerKind.h"
#include "QuarnCore/trust/TrustSummary.h"

namespace quarn {

/// Something in a source that can be installed by itself.
struct InstallableItem {
  std::string id;  ///< the same text as `path`
  InstallerKind kind = InstallerKind::unknown;
  std::string path;   ///< absolute; in an image or an archive, where it was while that was open
  std::string label;  ///< the last component of the path
  std::int64_t sizeBytes = 0;
  bool operator==(const InstallableItem&) const = default;
};

/// What a source is, and what it offers.
struct InstallerInspection {
  std::string sourcePath;  ///< as it was given
  InstallerKind kind = InstallerKind::unknown;
  std::vector<InstallableItem> items;
  std::vector<std::string> warnings;  ///< sentences for people
  TrustSummary trust;
  bool operator==(const InstallerInspection&) const = default;
};

}  // namespace quarn
