#include "QuarnCore/move/MoverError.h"

#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn {

MoverError MoverError::insufficientSpace(std::int64_t needed, std::int64_t available) {
  return {Reason::insufficientSpace, "Not enough space. Need " + SizeCalculator::format(needed) + ", have " +
                                         SizeCalculator::format(available) + "."};
}

MoverError MoverError::copyFailed(const std::string& detail) {
  return {Reason::copyFailed, "Copy failed: " + detail};
}

MoverError MoverError::verifyFailed(const std::string& detail) {
  return {Reason::verifyFailed, "Verification failed: " + detail};
}

MoverError MoverError::symlinkFailed(const std::string& detail) {
  return {Reason::symlinkFailed, "Symlink creation failed: " + detail};
}

MoverError MoverError::sourceRemoveFailed(const std::string& detail) {
  return {Reason::sourceRemoveFailed, "Could not remove original after copy: " + detail};
}

MoverError MoverError::appIsRunning(const std::string& name) {
  return {Reason::appIsRunning, "App is running: " + name + ". Quit it first, or pass --quit-running."};
}

MoverError MoverError::sourceMissing() {
  return {Reason::sourceMissing, "Source path no longer exists."};
}

MoverError MoverError::destinationExists() {
  return {Reason::destinationExists, "Destination already exists."};
}

MoveRefused MoveRefused::notCopyable(const std::string& name) {
  return MoveRefused("“" + name + "” is a socket or a device, which can't be copied. Remove it first.");
}

}  // namespace quarn
