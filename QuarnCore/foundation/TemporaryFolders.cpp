#include "QuarnCore/foundation/TemporaryFolders.h"

#include <algorithm>

#include "Platform/UUID.h"
#include "QuarnCore/foundation/FileStash.h"

namespace quarn {

Path TemporaryFolders::make(const std::string& prefix) {
  const Path folder = platform_.places.temporaryFolder().appending(prefix + UUID::make());
  platform_.files.createFolder(folder).orThrow();
  return made_.emplace_back(folder);
}

bool TemporaryFolders::isOurs(const Path& folder) const {
  return std::find(made_.begin(), made_.end(), folder) != made_.end();
}

void TemporaryFolders::setAside(const Path& folder, const std::string& reason) {
  if (isOurs(folder)) FileStash::moveAside(platform_, folder, reason);
}

void TemporaryFolders::remove(const Path& folder) {
  if (isOurs(folder)) platform_.files.remove(folder).orIgnore();
}

}  // namespace quarn
