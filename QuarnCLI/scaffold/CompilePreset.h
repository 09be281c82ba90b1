#pragma once

#include <string>
#include <string_view>

namespace quarn {

/// A way to build a project.
struct CompilePreset {
  std::string_view id;
  /// The lines of the function that builds, in the generated script. A name in them stands for itself,
  /// whatever it holds.
  std::string (*body)(std::string_view appName);
};

struct SwiftpmPreset {
  static constexpr std::string_view id = "swiftpm";
  static std::string body(std::string_view appName);
};
struct JucePreset {
  static constexpr std::string_view id = "juce";
  static std::string body(std::string_view appName);
};
struct XcodePreset {
  static constexpr std::string_view id = "xcode";
  static std::string body(std::string_view appName);
};
struct CmakePreset {
  static constexpr std::string_view id = "cmake";
  static std::string body(std::string_view appName);
};
struct MakePreset {
  static constexpr std::string_view id = "make";
  static std::string body(std::string_view appName);
};
struct NpmPreset {
  static constexpr std::string_view id = "npm";
  static std::string body(std::string_view appName);
};
/// Decides when the script runs.
struct AutoPreset {
  static constexpr std::string_view id = "auto";
  static std::string body(std::string_view appName);
};

/// One of the presets above.
template <class Preset>
inline constexpr CompilePreset compilePreset{Preset::id, Preset::body};

}  // namespace quarn
