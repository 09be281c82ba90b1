#include "Platform/HostPlatform.h"

#include "Platform/linux/LinuxPlatform.h"
#include "Platform/posix/Descriptor.h"
#include "Platform/posix/PosixPlatform.h"

namespace quarn {
namespace {

struct Host {
  // Before anything else is opened.
  Host() { ensureStandardStreams(); }

  LinuxFileSystem files;
  PosixProcesses processes;
  LinuxVolumes volumes;
  LinuxApplications applications;
  LinuxPlaces places;
  LinuxTrash trash{places};
  SystemClock clock;
  FolderLocks locks;
  SQLiteDatabases databases;
  LinuxFileEvents events;
  Platform platform{files, processes, volumes, applications, trash, clock, places, locks, databases, events};
};

}  // namespace

Platform& hostPlatform() {
  static Host host;
  return host.platform;
}

}  // namespace quarn
