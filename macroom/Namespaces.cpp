#include "Namespaces.h"

#include <array>
#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Drives.h"
#include "Environment.h"
#include "Mounts.h"
#include "RoomTree.h"
#include "Sys.h"

namespace quarn::room::Namespaces {

namespace {

// Any folder that every host has; the room's root covers it in this namespace only.
const std::string base = "/tmp";
const std::string host = hostInRoom;

struct Caller {
  uid_t uid;
  gid_t gid;
  std::string terminal;  // empty without one
};

Caller findCaller() {
  const char* terminal = ::ttyname(STDIN_FILENO);
  return {::geteuid(), ::getegid(), terminal == nullptr ? "" : terminal};
}

// The user who makes a user namespace is root in it, and so may mount there, see user_namespaces(7).
void becomeItsRoot(const Caller& caller) {
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", "0 " + std::to_string(caller.uid) + " 1\n");
  writeFile("/proc/self/gid_map", "0 " + std::to_string(caller.gid) + " 1\n");
}

// Not pivot_root: that is refused where the caller lives in a chroot.
void moveIntoEmptyRoot() {
  Mounts::cutOff();
  Mounts::memory(base, "mode=755");
  makeFolders(base + host);
  Mounts::bind("/", base + host);
  // The copy of the host's tree holds the room's root too, on top of the host's own folder.
  check(::umount2((base + host + base).c_str(), MNT_DETACH), base);
  check(::chroot(base.c_str()), "chroot");
  check(::chdir("/"), "/");
}

void touch(const std::string& path) {
  writeFile(path, "");
}

void link(const char* target, const char* at) {
  check(::symlink(target, at), at);
}

void devices() {
  for (const std::string name : {"null", "zero", "full", "random", "urandom", "tty"}) {
    touch("/dev/" + name);
    Mounts::bind(host + "/dev/" + name, "/dev/" + name);
  }
  makeFolders("/dev/pts");
  makeFolders("/dev/shm");
  Mounts::mount("devpts", "/dev/pts", MS_NOSUID | MS_NOEXEC, "newinstance,ptmxmode=0666,mode=0620");
  Mounts::memory("/dev/shm", "mode=1777");
  link("pts/ptmx", "/dev/ptmx");
  link("/proc/self/fd", "/dev/fd");
  link("/proc/self/fd/0", "/dev/stdin");
  link("/proc/self/fd/1", "/dev/stdout");
  link("/proc/self/fd/2", "/dev/stderr");
}

// The room's own terminals do not hold the caller's, which programs look for by name.
void callersTerminal(const std::string& terminal) {
  if (terminal.empty()) return;
  touch("/dev/console");
  Mounts::bind(host + terminal, "/dev/console");
}

void processes(bool ownProcesses) {
  if (ownProcesses)
    Mounts::mount("proc", "/proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, "");
  else
    Mounts::bind(host + "/proc", "/proc");
}

void bindAll(const std::vector<Bind>& binds) {
  for (const Bind& bind : binds) {
    Mounts::bind(host + bind.from, bind.to);
    if (!bind.writable) Mounts::makeReadOnly(bind.to);
  }
  Mounts::makeReadOnly(host);
}

Launch enter(const Options& options, const std::string& executable, const Caller& caller, int namespaces) {
  const bool asItsRoot = (namespaces & CLONE_NEWUSER) != 0;
  if (asItsRoot) becomeItsRoot(caller);
  ::umask(022);
  moveIntoEmptyRoot();
  const Caller inside = asItsRoot ? Caller{0, 0, ""} : caller;
  const auto binds = RoomTree::build({"", host}, options, executable, inside.uid, inside.gid);
  devices();
  callersTerminal(caller.terminal);
  processes((namespaces & CLONE_NEWPID) != 0);
  bindAll(binds);
  for (const DriveRequest& drive : options.drives) Drives::plug(drive, "mounts");
  Launch launch;
  launch.words = options.command;
  launch.environment = Environment::forRoom("mounts", options.cwd);
  launch.cwd = options.cwd;
  launch.keepRights = options.keepRights;
  return launch;
}

}  // namespace

std::vector<RoomKind> kinds(const Options& options, const std::string& executable) {
  const Caller caller = findCaller();
  std::vector<RoomKind> all;
  for (const int namespaces :
       {CLONE_NEWNS | CLONE_NEWPID, CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWUSER, CLONE_NEWNS | CLONE_NEWUSER})
    all.push_back({(namespaces & CLONE_NEWUSER) != 0 ? "user namespace" : "mounts", namespaces,
                   [=] { return enter(options, executable, caller, namespaces); }});
  return all;
}

}  // namespace quarn::room::Namespaces
