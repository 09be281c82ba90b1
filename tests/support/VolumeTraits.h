#pragma once

#include <cstddef>

#include "tests/support/ScratchFolder.h"

/// What a volume can keep, found out by trying. A test that needs more than the volume keeps says so and is
/// skipped, whichever system it runs on.
struct VolumeTraits {
  bool anyBytes = false;     ///< names that aren't UTF-8
  bool letterCase = false;   ///< "a" and "A" are two items
  bool normalForms = false;  ///< a composed and a decomposed "é" are two items
  bool modes = false;
  bool fifos = false;
  bool sockets = false;
  bool holes = false;
  bool attributes = false;   ///< extended ones, such as a person may set
  bool nanoseconds = false;  ///< in times; coarser ones otherwise
  std::size_t longestName = 0;
  std::size_t longestLink = 0;  ///< text of a symbolic link; 0 where there are none
};

/// Of the volume that holds a folder, which is left as it was.
VolumeTraits traitsOf(const ScratchFolder& folder);
