#pragma once

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

class Trash {
 public:
  virtual ~Trash() = default;
  /// Moves an item to the Trash of its volume (a link as a link) and returns where it is now: if the name is
  /// taken there, the item gets another. Never copies and never removes anything. Missing: `fileNoSuchFile`.
  /// A volume without a Trash: `featureUnsupported`.
  virtual Result<Path> moveToTrash(const Path& item) = 0;
};

}  // namespace quarn
