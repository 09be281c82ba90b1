#pragma once

#include "QuarnCore/foundation/Turn.h"

namespace quarn {

/// The turn of this run, for as long as it lives. Who has to wait for it is told so on standard error, once
/// a run.
class TakenTurn {
 public:
  explicit TakenTurn(Platform& platform);
  /// What was found before has to be looked at anew.
  bool hadToWait() const { return hadToWait_; }

 private:
  bool hadToWait_ = false;
  Turn turn_;
};

}  // namespace quarn
