#pragma once

#include <string>

#include "Platform/Platform.h"

/// Words for people about who signed something. Never throws. The tools have no time limit.
namespace quarn::CodesignMetadata {

/// Returns the name of the developer from the certificate, "Apple (Mac App Store)", or "Unsigned / Ad-hoc".
std::string teamName(const ReadOnlyPlatform& platform, const Path& item);

/// Returns "Notarized", "Mac App Store", "Not signed", "Accepted" or "Unknown", by the words of `spctl`.
std::string notarizationStatus(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::CodesignMetadata
