#pragma once

#include <functional>
#include <memory>

#include "Platform/Platform.h"

namespace quarn {

/// The right to change what is moved or installed. One run at a time has it for a home folder. Other runs
/// wait until it is released, and must then check again everything that they found before. Within one run it
/// may be taken again by any function that is called.
class Turn {
 public:
  /// Takes the turn. If another run has it, calls `waiting` once and waits for it to end. If the home folder
  /// can't be locked nobody waits; only the exclusive claims on single paths then keep runs apart.
  explicit Turn(
      Platform& platform, const std::function<void()>& waiting = [] {});
  /// What was found before has to be looked at anew.
  bool hadToWait() const { return hadToWait_; }

 private:
  bool hadToWait_ = false;
  std::shared_ptr<Lock> lock_;
};

}  // namespace quarn
