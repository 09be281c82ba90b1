#pragma once

#include "QuarnCLI/Command.h"

/// The commands of the group "dedupe", each with its row.
namespace quarn::DedupeCommands {

extern const Command scan;
extern const Command run;
extern const Command plan;

}  // namespace quarn::DedupeCommands
