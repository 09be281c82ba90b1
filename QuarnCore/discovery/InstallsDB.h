#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Places.h"
#include "Platform/Platform.h"

namespace quarn {

/// Reads the installs database of `setup-ledger`. It belongs to that tool, so here it is optional, never
/// created, and every failure is silent.
namespace InstallsDB {
/// A row of the table `installs` that hasn't been uninstalled.
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
/// Returns the newest install that hasn't been uninstalled.
std::optional<Entry> entryForBundleId(const ReadOnlyPlatform& platform, const std::string& bundleId,
                                      const Path& database);
std::optional<Entry> entryForAppName(const ReadOnlyPlatform& platform, const std::string& appName,
                                     const Path& database);
/// Returns the files in the order of the rows, or nothing if the database or the table can't be read. If a
/// row can't be read, the files of the rows before it are returned: each of them is recorded.
std::vector<std::string> trackedFiles(const ReadOnlyPlatform& platform, const std::string& installId,
                                      const Path& database);
/// Returns those of the files at which there is nothing, or a link that leads to nothing. What can't be
/// looked at, as in a folder that is closed to the user, may be there.
std::vector<std::string> missing(const ReadOnlyPlatform& platform, const std::vector<std::string>& files);
}  // namespace InstallsDB

namespace InstallsDBEntryResolver {
/// Returns the ledger's entry of a moved application: by the bundle identifier of `target`, else by the name
/// of its link.
std::optional<InstallsDB::Entry> resolve(const ReadOnlyPlatform& platform, const Path& symlinkLocation,
                                         const Path& target);
}  // namespace InstallsDBEntryResolver

}  // namespace quarn
