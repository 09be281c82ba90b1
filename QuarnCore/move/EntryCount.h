#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Platform.h"

namespace quarn::EntryCount {

/// The number of lines that `find` prints for an item and all below it, hidden ones too. Nothing if it
/// can't be started, met a part it can't read, or printed what is no text.
std::optional<std::int64_t> ofTree(Platform& platform, const Path& root);

}  // namespace quarn::EntryCount
