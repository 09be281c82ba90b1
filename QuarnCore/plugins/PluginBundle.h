#pragma once

#include <cstdint>
#include <string>

#include "Platform/Path.h"
#include "QuarnCore/plugins/PluginFormat.h"

namespace quarn {

/// A plug-in in a source.
struct PluginBundle {
  PluginFormat format = PluginFormat::au;
  std::string name;            ///< the last component of its path, with the extension
  std::string sourcePath;      ///< absolute; may be a link to a folder
  std::int64_t sizeBytes = 0;  ///< as `SizeCalculator` measures

  /// Tells one bundle of a source from the others.
  const std::string& id() const { return sourcePath; }
  /// Returns where hosts look for it.
  Path systemSymlinkPath() const;
  Path externalizedPath(const Path& drive) const;

  bool operator==(const PluginBundle&) const = default;
};

}  // namespace quarn
