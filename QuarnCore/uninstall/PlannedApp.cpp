#include "QuarnCore/uninstall/PlannedApp.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/uninstall/AppRecordBuilder.h"

namespace quarn::PlannedApp {
namespace {

std::optional<std::string> ifTheDiskFails(const PlatformError& error) {
  if (error.code != CocoaErrorCode::fileReadUnknown) return std::nullopt;
  return error.localizedDescription();
}

/// Returns why a file can't be read, or even be looked at, as on a failing disk. A file that nobody may read,
/// or a folder in its place, says nothing, now as well as when the plan was made.
std::optional<std::string> failureOf(const ReadOnlyPlatform& platform, const Path& file) {
  const Sighting place = sight(platform.files, file);
  if (place.failure) return ifTheDiskFails(*place.failure);
  if (!place.exists) return std::nullopt;
  const auto attributes = platform.files.attributes(place.leadsTo);
  if (!attributes) return ifTheDiskFails(attributes.error());
  if (attributes->kind != FileKind::regular) return std::nullopt;
  const auto bytes = platform.files.read(file);
  return bytes ? std::nullopt : ifTheDiskFails(bytes.error());
}

/// Sizes and times may change, and a front end may measure.
bool tellTheSame(const AppRecord& one, const AppRecord& other) {
  return one.displayName == other.displayName && one.bundleIdentifier == other.bundleIdentifier &&
         one.executableName == other.executableName && one.kind == other.kind &&
         one.externalTargetPath == other.externalTargetPath;
}

}  // namespace

std::optional<std::string> reasonToDoubt(const ReadOnlyPlatform& platform, const AppRecord& planned) {
  const Path bundle(planned.bundlePath);
  const Path propertyList = bundle.appending("Contents/Info.plist");
  // Where the names can't be read, that of the folder takes their place, and finds what belongs to others.
  if (auto why = failureOf(platform, propertyList)) return why;
  if (auto why = failureOf(platform, LauncherShim::targetFile(bundle))) return why;
  // A link leads to nothing when its drive was pulled out, and what was planned by it is still right.
  if (!platform.files.exists(propertyList)) return std::nullopt;
  if (tellTheSame(AppRecordBuilder::build(platform, bundle), planned)) return std::nullopt;
  return "“" + bundle.lastComponent() + "” isn’t the application that was looked at.";
}

}  // namespace quarn::PlannedApp
