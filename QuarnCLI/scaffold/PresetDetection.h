#pragma once

#include "Platform/Platform.h"
#include "QuarnCLI/scaffold/CompilePreset.h"

namespace quarn::PresetDetection {

/// The preset for the project in a folder, by the names of what lies in it; that of `AutoPreset` if none of
/// them is known.
const CompilePreset& presetFor(const ReadOnlyPlatform& platform, const Path& project);

}  // namespace quarn::PresetDetection
