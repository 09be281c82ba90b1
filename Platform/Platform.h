#pragma once

#include "Platform/Applications.h"
#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/Locks.h"
#include "Platform/Places.h"
#include "Platform/Processes.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"

namespace quarn {

/// Who answers for the operating system. Made once in the entry and passed down to every operation
/// that touches the world; an operation without it is pure.
struct Platform {
  FileSystem& files;
  Processes& processes;
  Volumes& volumes;
  Applications& applications;
  Trash& trash;
  Clock& clock;
  Places& places;
  Locks& locks;
};

/// The operating system that this program runs on.
Platform& hostPlatform();

}  // namespace quarn
