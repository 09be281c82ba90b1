#include "QuarnCore/installer/FileSnapshot.h"

#include <algorithm>

namespace quarn {

bool FileSnapshot::knows(std::string_view path) const {
  return std::none_of(unseen.begin(), unseen.end(), [path](const UnseenPart& part) {
    if (part.last.empty() && path == part.root) return true;
    return isBelow(path, part.root) && precedesInPathOrder(part.last, path);
  });
}

}  // namespace quarn
