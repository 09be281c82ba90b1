#pragma once

#include "Platform/Platform.h"

/// A wrapper outside this tool that runs the command in its arguments with raised rights.
namespace quarn::Gantrix {

/// Returns "/usr/local/bin/gantrix" if that exists, and otherwise the path in the home folder, whether or not
/// that exists.
Path path(const ReadOnlyPlatform& platform);

}  // namespace quarn::Gantrix
