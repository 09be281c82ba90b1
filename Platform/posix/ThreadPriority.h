#pragma once

namespace quarn {

/// Lets every other thread go first from now on.
void lowerPriorityOfThisThread();

}  // namespace quarn
