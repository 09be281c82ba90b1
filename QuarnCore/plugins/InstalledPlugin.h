#pragma once

#include <cstdint>
#include <string>

#include "QuarnCore/plugins/PluginFormat.h"

namespace quarn {

/// What stands where hosts look for a plug-in.
struct PluginInstallStatus {
  enum class Kind {
    externalised,   ///< a link to something that exists
    brokenSymlink,  ///< a link that leads nowhere
    native          ///< anything that isn't a link
  };

  Kind kind = Kind::native;
  std::string target;  ///< the text in the link, empty if it can't be read; always empty for `native`

  bool operator==(const PluginInstallStatus&) const = default;
};

/// A plug-in in one of the system's folders.
struct InstalledPlugin {
  PluginFormat format = PluginFormat::au;  ///< by its extension, whichever of the folders it stands in
  std::string name;                        ///< with the extension
  std::string systemPath;
  std::int64_t sizeBytes = 0;  ///< of what the link leads to; 0 for a broken one
  PluginInstallStatus status;

  bool operator==(const InstalledPlugin&) const = default;
};

}  // namespace quarn
