#pragma once

#include "Platform/Applications.h"
#include "Platform/Clock.h"
#include "Platform/Databases.h"
#include "Platform/FileSystem.h"
#include "Platform/Locks.h"
#include "Platform/Places.h"
#include "Platform/Processes.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"

namespace quarn {

/// Who answers for the operating system. Made once in the entry and passed down to every operation that
/// changes the world. An operation that only looks takes a `ReadOnlyPlatform`; one that takes neither is
/// pure.
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
};

/// The same, for whoever only looks: files, databases and applications can't be changed through it, and there
/// is no Trash. So the compiler proves that a scan, a plan or a dry run changes nothing. Tools can be started
/// all the same, since looking needs `ps` and `find`; which ones is the caller's to answer for.
///
/// A handful of references, made from the whole wherever one is asked for. Who keeps it longer than a call
/// lasts keeps a copy.
struct ReadOnlyPlatform {
  ReadOnlyPlatform(const Platform& whole)
      : files(whole.files),
        processes(whole.processes),
        volumes(whole.volumes),
        applications(whole.applications),
        clock(whole.clock),
        places(whole.places),
        databases(whole.databases) {}

  const FileSystem& files;
  Processes& processes;
  const Volumes& volumes;
  const Applications& applications;
  Clock& clock;
  const Places& places;
  const Databases& databases;
};

}  // namespace quarn
