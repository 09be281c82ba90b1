#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn::AppStorageNames {

Path externalRootPath(const Path& drive) {
  return drive.appending(externalRoot);
}
Path appsRoot(const Path& drive) {
  return externalRootPath(drive).appending(apps);
}
Path dataRoot(const Path& drive) {
  return externalRootPath(drive).appending(data);
}
Path pluginsRoot(const Path& drive) {
  return externalRootPath(drive).appending(plugins);
}
Path foldersRoot(const Path& drive) {
  return externalRootPath(drive).appending(folders);
}

Path supportRoot(const Places& places) {
  return places.home().appending("Library/Application Support/Quarn");
}
Path sessionRoot(const Places& places) {
  return supportRoot(places).appending(installerSessions);
}
Path userInstallerOptionsRoot(const Places& places) {
  return supportRoot(places).appending(installerOptions);
}
Path uninstallSessionRoot(const Places& places) {
  return supportRoot(places).appending(uninstallSessions);
}

}  // namespace quarn::AppStorageNames
