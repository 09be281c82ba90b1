#pragma once

#include <cstdint>
#include <functional>

#include "Platform/Platform.h"
#include "QuarnCore/move/Claim.h"

namespace quarn {

/// Receives how many bytes of how many have been copied. Called on a background thread while the copy runs.
using ProgressCallback = std::function<void(std::int64_t copied, std::int64_t total)>;

namespace FileCopier {

/// Copies an item with `ditto` to a path where nothing exists, and returns the claim on that path. If
/// `progress` is set, it receives the size of what has arrived every half second and, at the end,
/// `totalBytes` of `totalBytes`; it isn't called after the return. Throws `MoverError::destinationExists`,
/// with nothing changed, or `MoverError::copyFailed`, with what was copied set aside.
Claim copy(Platform& platform, const Path& from, const Path& to, std::int64_t totalBytes,
           const ProgressCallback& progress);

}  // namespace FileCopier
}  // namespace quarn
