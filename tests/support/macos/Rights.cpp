#include <cstdlib>
#include <unistd.h>

#include "tests/support/Child.h"
#include "tests/support/Scene.h"

// A Mac has no rights that could be dropped one by one: permissions bind everybody but root.

namespace child {

bool dropRights() {
  return ::geteuid() != 0;
}

}  // namespace child

namespace scene {

void becomeOrdinary(bool) {
  if (::geteuid() == 0) std::_Exit(126);
}

}  // namespace scene
