#pragma once

#include <string_view>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// Gathers the paths of items that belong to an application. Left out are those whose name is no name of
/// one item inside its folder: empty, ".", "..", or with a slash. Names come from a bundle's property
/// list, and such a one would make a whole library folder look like one application's data.
class OwnItems {
 public:
  void add(const Path& folder, std::string_view name);

  std::vector<Path> paths;
};

}  // namespace quarn
