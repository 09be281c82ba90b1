#include "Platform/HostPlatform.h"

#include "Platform/macos/MacApplications.h"
#include "Platform/macos/MacFileSystem.h"
#include "Platform/macos/MacPlaces.h"
#include "Platform/macos/MacTrash.h"
#include "Platform/macos/MacVolumes.h"
#include "Platform/posix/Descriptor.h"
#include "Platform/posix/FolderLocks.h"
#include "Platform/posix/PosixProcesses.h"
#include "Platform/posix/SQLiteDatabases.h"
#include "Platform/posix/SystemClock.h"

namespace quarn {
namespace {

struct Host {
  // Before anything else is opened.
  Host() { ensureStandardStreams(); }

  MacFileSystem files;
  PosixProcesses processes;
  MacVolumes volumes;
  MacApplications applications;
  MacPlaces places;
  MacTrash trash;
  SystemClock clock;
  FolderLocks locks;
  SQLiteDatabases databases;
  Platform platform{files, processes, volumes, applications, trash, clock, places, locks, databases};
};

}  // namespace

Platform& hostPlatform() {
  static Host host;
  return host.platform;
}

}  // namespace quarn
