#pragma once

#include <string>
#include <vector>

namespace bench {

/// What a list of applications can't do without: looks up each bundle directly in the folders and reads its
/// property list with the C library. Returns how many lists it has read.
int lookUpAndRead(const std::vector<std::string>& folders);

}  // namespace bench
