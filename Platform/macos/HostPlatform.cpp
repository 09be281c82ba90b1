#include "Platform/HostPlatform.h"

#include "Platform/macos/MacPlatform.h"
#include "Platform/posix/Descriptor.h"
#include "Platform/posix/PosixPlatform.h"

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
  MacFileEvents events;
  Platform platform{files, processes, volumes, applications, trash, clock, places, locks, databases, events};
};

}  // namespace

Platform& hostPlatform() {
  static Host host;
  return host.platform;
}

}  // namespace quarn
