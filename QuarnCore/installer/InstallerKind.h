#pragma once

#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// The kinds of source that can be installed from.
enum class InstallerKind { app, dmg, zip, pkg, mpkg, script, unknown };

template <>
inline constexpr auto rawValueRows<InstallerKind> = std::to_array<RawValueRow<InstallerKind>>({
    {InstallerKind::app, "app"},
    {InstallerKind::dmg, "dmg"},
    {InstallerKind::zip, "zip"},
    {InstallerKind::pkg, "pkg"},
    {InstallerKind::mpkg, "mpkg"},
    {InstallerKind::script, "script"},
    {InstallerKind::unknown, "unknown"},
});

namespace InstallerKinds {

inline std::optional<InstallerKind> fromRawValue(std::string_view text) {
  return quarn::fromRawValue<InstallerKind>(text);
}

}  // namespace InstallerKinds
}  // namespace quarn
