#pragma once

#include "tests/cli/Campaign.h"
#include "tests/cli/Faults.h"

/// The scene of a campaign, and what is where in it.
namespace campaign {

inline const std::string data = scene::home + "/Library/Application Support/Foo";

/// Sets it for a command, whatever the last run left.
void setScene(const Command& command);
/// Of the commands that take an item from the drive.
bool isHomecoming(Way way);

}  // namespace campaign
