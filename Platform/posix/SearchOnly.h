#pragma once

#include <fcntl.h>

namespace quarn {

/// How a folder is opened of which only names are looked up; it need not be readable then. macOS has
/// O_SEARCH since 13, Linux calls it O_PATH (open(2) of both).
#ifdef O_PATH
inline constexpr int searchOnly = O_PATH;
#else
inline constexpr int searchOnly = O_SEARCH;
#endif

}  // namespace quarn
