#pragma once

#include <array>
#include <string_view>

#include "QuarnCLI/scaffold/CompilePreset.h"

namespace quarn::PresetRegistry {

inline constexpr std::array<CompilePreset, 7> all = {compilePreset<SwiftpmPreset>, compilePreset<JucePreset>,
                                                     compilePreset<XcodePreset>,   compilePreset<CmakePreset>,
                                                     compilePreset<MakePreset>,    compilePreset<NpmPreset>,
                                                     compilePreset<AutoPreset>};

/// The preset with that `id`; that of `AutoPreset` for an unknown one.
const CompilePreset& preset(std::string_view id);

}  // namespace quarn::PresetRegistry
