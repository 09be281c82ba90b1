#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>

#include "QuarnCLI/Invocation.h"
#include "QuarnCore/plugins/PluginFormat.h"

/// What the commands of the group read alike.
namespace quarn::PluginCLIShared {

inline constexpr Operand source{.name = "<source>"};

inline constexpr std::array<std::string_view, 6> formatWords = {"au", "vst3", "vst", "clap", "aax", "all"};
inline constexpr Flag formats{
    .name = "--formats",
    .kind = ValueKind::list,
    .choices = formatWords,
    .meaning = "the kinds of plug-in; all of them without it",
};

/// Returns the formats that a list of words names; all of them for no list or an empty one. Throws `CLIError`
/// at a word that names no format, unless "all" comes before it.
std::set<PluginFormat> parseFormats(const std::optional<std::string>& value);

/// Returns an absolute path; "~" is expanded, and a relative path starts at the current folder.
Path pathOf(const Places& places, const std::string& given);

/// Returns the operand. Absent if it is empty, which comes from a variable that isn't set, or if it stands
/// right behind a flag that takes a value: that is a drive or a list of formats, and taking a whole drive for
/// the source would install what nobody asked for.
std::optional<std::string> sourceOf(const CLIArgs& args);

}  // namespace quarn::PluginCLIShared
