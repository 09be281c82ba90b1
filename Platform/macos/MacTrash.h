#pragma once

#include "Platform/Trash.h"

namespace quarn {

class MacTrash : public Trash {
 public:
  Result<Path> moveToTrash(const Path& item) override;
};

}  // namespace quarn
