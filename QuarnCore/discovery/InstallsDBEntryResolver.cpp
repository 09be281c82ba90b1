#include "QuarnCore/discovery/InstallsDBEntryResolver.h"

#include "QuarnCore/discovery/BundleIdentifierReader.h"

namespace quarn::InstallsDBEntryResolver {

std::optional<InstallsDB::Entry> resolve(const ReadOnlyPlatform& platform, const Path& symlinkLocation,
                                         const Path& target) {
  const Path database = InstallsDB::defaultPath(platform.places);
  if (const auto identifier = BundleIdentifierReader::read(platform, target)) {
    if (auto entry = InstallsDB::entryForBundleId(platform, *identifier, database)) return entry;
  }
  return InstallsDB::entryForAppName(platform, symlinkLocation.lastComponent(), database);
}

}  // namespace quarn::InstallsDBEntryResolver
