#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"

namespace quarn {

namespace RelatedFileScanner {
/// Returns what belongs to an application: the bundle, the copy to which it leads, files in the user's and in
/// the shared library, receipts and records of installations. It never searches: it makes the paths from the
/// identifier, the name and the slug of the application and looks whether each exists. Only the preferences
/// of single machines are found by the start of their names. An identifier, a name or a slug that can't be
/// the name of a file makes no path. Asks `pkgutil`, without a limit of time. Never throws: what can't be
/// looked at is absent. What must never be moved is no candidate (see `UninstallCandidateGuard`).
std::vector<UninstallCandidate> scan(const ReadOnlyPlatform& platform, const AppRecord& record);
}  // namespace RelatedFileScanner

namespace AppFootprintCalculator {
/// Returns the bytes of everything that `RelatedFileScanner` finds.
std::int64_t footprint(const ReadOnlyPlatform& platform, const AppRecord& record);
}  // namespace AppFootprintCalculator

}  // namespace quarn
