#pragma once

namespace quarn {

/// What a shell learns of a run.
enum class ExitStatus {
  success = 0,
  failure = 1,
  attention = 2,  ///< a result that a script must see, such as an empty queue
};

}  // namespace quarn
