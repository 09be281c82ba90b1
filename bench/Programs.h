#pragma once

#include <string>

namespace bench {

/// The program itself, and not the script that is on the PATH.
inline const std::string quarn = "/usr/local/libexec/quarn";

}  // namespace bench
