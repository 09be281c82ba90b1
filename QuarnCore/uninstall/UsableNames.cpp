#include "QuarnCore/uninstall/UsableNames.h"

#include "QuarnCore/discovery/SlugDataPaths.h"
#include "QuarnCore/foundation/EntryName.h"

namespace quarn {
namespace {

std::optional<std::string> ifName(const std::optional<std::string>& text) {
  return text && EntryName::isOne(*text) ? text : std::nullopt;
}

}  // namespace

UsableNames UsableNames::of(const AppRecord& record) {
  const AppIdentity identity = record.identity();
  UsableNames names{.bundleIdentifier = ifName(record.bundleIdentifier),
                    .displayName = ifName(record.displayName),
                    .slug = std::nullopt};
  if (SlugDataEligibility::includesDotfileAndNodeCaches(identity))
    names.slug = ifName(Slug::derive(identity));
  return names;
}

}  // namespace quarn
