#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn::MoveVerifier {

/// The first difference between an item and its copy, as one sentence; nothing means the copy is whole.
/// Compares kinds, sizes, link targets and the number of entries, never contents. Links are not
/// followed. Never throws.
std::optional<std::string> failureReason(const ReadOnlyPlatform& platform, const Path& source,
                                         const Path& destination);

/// What is found in one look at an item and its copy, right before the item is removed.
struct Findings {
  std::optional<std::string> difference;  ///< as `failureReason` tells it
  /// The refusal that the removal would meet, as it would tell it: of the whole item.
  std::optional<PlatformError> obstacle;
};

Findings beforeRemoval(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

}  // namespace quarn::MoveVerifier
