#include "QuarnCore/move/InstallsDBWriter.h"

#include "Platform/DateText.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/InstallsDB.h"

namespace quarn::InstallsDBWriter {
namespace {

using Parameters = std::vector<std::optional<std::string>>;

std::unique_ptr<Database> open(Platform& platform, const Path& database) {
  if (!InstallsDB::isAvailable(platform, database)) return nullptr;
  return platform.databases.openForWriting(database);
}

/// Returns true if the statement was completed.
bool execute(Database& database, const std::string& sql, const Parameters& parameters) {
  const auto statement = database.prepare(sql);
  if (!statement) return false;
  int position = 0;
  for (const auto& parameter : parameters) statement->bind(++position, parameter);
  return statement->step() == Statement::Step::done;
}

std::string notes(const Move& move) {
  return "moved by Quarn; symlink at " + move.source.text() + " -> " + move.destination.text() + "; " +
         std::to_string(move.sizeBytes) + " bytes";
}

bool insertInstall(const ReadOnlyPlatform& platform, Database& database, const std::string& installId,
                   const Move& move) {
  return execute(database,
                 "INSERT INTO installs (install_id, app_name, bundle_id, version, source_file, source_hash,\n"
                 "                      install_type, confidence, uninstall_strategy, installed_at, "
                 "uninstalled_at, notes)\n"
                 "VALUES (?, ?, ?, ?, ?, NULL, 'app_move', 'high', 'restore_via_quarn', ?, NULL, ?);",
                 {installId, move.source.lastComponent(), move.bundleId, move.version,
                  move.destination.text(), DateText::iso8601(platform.clock.now()), notes(move)});
}

}  // namespace

void recordMove(Platform& platform, const Move& move, const Path& path) {
  const auto database = open(platform, path);
  if (!database) return;
  const std::string installId = "quarn-" + UUID::make();
  if (!insertInstall(platform, *database, installId, move)) return;
  for (const std::string& file : move.trackedFiles) {
    execute(*database,
            "INSERT INTO tracked_files (install_id, file_path, file_type, confidence) "
            "VALUES (?, ?, 'app_move', 'high');",
            {installId, file});
  }
}

void recordRestore(Platform& platform, const Path& source, const Path& path) {
  const auto database = open(platform, path);
  if (!database) return;
  execute(*database,
          "UPDATE installs SET uninstalled_at = ?\n"
          "WHERE install_id IN (\n"
          "    SELECT install_id FROM installs\n"
          "    WHERE install_type = 'app_move' AND app_name = ? AND uninstalled_at IS NULL\n"
          "    ORDER BY installed_at DESC LIMIT 1\n"
          ");",
          {DateText::iso8601(platform.clock.now()), source.lastComponent()});
}

int forgetMissingTrackedFiles(Platform& platform, const std::string& installId, const Path& path) {
  const auto database = open(platform, path);
  if (!database) return 0;
  int deleted = 0;
  for (const std::string& file :
       InstallsDB::missing(platform, InstallsDB::trackedFiles(platform, installId, path))) {
    if (execute(*database, "DELETE FROM tracked_files WHERE install_id = ? AND file_path = ?;",
                {installId, file})) {
      deleted += database->changes();
    }
  }
  return deleted;
}

}  // namespace quarn::InstallsDBWriter
