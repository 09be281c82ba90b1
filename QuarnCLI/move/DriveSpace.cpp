#include "QuarnCLI/move/DriveSpace.h"

#include "QuarnCLI/CLIError.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn::DriveSpace {

void require(const DriveInfo& drive, std::int64_t needed) {
  if (drive.freeBytes >= needed) return;
  throw CLIError("Not enough space: need " + SizeCalculator::format(needed) + ", have " +
                 SizeCalculator::format(drive.freeBytes));
}

}  // namespace quarn::DriveSpace
