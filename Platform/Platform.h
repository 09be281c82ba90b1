#pragma once

#include "Platform/Applications.h"
#include "Platform/Clock.h"
#include "Platform/Databases.h"
#include "Platform/FileEvents.h"
#include "Platform/FileSystem.h"
#include "Platform/Locks.h"
#include "Platform/Places.h"
#include "Platform/Processes.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"

namespace quarn {

/// The operating system, as one record of references. The entry makes it once and passes it down to every
/// operation that changes the world. An operation that only looks takes a `ReadOnlyPlatform`; a function that
/// takes neither is pure.
struct Platform {
  FileSystem& files;
  Processes& processes;
  Volumes& volumes;
  Applications& applications;
  Trash& trash;
  Clock& clock;
  Places& places;
  Locks& locks;
  Databases& databases;
  FileEvents& events;
};

/// The same for code that only looks: files, databases and applications can't be changed through it, and it
/// has no Trash. The compiler thus proves that a scan, a plan or a dry run changes nothing. Tools can still
/// be started, because looking needs `ps` and `find`; the caller is responsible for which ones.
///
/// It is a handful of references that a `Platform` converts to implicitly. Code that keeps it beyond one call
/// keeps a copy.
struct ReadOnlyPlatform {
  ReadOnlyPlatform(const Platform& whole)
      : files(whole.files),
        processes(whole.processes),
        volumes(whole.volumes),
        applications(whole.applications),
        clock(whole.clock),
        places(whole.places),
        databases(whole.databases),
        events(whole.events) {}

  const FileSystem& files;
  Processes& processes;
  const Volumes& volumes;
  const Applications& applications;
  Clock& clock;
  const Places& places;
  const Databases& databases;
  const FileEvents& events;
};

}  // namespace quarn
