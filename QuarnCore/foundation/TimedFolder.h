#pragma once

#include <string>

#include "Platform/Platform.h"

namespace quarn::TimedFolder {

/// Makes a folder that is named by the present local time, as in "20231114_231320", and returns its name. The
/// folder is one that nobody else has: where the name of this second is taken, by another run or by anything
/// else, waits for the next one, up to three times. Makes missing parents. Fails if the folder can't be made.
Result<std::string> make(Platform& platform, const Path& parent);

}  // namespace quarn::TimedFolder
