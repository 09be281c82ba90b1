#include "Platform/posix/HiddenFlag.h"

namespace quarn {

bool hasHiddenFlag(int, const char*) {
  return false;
}

}  // namespace quarn
