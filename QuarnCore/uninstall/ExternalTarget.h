#pragma once

#include <optional>

#include "Platform/Path.h"
#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn::ExternalTarget {

/// Returns the path to which the link or launcher of a record leads, whether something is there or not. A
/// relative text in a link starts at the folder of the link, as the system reads it. Nothing for an
/// application that is neither, for an empty text, and for a relative one in a launcher.
std::optional<Path> of(const AppRecord& record);

}  // namespace quarn::ExternalTarget
