#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/backup/SetAside.h"

namespace quarn {

/// What a place holds.
struct BackupContents {
  std::int64_t fileCount = 0;  ///< what isn't a folder; links count as what they lead to
  std::optional<std::string>
      uncopyable;  ///< the relative path of a socket or a device; its name if it is one

  /// Throws if something can't be listed.
  static BackupContents of(const ReadOnlyPlatform& platform, const Path& root);
};

/// The copy of one source in a backup.
class BackupCopy {
 public:
  /// What has to make room is noted.
  BackupCopy(Platform& platform, const Path& place, SetAside& setAside)
      : platform_(platform), place_(place), setAside_(setAside) {}

  /// Copies the source, once what is at the copy's place was moved out of the way. Throws.
  void make(const Path& source) const;
  /// Takes the product's word out of the names of everything below the copy; an item that has such a name
  /// already is moved out of the way. Throws.
  void sanitizeNames() const;

 private:
  void clear(const Path& place, const std::string& reason) const;
  void sanitizeName(const Path& item) const;

  Platform& platform_;
  const Path place_;
  SetAside& setAside_;
};

}  // namespace quarn
