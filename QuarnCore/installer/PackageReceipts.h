#pragma once

#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::PackageReceipts {

/// Has `pkgutil` forget the receipt of a package, without a limit of time. What the package installed stays.
/// Only root may for most receipts. Never throws. An identifier that is empty or looks like an option isn't
/// handed to the tool, and fails.
CommandResult forget(Platform& platform, const std::string& packageID);

}  // namespace quarn::PackageReceipts
