#include "QuarnCore/installer/InstallerKind.h"

namespace quarn::InstallerKinds {

std::string_view rawValue(InstallerKind kind) {
  switch (kind) {
    case InstallerKind::app:
      return "app";
    case InstallerKind::dmg:
      return "dmg";
    case InstallerKind::zip:
      return "zip";
    case InstallerKind::pkg:
      return "pkg";
    case InstallerKind::mpkg:
      return "mpkg";
    case InstallerKind::script:
      return "script";
    case InstallerKind::unknown:
      break;
  }
  return "unknown";
}

std::optional<InstallerKind> fromRawValue(std::string_view text) {
  for (const InstallerKind kind : all) {
    if (rawValue(kind) == text) return kind;
  }
  return std::nullopt;
}

}  // namespace quarn::InstallerKinds
