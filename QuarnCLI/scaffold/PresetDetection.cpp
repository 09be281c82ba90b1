#include "QuarnCLI/scaffold/PresetDetection.h"

#include <algorithm>
#include <string>
#include <vector>

namespace quarn::PresetDetection {

const CompilePreset& presetFor(const ReadOnlyPlatform& platform, const Path& project) {
  const auto names = platform.files.list(project, Hidden::included).valueOr({});
  const auto has = [&](std::string_view name) { return platform.files.exists(project.appending(name)); };
  const auto hasEnding = [&](std::string_view ending) {
    return std::any_of(names.begin(), names.end(),
                       [ending](const std::string& name) { return name.ends_with(ending); });
  };
  if (has("Package.swift")) return compilePreset<SwiftpmPreset>;
  if (hasEnding(".jucer")) return compilePreset<JucePreset>;
  if (hasEnding(".xcworkspace") || hasEnding(".xcodeproj")) return compilePreset<XcodePreset>;
  if (has("CMakeLists.txt")) return compilePreset<CmakePreset>;
  if (has("Makefile")) return compilePreset<MakePreset>;
  if (has("package.json")) return compilePreset<NpmPreset>;
  return compilePreset<AutoPreset>;
}

}  // namespace quarn::PresetDetection
