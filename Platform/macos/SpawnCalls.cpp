#include "Platform/system/SpawnCalls.h"

#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace quarn {

bool makePipe(int ends[2]) {
  if (::pipe(ends) != 0) return false;
  // macOS has no pipe2(2). A tool started by another thread in between still inherits nothing, because of
  // POSIX_SPAWN_CLOEXEC_DEFAULT.
  for (const int end : {ends[0], ends[1]}) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
}

void closeAbove2(posix_spawn_file_actions_t& actions) {
  // POSIX_SPAWN_CLOEXEC_DEFAULT closes every descriptor that isn't named, including those below 3
  // (posix_spawnattr_setflags(3)). Naming a closed one would make the spawn fail.
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(standard, F_GETFD) >= 0) ::posix_spawn_file_actions_addinherit_np(&actions, standard);
  }
}

}  // namespace quarn
