#include "Platform/posix/EntryKind.h"

#include <dirent.h>

namespace quarn {

std::optional<FileKind> entryKind(unsigned char type) {
  switch (type) {
    case DT_REG:
      return FileKind::regular;
    case DT_DIR:
      return FileKind::folder;
    case DT_LNK:
      return FileKind::symbolicLink;
    case DT_SOCK:
      return FileKind::socket;
    case DT_BLK:
      return FileKind::blockDevice;
    case DT_CHR:
      return FileKind::characterDevice;
    case DT_UNKNOWN:
      return std::nullopt;
    default:
      return FileKind::unknown;
  }
}

}  // namespace quarn
