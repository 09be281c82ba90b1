#pragma once

#include <cstdint>
#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// Why a move or a way back failed.
class MoverError : public LocalizedError {
 public:
  enum class Reason {
    insufficientSpace,
    copyFailed,
    verifyFailed,
    symlinkFailed,
    sourceRemoveFailed,
    appIsRunning,
    sourceMissing,
    destinationExists,
  };

  static MoverError insufficientSpace(std::int64_t needed, std::int64_t available);
  static MoverError copyFailed(const std::string& detail);
  static MoverError verifyFailed(const std::string& detail);
  static MoverError symlinkFailed(const std::string& detail);
  static MoverError sourceRemoveFailed(const std::string& detail);
  static MoverError appIsRunning(const std::string& name);
  static MoverError sourceMissing();
  static MoverError destinationExists();

  Reason reason() const { return reason_; }
  const std::string& localizedDescription() const noexcept override { return description_; }

 private:
  MoverError(Reason reason, std::string description)
      : reason_(reason), description_(std::move(description)) {}

  Reason reason_;
  std::string description_;
};

/// A move or a way back that isn't started, or isn't continued, because it could lose something or split it.
/// The source is complete.
class MoveRefused : public LocalizedError {
 public:
  explicit MoveRefused(std::string sentence) : sentence_(std::move(sentence)) {}
  /// For a socket or a device, given its name.
  static MoveRefused notCopyable(const std::string& name);
  const std::string& localizedDescription() const noexcept override { return sentence_; }

 private:
  std::string sentence_;
};

}  // namespace quarn
