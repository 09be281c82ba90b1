#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Clock.h"
#include "Platform/Places.h"
#include "QuarnCore/foundation/AppIdentity.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// How an application is installed.
enum class AppRecordKind {
  normal,
  userApplications,  ///< in the user's own folder for applications
  symlink,           ///< the path is a link
  quarnLauncher,     ///< a launcher that this tool built
  externalTarget,    ///< the copy on a drive
  macAppStore,
  systemRisky,  ///< part of the system
};

template <>
inline constexpr auto rawValueRows<AppRecordKind> = std::to_array<RawValueRow<AppRecordKind>>({
    {AppRecordKind::normal, "normal"},
    {AppRecordKind::userApplications, "userApplications"},
    {AppRecordKind::symlink, "symlink"},
    {AppRecordKind::quarnLauncher, "quarnLauncher"},
    {AppRecordKind::externalTarget, "externalTarget"},
    {AppRecordKind::macAppStore, "macAppStore"},
    {AppRecordKind::systemRisky, "systemRisky"},
});

/// An installed application as uninstalling sees it. Sizes are in bytes, and 0 until somebody has measured.
struct AppRecord {
  std::string id;          ///< the same as `bundlePath`
  std::string bundlePath;  ///< as found; for a link, the path of the link
  std::string displayName;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;
  std::optional<std::string> executableName;
  /// What the bundle says of its makers, for people to read: cut to 80 characters, and perhaps empty.
  std::optional<std::string> developer;
  AppRecordKind kind = AppRecordKind::normal;
  bool isSymlink = false;
  std::optional<std::string> symlinkTarget;  ///< as it is stored in the link
  bool isMacAppStore = false;                ///< whatever the kind is
  bool hasLoginItems = false;
  bool hasSystemExtension = false;
  bool isQuarnLauncher = false;
  /// Where a link or a launcher leads, as they say it: perhaps to nothing, perhaps relative to a link's
  /// folder (see `ExternalTarget`).
  std::optional<std::string> externalTargetPath;
  std::optional<Moment> modifiedAt;
  std::int64_t bundleSizeBytes = 0;
  std::int64_t footprintBytes = 0;  ///< with everything that belongs to the application

  std::int64_t displaySizeBytes() const;
  /// Counts what the application was allowed to do beyond running: 0 to 3.
  int permissionCount() const;
  /// Returns what the names of its own files in the home folder are derived from.
  AppIdentity identity() const;
  AppRecord withBundleSize(std::int64_t bytes) const;
  AppRecord withFootprint(std::int64_t bytes) const;
  AppRecord withDisplayName(std::string name) const;

  bool operator==(const AppRecord&) const = default;
};

namespace SupplementalInstall {
/// Returns whether an application lies in a support folder instead of a folder for applications.
bool matches(const Places& places, const AppRecord& record);
}  // namespace SupplementalInstall

namespace Slug {
/// Returns the name of an application that lies in another one's support folder: its slug.
std::string supplementalDisplayName(const AppRecord& record);
}  // namespace Slug

}  // namespace quarn
