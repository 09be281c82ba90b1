#pragma once

#include "QuarnCLI/Command.h"

/// The commands of the group "health", each with its row.
namespace quarn::HealthCommands {

extern const Command check;
extern const Command analyze;
extern const Command repair;

}  // namespace quarn::HealthCommands
