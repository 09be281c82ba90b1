#pragma once

#include <string>
#include <vector>

#include "Options.h"

namespace quarn::room {

/// A folder or file of the host that shows up in the room.
struct Bind {
  std::string from;  // absolute path on the host
  std::string to;    // absolute path in the room
  bool writable = false;
  bool operator==(const Bind&) const = default;
};

/// Where the two sides can be reached while the room is built.
struct RoomSite {
  std::string root;  // the room's own root, without a trailing slash ("" for "/")
  std::string host;  // the host's root, likewise
};

/// In every room the host's root is to be seen here, read-only where the kernel can grant that.
inline constexpr const char* hostInRoom = "/.host";

/// quarn-room under this name is Keeper::keepInside.
inline constexpr const char* innerKeeper = "/usr/libexec/quarn-room/keep";

namespace RoomTree {

/// Makes the Mac's folders, the folders of tools, /etc and the stand-ins below `site.root`, and tells what
/// has yet to be bound, in this order; each `to` exists already. `executable` is the running quarn-room on
/// the host; the stand-ins are all files of the tree `stand-ins` beside it, each at its path in the room.
/// `uid` and `gid` are those inside the room. Throws RoomError.
std::vector<Bind> build(const RoomSite& site, const Options& options, const std::string& executable,
                        unsigned uid, unsigned gid);

}  // namespace RoomTree

}  // namespace quarn::room
