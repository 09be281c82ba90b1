#pragma once

#include <string>
#include <vector>

#include "QuarnCore/installer/Snapshotter.h"

namespace quarn::ChangesMerger {

/// Returns the paths that an installation changed, sorted. Without an installed package these are the
/// launchers and copies that the actions name. With one, everything that is new in the second snapshot and
/// everything that was seen to change meanwhile are added, also what other programs did: rather too much than
/// too little.
std::vector<std::string> merge(const FileSnapshot& before, const FileSnapshot& after,
                               const std::vector<std::string>& actions,
                               const std::vector<std::string>& livePaths);

}  // namespace quarn::ChangesMerger
