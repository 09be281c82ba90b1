#include "QuarnCore/plugins/PluginOnlyCopy.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/plugins/PluginTools.h"

namespace quarn::PluginOnlyCopy {
namespace {

/// An item that can't be looked at may be anything.
bool mayBe(const ReadOnlyPlatform& platform, const Path& source, const FileIdentity& identity) {
  const auto attributes = platform.files.attributes(source.appending("."));
  if (!attributes) return !CocoaError::saysMissing(attributes.error());
  return attributes->identity == identity;
}

bool isDisplaced(const ReadOnlyPlatform& platform, const PluginBundle& bundle,
                 const std::vector<PluginBundle>& bundles) {
  const auto native = platform.files.attributes(bundle.systemSymlinkPath());
  if (!native) return bundles.size() > 1 && !CocoaError::saysMissing(native.error());
  if (native->kind != FileKind::folder || mayBe(platform, Path(bundle.sourcePath), native->identity))
    return false;
  return std::any_of(bundles.begin(), bundles.end(), [&](const PluginBundle& other) {
    return other.id() != bundle.id() && mayBe(platform, Path(other.sourcePath), native->identity);
  });
}

bool isInSystemFolder(const ReadOnlyPlatform& platform, const Path& source) {
  const auto& rows = checkedRows<PluginFormat>();
  return std::any_of(rows.begin(), rows.end(), [&](const PluginFormatRow& row) {
    const Path folder(row.systemDirectory);
    return leadsInto(platform.files, source, folder) || leadsInto(platform.files, source.parent(), folder);
  });
}

bool leadsElsewhere(const ReadOnlyPlatform& platform, const Path& link, const Path& copy) {
  if (!PluginTools::isAnythingAt(platform, link)) return false;
  const auto target = platform.files.attributes(link.appending("."));
  if (!target && target.error().code != CocoaErrorCode::fileReadNoSuchFile) throw target.error();
  return !target || target->identity != platform.files.attributes(copy.appending(".")).orThrow().identity;
}

}  // namespace

std::vector<bool> displaced(const ReadOnlyPlatform& platform, const std::vector<PluginBundle>& bundles) {
  std::vector<bool> found;
  for (const PluginBundle& bundle : bundles) found.push_back(isDisplaced(platform, bundle, bundles));
  return found;
}

MoveRefused refusal(const Path& kept, const Path& source) {
  return MoveRefused("“" + kept.text() + "” may be the only copy of what it holds, and isn’t replaced by “" +
                     source.text() + "”.");
}

void requireSafe(const ReadOnlyPlatform& platform, const PluginPlaces& places) {
  if (platform.files.attributes(places.external).orThrow().kind != FileKind::folder) return;
  if (!isInSystemFolder(platform, places.source)) return;
  if (PluginGuard::isSourceAtLink(platform, places)) return;
  if (leadsElsewhere(platform, places.link, places.external)) return;
  throw refusal(places.external, places.source);
}

}  // namespace quarn::PluginOnlyCopy
