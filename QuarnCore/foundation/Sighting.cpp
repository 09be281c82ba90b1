#include "QuarnCore/foundation/Sighting.h"

#include <algorithm>

#include "Platform/Text.h"

namespace quarn {
namespace {

/// Returns the path itself, or the nearest folder around it that exists.
Path nearestThatExists(const FileSystem& files, const Path& path) {
  Path current = path;
  while (!files.exists(current) && current.parent() != current) current = current.parent();
  return current;
}

std::vector<FileIdentity> identitiesUpFrom(const FileSystem& files, const Path& resolved) {
  std::vector<FileIdentity> identities;
  for (Path current = resolved;; current = current.parent()) {
    if (const auto attributes = files.attributes(current)) identities.push_back(attributes->identity);
    if (current.parent() == current) return identities;
  }
}

}  // namespace

bool isAtOrInByText(const Path& item, const Path& folder) {
  if (Text::equal(item.text(), folder.text())) return true;
  return Text::hasPrefix(item.text(), folder.text() == "/" ? "/" : folder.text() + "/");
}

bool isInsideAnyByText(const Path& item, const std::vector<Path>& folders) {
  return std::any_of(folders.begin(), folders.end(), [&item](const Path& folder) {
    return isAtOrInByText(item, folder) && !Text::equal(item.text(), folder.text());
  });
}

bool Sighting::isAtOrIn(const Sighting& folder) const {
  if (isAtOrInByText(spelled, folder.spelled) || isAtOrInByText(leadsTo, folder.leadsTo)) return true;
  // Two different paths of one folder have the same identity. The folders around the item are compared too,
  // which finds an item anywhere inside.
  return folder.exists && !folder.identities.empty() &&
         std::find(identities.begin(), identities.end(), folder.identities.front()) != identities.end();
}

Sighting sight(const FileSystem& files, const Path& item) {
  const Path spelled = files.standardized(item);
  const Path existing = nearestThatExists(files, spelled);
  const Path resolved = files.resolvingLinks(existing);
  return {.spelled = spelled,
          .leadsTo = resolved.appending(spelled.text().substr(existing.text().size())),
          .isLink = files.isSymbolicLink(spelled),
          .exists = existing == spelled,
          .identities = identitiesUpFrom(files, resolved)};
}

Sighting sightItself(const FileSystem& files, const Path& item) {
  const Path spelled = files.standardized(item);
  if (!files.isSymbolicLink(spelled)) return sight(files, item);
  const Sighting folder = sight(files, spelled.parent());
  return {.spelled = spelled,
          .leadsTo = folder.leadsTo.appending(spelled.lastComponent()),
          .isLink = true,
          .exists = false,
          .identities = folder.identities};
}

Sighting unseen(const Path& standardized) {
  return {
      .spelled = standardized, .leadsTo = standardized, .isLink = false, .exists = false, .identities = {}};
}

}  // namespace quarn
