#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"
#include "Platform/PlatformError.h"

/// The steps of an installation, each a line of fields that are separated by tabs, the first one the step's
/// word. They are shown as progress, and those that an installer returns are kept in the session, from which
/// later steps read them back.
namespace quarn::InstallAction {

/// Puts a line together.
std::string line(std::string_view word, const std::vector<std::string>& fields = {});

// What a session keeps.

std::string installedApp(const Path& launcher, const Path& destination);
std::string installedPackage(const Path& package);
std::string ranScript(const Path& script);
std::string externalizeFailed(const Path& app, const LocalizedError& error);

/// Returns the launcher and the copy that a line of `installedApp` names, and nothing for every other line. A
/// tab in a path cuts it in two, and nobody can tell then which path was meant: such a line names nothing.
std::vector<std::string> installedPaths(std::string_view line);
bool isInstalledPackage(std::string_view line);
bool isExternalizeFailed(std::string_view line);

// What undoing an installation consists of.

std::string trash(const std::string& path);
std::string forgetReceipt(const std::string& packageID);

/// Returns what a line of that word is about: everything behind its first tab.
std::optional<std::string> trashed(std::string_view line);
std::optional<std::string> forgottenReceipt(std::string_view line);

}  // namespace quarn::InstallAction
