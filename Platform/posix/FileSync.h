#pragma once

namespace quarn {

/// Writes out an open file, so that after a power cut no later change can be there without it. What each
/// system answers: 0, or the number of the failure.
int syncFile(int file);

}  // namespace quarn
