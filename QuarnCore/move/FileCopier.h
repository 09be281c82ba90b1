#pragma once

#include <cstdint>
#include <functional>

#include "Platform/Platform.h"
#include "QuarnCore/move/Claim.h"

namespace quarn {

/// Told how many bytes of how many are copied. Called on a background thread while the copy runs.
using ProgressCallback = std::function<void(std::int64_t copied, std::int64_t total)>;

namespace FileCopier {

/// Copies an item with `ditto` to a place where nothing stands, and gives back the claim on that place. Every
/// half second `progress`, if there is one, is told the size of what has arrived, and at the end `totalBytes`
/// of `totalBytes`; after the return it isn't called. Throws `MoverError::destinationExists`, with nothing
/// touched, or `MoverError::copyFailed`, with what was copied set aside.
Claim copy(Platform& platform, const Path& from, const Path& to, std::int64_t totalBytes,
           const ProgressCallback& progress);

}  // namespace FileCopier
}  // namespace quarn
