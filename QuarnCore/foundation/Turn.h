#pragma once

#include <functional>
#include <memory>

#include "Platform/Platform.h"

namespace quarn {

/// The right to change what is moved or installed. One run of a person has it at a time; the others wait
/// until it goes, and have to look anew at everything that they found before. Within one run it can be
/// taken again by whoever is called.
class Turn {
 public:
  /// Waits for its end while another run has it; `waiting` is called once before. Where the home folder can't
  /// be locked nobody waits, and only the exclusive claims of single places keep runs apart.
  explicit Turn(
      Platform& platform, const std::function<void()>& waiting = [] {});
  /// What was found before has to be looked at anew.
  bool hadToWait() const { return hadToWait_; }

 private:
  bool hadToWait_ = false;
  std::shared_ptr<Lock> lock_;
};

}  // namespace quarn
