#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/InfoPlist.h"

/// A launcher: a small bundle of its own that opens an application elsewhere.
namespace quarn::LauncherShim {

inline constexpr const char* executableName = "ExternalAppLauncher";
inline constexpr const char* identifierSuffix = ".externallauncher";

/// Returns the path of the file in a launcher that holds the path of its application.
Path targetFile(const Path& bundle);
Path executable(const Path& bundle);

/// Returns whether a bundle is a launcher: by the target file inside it, the name of its executable, or the
/// suffix of its bundle identifier. `texts` are those of its property list.
bool isExternalAppLauncher(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts);

/// Returns the identifier of the application for which a launcher was built: the suffix is removed wherever
/// it occurs, because a launcher for a launcher has it twice.
std::string withoutIdentifierSuffix(std::string_view identifier);

/// Returns what the bytes of a target file say, without white space at its ends, or nothing if they aren't
/// text. It can be empty, and anyone may have written it.
std::optional<std::string> targetText(std::string_view bytes);
/// Returns what the target file of a bundle says, or nothing if there is no such file or it isn't text.
std::optional<std::string> recordedTarget(const ReadOnlyPlatform& platform, const Path& bundle);

/// Returns the standardized target, or nothing if the bundle isn't a launcher or the target is missing.
std::optional<Path> target(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::LauncherShim
