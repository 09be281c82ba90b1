#include "Platform/system/SpawnCalls.h"

#include <fcntl.h>
#include <unistd.h>

namespace quarn {

bool makePipe(int ends[2]) {
  return ::pipe2(ends, O_CLOEXEC) == 0;
}

void closeAbove2(posix_spawn_file_actions_t& actions) {
  ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
}

}  // namespace quarn
