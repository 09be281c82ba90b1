#include "QuarnCore/installer/DiskImageMounter.h"

#include "Platform/CocoaError.h"
#include "Platform/PropertyList.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/installer/InstallerError.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::DiskImageMounter {
namespace {

using PropertyList::Array;
using PropertyList::Dictionary;
using PropertyList::Value;

constexpr const char* hdiutil = "/usr/bin/hdiutil";

template <class Kind>
const Kind* member(const Dictionary& dictionary, const std::string& key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? nullptr : found->second.as<Kind>();
}

/// Returns nothing at all unless every entry is a dictionary.
std::vector<const Dictionary*> systemEntities(const Value& root) {
  const auto* answer = root.as<Dictionary>();
  const auto* entries = answer ? member<Array>(*answer, "system-entities") : nullptr;
  if (!entries) return {};
  std::vector<const Dictionary*> entities;
  for (const Value& entry : *entries) {
    entities.push_back(entry.as<Dictionary>());
    if (!entities.back()) return {};
  }
  return entities;
}

}  // namespace

Result<DiskImageMount> parse(const Path& image, std::string_view propertyList) {
  const auto root = PropertyList::parse(propertyList);
  if (!root) return CocoaError::notPropertyList();
  DiskImageMount mount{.imagePath = image.text(), .mountPoints = {}, .devicePaths = {}};
  for (const Dictionary* entity : systemEntities(*root)) {
    if (const auto* text = member<std::string>(*entity, "mount-point")) mount.mountPoints.emplace_back(*text);
    if (const auto* text = member<std::string>(*entity, "dev-entry")) mount.devicePaths.push_back(*text);
  }
  return mount;
}

DiskImageMount attach(const ReadOnlyPlatform& platform, const Path& image) {
  const CommandResult result =
      CommandRunner::run(platform, hdiutil, {"attach", image.text(), "-plist", "-nobrowse", "-readonly"});
  if (!result.succeeded()) throw InstallerError::ofTool("hdiutil", result.status, result.standardError);
  return parse(image, result.standardOutput).orThrow();
}

void Attached::requireAttached() const {
  for (const Path& place : mount_.mountPoints) {
    if (!platform_.files.isFolder(place)) throw MoveRefused("The source is no longer there: " + place.text());
  }
}

void detach(const ReadOnlyPlatform& platform, const DiskImageMount& mount) {
  std::vector<std::string> targets;
  for (const Path& mountPoint : mount.mountPoints) targets.push_back(mountPoint.text());
  targets.insert(targets.end(), mount.devicePaths.begin(), mount.devicePaths.end());
  for (const std::string& target : targets) {
    if (CommandRunner::run(platform, hdiutil, {"detach", target, "-quiet"}).succeeded()) return;
  }
}

}  // namespace quarn::DiskImageMounter
