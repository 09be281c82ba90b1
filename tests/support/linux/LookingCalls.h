#pragma once

#include <optional>
#include <string>

#include "tests/support/linux/TracedProgram.h"

namespace scene {

/// The call that a child has entered, if it opens for reading, reads, lists or asks about an item: "openat
/// /Applications". Nothing for what loads the program itself.
std::optional<std::string> lookEntered(const TracedProgram& program, const CallStop& stop);

}  // namespace scene
