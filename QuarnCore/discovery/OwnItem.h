#pragma once

#include <string>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// An item that belongs to an application: the folder it lies in, and its name there.
struct OwnItem {
  Path folder;
  std::string name;
};

namespace OwnItems {

/// The paths of the items, those left out whose name is no name of one item inside its folder: empty,
/// ".", "..", or with a slash. Names come from a bundle's property list, and such a one would make a
/// whole library folder look like one application's data.
std::vector<Path> paths(const std::vector<OwnItem>& items);

}  // namespace OwnItems
}  // namespace quarn
