// Kills a program at its n-th call that changes the file system: killed-at N COMMAND [ARGUMENT]...
// Ends with 137 if it was killed, with 77 and the reason where programs can't be traced, else with the
// program's own status.

#include <cstdio>
#include <cstdlib>

#include "tests/support/linux/KilledAt.h"

int main(int count, char** words) {
  if (count < 3) return 2;
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) {
    std::puts(reason.c_str());
    return 77;
  }
  const auto run = scene::killedAt(std::atoi(words[1]), {words + 2, words + count});
  if (!run) return 1;
  return run->wasKilled ? 137 : run->status;
}
