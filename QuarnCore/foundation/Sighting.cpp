#include "QuarnCore/foundation/Sighting.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/Text.h"

namespace quarn {
namespace {

using Failure = std::optional<PlatformError>;

/// Whether an item exists, and nothing if it can't be known. A link that leads to nothing doesn't exist; of
/// one that leads to what can't be looked at that isn't known.
Result<bool> isThere(const FileSystem& files, const Path& item) {
  if (const auto attributes = files.attributes(item); !attributes)
    return CocoaError::saysMissing(attributes.error()) ? Result(false) : attributes.error();
  const auto real = files.realPath(item);
  if (real) return true;
  // That isn't always reported as missing for what is below such a link (ELOOP, lstat(2)).
  return CocoaError::saysMissing(real.error()) ? Result(false) : real.error();
}

/// Returns the folder that is `levels` above a path, or the topmost one.
Path ancestor(const Path& path, std::size_t levels) {
  std::string_view text = path.text();
  for (; levels > 0; --levels) {
    const auto slash = text.rfind('/');
    if (slash == std::string_view::npos) return {};
    if (slash == 0) return Path("/");
    text = text.substr(0, slash);
  }
  return Path(text);
}

/// Returns the path, or a folder around it that exists. The steps grow: a path from somebody's record can
/// have millions of components, and each look reads all of it.
Path startOf(const FileSystem& files, const Path& path) {
  Path current = path;
  for (std::size_t levels = 1; !files.exists(current) && current.parent() != current; levels *= 2)
    current = ancestor(current, levels);
  return current;
}

/// Returns the item of a folder on the way to a path below it.
Path stepTowards(const Path& path, const Path& folder) {
  const std::string& text = path.text();
  const auto from = folder.text().size() + (folder.text().ends_with('/') || folder.text().empty() ? 0 : 1);
  return Path(std::string_view(text).substr(0, text.find('/', from)));
}

bool isCertainlyNoFolder(const FileSystem& files, const Path& item) {
  const auto real = files.realPath(item);
  if (!real) return false;
  const auto attributes = files.attributes(*real);
  return attributes && attributes->kind != FileKind::folder;
}

/// Returns the path itself, or the nearest folder around it that exists.
Path nearestThatExists(const FileSystem& files, const Path& path, Failure& failure) {
  Path current = startOf(files, path);
  while (current != path) {
    Path next = stepTowards(path, current);
    const auto found = isThere(files, next);
    // Nothing lies below a file (ENOTDIR).
    if (!found && !isCertainlyNoFolder(files, current)) {
      const auto whole = isThere(files, path);
      failure = whole ? found.error() : whole.error();
    }
    if (!found || !*found) return current;
    current = std::move(next);
  }
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
