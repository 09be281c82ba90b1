#include "TestRoom.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <sched.h>
#include <sstream>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"

namespace quarn::tests {

namespace fs = std::filesystem;

namespace {

bool canMount(bool inOwnUserNamespace) {
  ::prctl(PR_SET_DUMPABLE, 1);  // whoever changed its user may not write its own map otherwise
  const std::string map = "0 " + std::to_string(::geteuid()) + " 1";
  if (::unshare(CLONE_NEWNS | (inOwnUserNamespace ? CLONE_NEWUSER : 0)) != 0) return false;
  if (inOwnUserNamespace && !(std::ofstream("/proc/self/uid_map") << map).flush()) return false;
  // The root of a chroot may be no mount point, and then can't be made private (EINVAL, see mount(2)). There
  // the namespace alone has to tell.
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return errno == EINVAL;
  return ::mount("tmpfs", "/tmp", "tmpfs", 0, nullptr) == 0;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, Way way) {
  if (way == Way::mounts) return out << "mounts";
  return out << (way == Way::userNamespace ? "userNamespace" : "proot");
}

TestRoom::TestRoom(Way way) : way_(way) {
  fs::permissions(folder_.text(), fs::perms(0755));
  fs::copy(QUARN_ROOM, folder_.at("quarn-room"));
  fs::copy(fs::path(QUARN_ROOM).parent_path() / "stand-ins", folder_.at("stand-ins"),
           fs::copy_options::recursive);
}

// Asked of the kernel and not of quarn-room, whose failure must not look like a machine that forbids rooms.
std::string TestRoom::whyNot() const {
  if (way_ == Way::proot) return ::access("/usr/bin/proot", X_OK) == 0 ? "" : "proot is not installed";
  const bool ownNamespace = way_ == Way::userNamespace;
  const pid_t child = ::fork();
  if (child == 0) {
    goThisWay();
    ::_exit(canMount(ownNamespace) ? 0 : 1);
  }
  int raw = 0;
  ::waitpid(child, &raw, 0);
  if (raw == 0) return "";
  return ownNamespace ? "users may not make namespaces here" : "this user may not mount here";
}

void TestRoom::goThisWay() const {
  if (way_ == Way::proot) ::setenv("QUARN_ROOM_FORCE", "proot", 1);
  if (way_ != Way::userNamespace || ::geteuid() != 0) return;
  constexpr uid_t nobody = 65534;
  if (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
      ::setresuid(nobody, nobody, nobody) != 0)
    ::_exit(126);
}

Finished TestRoom::operator()(const std::string& script, std::vector<std::string> options) const {
  return start(script, std::move(options)).finish();
}

Started TestRoom::start(const std::string& script, std::vector<std::string> options) const {
  std::vector<std::string> words = {program()};
  words.insert(words.end(), options.begin(), options.end());
  words.insert(words.end(), {"--", "bash", "-c", script});
  return Started(words, [this] { goThisWay(); });
}

std::vector<std::string> abandonedRooms() {
  std::vector<std::string> found;
  for (const char* parent : {"/tmp", "/dev/shm", "/var/tmp", "/dev", "/run/lock"}) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(parent, error)) {
      if (entry.path().filename().string().rfind("quarn-room.", 0) != 0) continue;
      const Descriptor room(::open(entry.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      if (room.isOpen() && ::flock(room.number(), LOCK_EX | LOCK_NB) == 0)
        found.push_back(entry.path().string());
    }
  }
  return found;
}

std::vector<pid_t> processesWith(const std::string& text) {
  std::vector<pid_t> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc", error)) {
    const int pid = std::atoi(entry.path().filename().c_str());
    if (pid <= 0 || pid == ::getpid()) continue;
    const std::ifstream file(entry.path() / "cmdline", std::ios::binary);
    std::ostringstream line;
    line << file.rdbuf();  // of a process that ends meanwhile nothing can be read
    if (line.str().find(text) != std::string::npos) found.push_back(pid);
  }
  return found;
}

}  // namespace quarn::tests
