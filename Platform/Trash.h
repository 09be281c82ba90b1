#pragma once

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

class Trash {
 public:
  virtual ~Trash() = default;
  /// Moves an item (a link as a link) to the Trash of its volume and tells where it is now: a name
  /// that is taken there gets another. Never copies, never removes. Missing: `fileNoSuchFile`; a
  /// volume without a Trash: `featureUnsupported`.
  virtual Result<Path> moveToTrash(const Path& item) = 0;
};

}  // namespace quarn
