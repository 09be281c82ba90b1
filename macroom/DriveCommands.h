#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quarn::room::DriveCommands {

/// `plug NAME SIZE [ro]` and `unplug NAME`, as a person types them in the room. The exit status, or absent
/// when `name` (the program's own) is neither.
std::optional<int> run(const std::string& name, const std::vector<std::string>& arguments);

}  // namespace quarn::room::DriveCommands
