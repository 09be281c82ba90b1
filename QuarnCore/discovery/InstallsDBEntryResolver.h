#pragma once

#include <optional>

#include "QuarnCore/discovery/InstallsDB.h"

namespace quarn::InstallsDBEntryResolver {

/// The ledger's entry of a moved application: by the bundle identifier of `target`, else by the name
/// under which its link stands.
std::optional<InstallsDB::Entry> resolve(const ReadOnlyPlatform& platform, const Path& symlinkLocation,
                                         const Path& target);

}  // namespace quarn::InstallsDBEntryResolver
