#include "QuarnCore/foundation/Sighting.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/Text.h"

namespace quarn {
namespace {

using Failure = std::optional<PlatformError>;

Failure failureOf(const FileSystem& files, const Path& item) {
  const auto attributes = files.attributes(item);
  if (!attributes) return CocoaError::saysMissing(attributes.error()) ? Failure() : attributes.error();
  // A link that leads to nothing is no failure; one that leads to what can't be looked at is.
  const auto real = files.realPath(item);
  return real || CocoaError::saysMissing(real.error()) ? Failure() : real.error();
}

/// Returns the path itself, or the nearest folder around it that exists.
Path nearestThatExists(const FileSystem& files, const Path& path, Failure& failure) {
  Path current = path;
  for (; !files.exists(current) && current.parent() != current; current = current.parent()) {
    const auto why = failureOf(files, current);
    if (why && !failure) failure = why;
    // Nothing lies below a link that leads nowhere, and that isn't always reported as missing (ELOOP,
    // lstat(2)).
    if (!why && files.isSymbolicLink(current)) failure.reset();
  }
  // Nor below a file (ENOTDIR).
  if (current != path && !files.isFolder(current)) failure.reset();
  return current;
}

std::vector<FileIdentity> identitiesUpFrom(const FileSystem& files, const Path& resolved, Failure& failure) {
  std::vector<FileIdentity> identities;
  for (Path current = resolved;; current = current.parent()) {
    const auto attributes = files.attributes(current);
    if (attributes) {
      identities.push_back(attributes->identity);
    } else {
      if (!failure) failure = attributes.error();
    }
    if (current.parent() == current) return identities;
  }
}

Failure named(Failure failure, const Path& item) {
  if (failure)
    failure->description = "“" + item.lastComponent() + "” can’t be looked at: " + failure->description;
  return failure;
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

Sighting Sighting::orThrow() && {
  if (failure) throw *std::move(failure);
  return std::move(*this);
}

bool leadsInto(const FileSystem& files, const Path& item, const Path& folder) {
  return isAtOrInByText(sight(files, item).orThrow().leadsTo, sight(files, folder).orThrow().leadsTo);
}

Sighting sight(const FileSystem& files, const Path& item) {
  const Path spelled = files.standardized(item);
  Failure failure;
  const Path existing = nearestThatExists(files, spelled, failure);
  const auto real = files.realPath(existing);
  if (!real && !failure) failure = real.error();
  const Path resolved = real ? *real : existing;
  auto identities = identitiesUpFrom(files, resolved, failure);
  return {.spelled = spelled,
          .leadsTo = resolved.appending(spelled.text().substr(existing.text().size())),
          .isLink = files.isSymbolicLink(spelled),
          .exists = existing == spelled,
          .identities = std::move(identities),
          .failure = named(std::move(failure), spelled)};
}

bool mayExist(const FileSystem& files, const Path& item) {
  if (files.exists(item)) return true;
  // No item has such a path, and around one that isn't absolute there are no folders to look at.
  if (item.holdsNul() || !item.isAbsolute()) return false;
  // A look that failed just now may not fail any more.
  return sight(files, item).failure || files.exists(item);
}

Sighting sightItself(const FileSystem& files, const Path& item) {
  const Path spelled = files.standardized(item);
  if (!files.isSymbolicLink(spelled)) return sight(files, item);
  const Sighting folder = sight(files, spelled.parent());
  return {.spelled = spelled,
          .leadsTo = folder.leadsTo.appending(spelled.lastComponent()),
          .isLink = true,
          .exists = false,
          .identities = folder.identities,
          .failure = folder.failure};
}

Sighting unseen(const Path& standardized) {
  return {.spelled = standardized,
          .leadsTo = standardized,
          .isLink = false,
          .exists = false,
          .identities = {},
          .failure = {}};
}

}  // namespace quarn
