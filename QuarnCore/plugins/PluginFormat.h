#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Path.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// A kind of audio plug-in. Hosts look for each kind in a folder of its own.
enum class PluginFormat { au, vst3, vst2, clap, aax };

struct PluginFormatRow {
  PluginFormat value;
  std::string_view rawValue;
  std::string_view label;            ///< for people, and the name of the folder on a drive
  std::string_view pathExtension;    ///< of a bundle, in lower case
  std::string_view systemDirectory;  ///< where hosts look for bundles
};

template <>
inline constexpr auto rawValueRows<PluginFormat> = std::to_array<PluginFormatRow>({
    {PluginFormat::au, "au", "AU", "component", "/Library/Audio/Plug-Ins/Components"},
    {PluginFormat::vst3, "vst3", "VST3", "vst3", "/Library/Audio/Plug-Ins/VST3"},
    {PluginFormat::vst2, "vst2", "VST2", "vst", "/Library/Audio/Plug-Ins/VST"},
    {PluginFormat::clap, "clap", "CLAP", "clap", "/Library/Audio/Plug-Ins/CLAP"},
    {PluginFormat::aax, "aax", "AAX", "aaxplugin", "/Library/Application Support/Avid/Audio/Plug-Ins"},
});

namespace PluginFormats {

/// Returns the format with this extension of a path, in whatever letter case; nothing for any other one.
std::optional<PluginFormat> fromExtension(std::string_view extension);
/// Does the same with the extension of a path.
std::optional<PluginFormat> of(const Path& bundle);

/// Returns where hosts look for a bundle.
Path systemPath(PluginFormat format, std::string_view name);
/// Returns where a drive holds a bundle.
Path externalizedPath(PluginFormat format, std::string_view name, const Path& drive);

/// Returns whether the first bundle stands before the second one in a list: by the text of the format, and
/// then by name.
bool precedes(PluginFormat aFormat, std::string_view aName, PluginFormat bFormat, std::string_view bName);

}  // namespace PluginFormats
}  // namespace quarn
