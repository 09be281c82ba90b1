#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/linux/TracedProgram.h"

/// The system calls that change the file system or write it out.
namespace scene {

struct Call {
  std::string name;                ///< such as "renameat2"; "start" for the start of a tool
  std::vector<std::string> paths;  ///< absolute, in the order of the arguments; a link's text as it is
  int error = 0;                   ///< the number of the failure, 0 if there was none
  /// "renameat2 /a /b", a failure with its number behind it: "mkdirat /a = 17".
  std::string text() const;
};

/// The call that a child has entered, if it is one of those.
std::optional<Call> callEntered(const TracedProgram& program, const CallStop& stop);
/// A write to a pipe, or to where the output of a traced program goes. UndefinedBehaviorSanitizer tries by a
/// write to a pipe whether memory can be read.
bool writesNoFile(const Call& call);
/// Whether a crash right before the call would leave another state than one right after it: not for a
/// call that writes out, fills a file or starts a tool.
bool changesTree(const Call& call);

}  // namespace scene
