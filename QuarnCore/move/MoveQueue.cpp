#include "QuarnCore/move/MoveQueue.h"

namespace quarn {

std::int64_t MoveQueue::totalBytes() const {
  std::int64_t total = 0;
  for (const MoveJob& job : jobs) total += job.bytesTotal;
  return total;
}

bool MoveQueue::fits() const {
  return drive.freeBytes >= totalBytes();
}

}  // namespace quarn
