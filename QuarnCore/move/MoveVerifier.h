#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn::MoveVerifier {

/// Returns the first difference between an item and its copy as a sentence, or nothing if the copy is
/// complete. Compares kinds, sizes, link targets and the number of entries, but never contents. Doesn't
/// follow links. Never throws.
std::optional<std::string> failureReason(const ReadOnlyPlatform& platform, const Path& source,
                                         const Path& destination);

/// What one walk through an item and its copy finds, right before the item is removed.
struct Findings {
  std::optional<std::string> difference;  ///< as `failureReason` returns it
  /// The error that removing the item would meet. It names the item as a whole.
  std::optional<PlatformError> obstacle;
};

Findings beforeRemoval(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

}  // namespace quarn::MoveVerifier
