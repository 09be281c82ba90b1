#include "Platform/system/SpawnCalls.h"

#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace quarn {

bool makePipe(int ends[2]) {
  if (::pipe(ends) != 0) return false;
  for (const int end : {ends[0], ends[1]}) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
}

void closeAbove2(posix_spawn_file_actions_t& actions) {
  // With POSIX_SPAWN_CLOEXEC_DEFAULT every descriptor is closed that isn't named, those below 3 too
  // (posix_spawn(2)).
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(standard, F_GETFD) >= 0) ::posix_spawn_file_actions_addinherit_np(&actions, standard);
  }
}

}  // namespace quarn
