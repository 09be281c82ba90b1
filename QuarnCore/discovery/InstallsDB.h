#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Places.h"
#include "Platform/Platform.h"

namespace quarn {

/// The installs database of `setup-ledger`, in which this tool is a guest: optional, never created, and
/// silent in every failure. This is the reading side.
namespace InstallsDB {
/// A live row of the table `installs`.
struct Entry {
  std::string installId;
  std::string appName;
  std::optional<std::string> bundleId;
  std::optional<std::string> version;
  std::string installType;  ///< empty for NULL, as are the next two
  std::string confidence;
  std::string installedAt;
  bool operator==(const Entry&) const = default;
};

Path defaultPath(const Places& places);

bool isAvailable(const ReadOnlyPlatform& platform, const Path& database);
/// The newest install that has not been uninstalled.
std::optional<Entry> entryForBundleId(const ReadOnlyPlatform& platform, const std::string& bundleId,
                                      const Path& database);
std::optional<Entry> entryForAppName(const ReadOnlyPlatform& platform, const std::string& appName,
                                     const Path& database);
/// In the order of the rows; empty if the database or the table can't be read.
std::vector<std::string> trackedFiles(const ReadOnlyPlatform& platform, const std::string& installId,
                                      const Path& database);
}  // namespace InstallsDB

namespace InstallsDBEntryResolver {
/// The ledger's entry of a moved application: by the bundle identifier of `target`, else by the name
/// under which its link stands.
std::optional<InstallsDB::Entry> resolve(const ReadOnlyPlatform& platform, const Path& symlinkLocation,
                                         const Path& target);
}  // namespace InstallsDBEntryResolver

}  // namespace quarn
