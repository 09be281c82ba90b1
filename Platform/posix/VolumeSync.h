#pragma once

namespace quarn {

/// Asks the volume of an open item to write out everything, down to the medium, and waits. What each system
/// answers: 0, or the number of the failure.
int syncVolume(int item);

}  // namespace quarn
