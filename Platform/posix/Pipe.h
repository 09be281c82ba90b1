#pragma once

#include "Platform/posix/Descriptor.h"

namespace quarn {

/// Both ends are closed in a tool that is started, unless they are handed to it: a writing end that
/// lives on elsewhere would keep a reader waiting.
struct Pipe {
  Descriptor reading;
  Descriptor writing;

  /// Not open if the process has no descriptors left.
  static Pipe make();
};

}  // namespace quarn
