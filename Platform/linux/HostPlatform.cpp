#include "Platform/HostPlatform.h"

#include "Platform/linux/LinuxApplications.h"
#include "Platform/linux/LinuxFileSystem.h"
#include "Platform/linux/LinuxPlaces.h"
#include "Platform/linux/LinuxTrash.h"
#include "Platform/linux/LinuxVolumes.h"
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

  LinuxFileSystem files;
  PosixProcesses processes;
  LinuxVolumes volumes;
  LinuxApplications applications;
  LinuxPlaces places;
  LinuxTrash trash{places};
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
