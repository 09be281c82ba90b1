#pragma once

#include <string>
#include <vector>

#include "QuarnCore/installer/InstallerKind.h"

namespace toml {
class Decoding;
}

namespace quarn {

/// A named policy for an installation: where things go, and what may be installed. The keys in its file are
/// the names of the fields.
struct InstallerOption {
  std::string id;     ///< what the user types on the command line and a session stores
  std::string label;  ///< the name for people; lists are sorted by it
  std::string strategy;
  std::vector<InstallerKind> sourceKinds;
  bool allowUntrustedPackages = false;
  bool allowUntrustedScripts = false;  ///< the only key that a file may leave out
  std::string externalRootName;        ///< the folder on the drive that receives "Apps"
  std::string applicationLinkRoot;     ///< the folder in which launchers are made; absolute
  bool track = false;
  bool relocateSafeApps =
      false;  ///< what a package or script installs into /Applications is moved to the drive

  bool operator==(const InstallerOption&) const = default;

  /// Throws `toml::TOMLError` if a key is missing or a value has the wrong type; an unknown kind of source
  /// counts as that. Ignores other keys.
  static InstallerOption decode(const toml::Decoding& from);
};

}  // namespace quarn
