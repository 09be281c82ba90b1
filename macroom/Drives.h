#pragma once

#include <optional>
#include <string>

namespace quarn::room {

/// A drive to put at /Volumes/NAME.
struct DriveRequest {
  std::string name;
  std::string size;  // digits, then nothing, k, m or g
  bool readOnly = false;
  bool operator==(const DriveRequest&) const = default;

  /// From "NAME=SIZE" or "NAME=SIZE,ro"; the name may hold anything but a slash. Absent for anything else.
  static std::optional<DriveRequest> parse(const std::string& text);
};

namespace Drives {

/// Both are called inside the room and throw RoomError. `kind` is the text of QUARN_ROOM. In "mounts" a drive
/// is a memory file system of the wanted size; in "proot", where nothing can be mounted, a folder with a line
/// in the room's own /etc/mtab, whose size is that of the host's file system behind /Volumes.
void plug(const DriveRequest& request, const std::string& kind);

/// At once, even while files are open there; those stay usable to whoever has them open.
void unplug(const std::string& name, const std::string& kind);

/// As plug for "proot", before the room can be entered: `volumes` is the folder that will be /Volumes, `mtab`
/// the file that will be /etc/mtab.
void plugFolder(const DriveRequest& request, const std::string& volumes, const std::string& mtab);

}  // namespace Drives

}  // namespace quarn::room
