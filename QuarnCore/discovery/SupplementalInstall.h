#pragma once

#include <string>

#include "Platform/Places.h"

namespace quarn::SupplementalInstall {

/// True for a bundle that lives inside a support folder instead of an applications folder.
bool matches(const Places& places, const std::string& bundlePath);

}  // namespace quarn::SupplementalInstall
