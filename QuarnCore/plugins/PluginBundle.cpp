#include "QuarnCore/plugins/PluginBundle.h"

namespace quarn {

Path PluginBundle::systemSymlinkPath() const {
  return PluginFormats::systemPath(format, name);
}

Path PluginBundle::externalizedPath(const Path& drive) const {
  return PluginFormats::externalizedPath(format, name, drive);
}

}  // namespace quarn
