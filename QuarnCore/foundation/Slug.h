#pragma once

#include <string>

#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn::Slug {

/// The short lower-case word by which an application's loose data is found: its executable's name,
/// else its bundle's without the extension, else its display name. Blanks and punctuation stay.
std::string derive(const AppIdentity& identity);

}  // namespace quarn::Slug
