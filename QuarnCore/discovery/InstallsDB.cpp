#include "QuarnCore/discovery/InstallsDB.h"

#include <algorithm>
#include <iterator>

#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn {

namespace InstallsDB {
namespace {

std::unique_ptr<Database> open(const ReadOnlyPlatform& platform, const Path& database) {
  if (!isAvailable(platform, database)) return nullptr;
  return platform.databases.openForReading(database);
}

std::optional<Entry> entryOfRow(const Statement& row) {
  const auto installId = row.text(0);
  const auto appName = row.text(1);
  if (!installId || !appName) return std::nullopt;
  return Entry{.installId = *installId,
               .appName = *appName,
               .bundleId = row.text(2),
               .version = row.text(3),
               .installType = row.text(4).value_or(""),
               .confidence = row.text(5).value_or(""),
               .installedAt = row.text(6).value_or("")};
}

/// Returns the newest install that hasn't been uninstalled and whose `column` has this value.
std::optional<Entry> newestEntry(const ReadOnlyPlatform& platform, const std::string& column,
                                 const std::string& value, const Path& path) {
  const auto database = open(platform, path);
  if (!database) return std::nullopt;
  const auto statement = database->prepare(
      "SELECT install_id, app_name, bundle_id, version, install_type, confidence, installed_at\n"
      "FROM installs\n"
      "WHERE " +
      column +
      " = ? AND uninstalled_at IS NULL\n"
      "ORDER BY installed_at DESC LIMIT 1;");
  if (!statement) return std::nullopt;
  statement->bind(1, value);
  if (statement->step() != Statement::Step::row) return std::nullopt;
  return entryOfRow(*statement);
}

}  // namespace

Path defaultPath(const Places& places) {
  return places.home().appending(".claude/tools/setup-ledger/db/installs.db");
}

bool isAvailable(const ReadOnlyPlatform& platform, const Path& database) {
  return platform.files.exists(database);
}

std::optional<Entry> entryForBundleId(const ReadOnlyPlatform& platform, const std::string& bundleId,
                                      const Path& database) {
  return newestEntry(platform, "bundle_id", bundleId, database);
}

std::optional<Entry> entryForAppName(const ReadOnlyPlatform& platform, const std::string& appName,
                                     const Path& database) {
  return newestEntry(platform, "app_name", appName, database);
}

std::vector<std::string> trackedFiles(const ReadOnlyPlatform& platform, const std::string& installId,
                                      const Path& path) {
  std::vector<std::string> files;
  const auto database = open(platform, path);
  if (!database) return files;
  const auto statement = database->prepare("SELECT file_path FROM tracked_files WHERE install_id = ?;");
  if (!statement) return files;
  statement->bind(1, installId);
  while (statement->step() == Statement::Step::row) {
    if (auto file = statement->text(0)) files.push_back(*std::move(file));
  }
  return files;
}

std::vector<std::string> missing(const ReadOnlyPlatform& platform, const std::vector<std::string>& files) {
  std::vector<std::string> missing;
  std::copy_if(files.begin(), files.end(), std::back_inserter(missing),
               [&platform](const std::string& file) { return !mayExist(platform.files, Path(file)); });
  return missing;
}
}  // namespace InstallsDB

namespace InstallsDBEntryResolver {
std::optional<InstallsDB::Entry> resolve(const ReadOnlyPlatform& platform, const Path& symlinkLocation,
                                         const Path& target) {
  const Path database = InstallsDB::defaultPath(platform.places);
  if (const auto identifier = BundleIdentifierReader::read(platform, target)) {
    if (auto entry = InstallsDB::entryForBundleId(platform, *identifier, database)) return entry;
  }
  return InstallsDB::entryForAppName(platform, symlinkLocation.lastComponent(), database);
}
}  // namespace InstallsDBEntryResolver

}  // namespace quarn
