#include "QuarnCore/foundation/TrashOrBeside.h"

namespace quarn::TrashOrBeside {

void put(Platform& platform, const Path& item, const std::string& nameBeside) {
  if (platform.trash.moveToTrash(item)) return;
  const Path folder = item.parent().appending(folderName);
  platform.files.createFolder(folder).orIgnore();
  platform.files.rename(item, folder.appending(nameBeside)).orIgnore();
}

}  // namespace quarn::TrashOrBeside
