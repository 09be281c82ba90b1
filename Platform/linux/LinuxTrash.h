#pragma once

#include "Platform/Places.h"
#include "Platform/Trash.h"

namespace quarn {

class LinuxTrash : public Trash {
 public:
  explicit LinuxTrash(const Places& places) : places_(places) {}
  Result<Path> moveToTrash(const Path& item) override;

 private:
  const Places& places_;
};

}  // namespace quarn
