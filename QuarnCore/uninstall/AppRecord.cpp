#include "QuarnCore/uninstall/AppRecord.h"

#include <utility>

#include "QuarnCore/discovery/AssociatedDataPaths.h"

namespace quarn {

std::int64_t AppRecord::displaySizeBytes() const {
  return footprintBytes > 0 ? footprintBytes : bundleSizeBytes;
}

int AppRecord::permissionCount() const {
  return int{hasLoginItems} + int{hasSystemExtension} + int{isMacAppStore};
}

AppIdentity AppRecord::identity() const {
  return {bundlePath, displayName, bundleIdentifier, executableName};
}

AppRecord AppRecord::withBundleSize(std::int64_t bytes) const {
  AppRecord changed = *this;
  changed.bundleSizeBytes = bytes;
  return changed;
}

AppRecord AppRecord::withFootprint(std::int64_t bytes) const {
  AppRecord changed = *this;
  changed.footprintBytes = bytes;
  return changed;
}

AppRecord AppRecord::withDisplayName(std::string name) const {
  AppRecord changed = *this;
  changed.displayName = std::move(name);
  return changed;
}

bool SupplementalInstall::matches(const Places& places, const AppRecord& record) {
  return matches(places, record.bundlePath);
}

std::string Slug::supplementalDisplayName(const AppRecord& record) {
  return derive(record.identity());
}

}  // namespace quarn
