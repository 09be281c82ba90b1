#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Lets a program's n-th system call of a kind fail: it is not carried out, and answers with an error. Its
/// own calls only, not those of the tools it starts. So every fault is met by n = 1, 2, … until the
/// program runs through.
namespace scene {

/// Changing: those of `ChangingCalls.h`, the start of a tool too; not those that print. Looking: what opens
/// for reading, reads, lists or asks about an item; not what loads the program itself.
enum class CallKind { changing, looking };

struct Failure {
  CallKind kind = CallKind::changing;
  int error = 0;
  bool forGood = false;  ///< every call of the kind from then on
};

struct FailedRun {
  bool hasFailed = false;  ///< false: it ran through with fewer such calls
  int status = 0;          ///< exit status, or minus the number of the signal that ended it
  std::string call;        ///< the first one that failed, such as "unlinkat /Applications/Foo.app"
  std::string said;        ///< what it printed on both streams
};

/// Runs a program as an ordinary person. Absent where `whyNotTraced` tells a reason, and of a program that
/// goes on for ever.
std::optional<FailedRun> failedAt(int n, const Failure& failure, const std::vector<std::string>& command);

}  // namespace scene
