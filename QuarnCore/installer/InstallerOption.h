#pragma once

#include <string>
#include <vector>

#include "QuarnCore/installer/InstallerKind.h"

namespace toml {
class Decoding;
}

namespace quarn {

/// A named policy for an installation: where things go, and what may be installed at all. The keys of its
/// file are the names of the fields.
struct InstallerOption {
  std::string id;     ///< what a person names on the command line, and what a session remembers
  std::string label;  ///< the name for people; lists are sorted by it
  std::string strategy;
  std::vector<InstallerKind> sourceKinds;
  bool allowUntrustedPackages = false;
  bool allowUntrustedScripts = false;  ///< the only one that a file may leave out
  std::string externalRootName;        ///< the folder on the drive that receives "Apps"
  std::string applicationLinkRoot;     ///< the folder in which launchers are made; absolute
  bool track = false;
  bool relocateSafeApps = false;  ///< what a package or script puts into /Applications follows to the drive

  bool operator==(const InstallerOption&) const = default;

  /// Throws `toml::TOMLError` for a missing key or a value of the wrong type, an unknown kind of source among
  /// them. Keys of other names are passed over.
  static InstallerOption decode(const toml::Decoding& from);
};

}  // namespace quarn
