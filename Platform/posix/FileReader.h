#pragma once

#include <string>

#include "Platform/posix/PathAt.h"

namespace quarn {

/// All bytes of a file; follows links. Gives 0 or the number of the failure.
int readWhole(const PathAt& file, std::string& content);

}  // namespace quarn
