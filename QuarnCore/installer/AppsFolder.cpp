#include "QuarnCore/installer/AppsFolder.h"

#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn::AppsFolder {

Path on(const Path& drive, const std::string& externalRootName) {
  return drive.appending(externalRootName).appending(AppStorageNames::apps);
}

bool isOn(const ReadOnlyPlatform& platform, const Path& appsFolder, const Path& drive) {
  return leadsInto(platform.files, appsFolder, drive);
}

}  // namespace quarn::AppsFolder
