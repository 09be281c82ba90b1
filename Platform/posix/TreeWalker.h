#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

/// `FileSystem::walk` by open folders: one opening and two reads a folder, one look-up for an item whose
/// attributes are asked for.
void walkTree(const Path& root, Hidden hidden, WalkVisitor& visitor);

}  // namespace quarn
