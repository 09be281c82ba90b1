#pragma once

#include <string>

#include "Platform/PlatformError.h"

namespace quarn::InstallerError {

/// Returns the error for a tool that failed. `written` is what the tool wrote about it, and becomes the
/// description as it is, line feeds included. A tool that wrote nothing gets the system's sentence for an
/// error without a description.
PlatformError ofTool(const std::string& domain, int status, const std::string& written);

}  // namespace quarn::InstallerError
