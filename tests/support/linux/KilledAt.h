#pragma once

#include <optional>
#include <string>
#include <vector>

/// Kills a program at its n-th system call that changes the file system, before the call takes effect.
/// Its own calls only, not those of the tools it starts. So every state that a crash could leave is met
/// by n = 1, 2, … until the program runs through.
namespace scene {

struct KilledRun {
  bool wasKilled = false;  ///< false: it ran through with fewer such calls
  int status = 0;          ///< exit status, or minus the number of the signal that ended it
  std::string call;        ///< what it was killed at, such as "unlinkat /Applications/Foo.app"
  std::string said;        ///< what it printed on both streams
};

/// Runs a program as an ordinary person. Absent where processes can't be traced this way; `whyNotTraced`
/// tells the reason.
std::optional<KilledRun> killedAt(int n, const std::vector<std::string>& command);
std::string whyNotTraced();

}  // namespace scene
