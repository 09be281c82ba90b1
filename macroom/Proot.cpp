#include "Proot.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "Drives.h"
#include "Environment.h"
#include "RoomTree.h"
#include "Sys.h"

namespace quarn::room::Proot {

namespace fs = std::filesystem;

namespace {

std::string program() {
  for (const char* path : {"/usr/bin/proot", "/usr/local/bin/proot", "/bin/proot"})
    if (::access(path, X_OK) == 0) return path;
  throw RoomError("the program proot is missing");
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

dev_t fileSystem(const std::string& path) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0 ? found.st_dev : 0;
}

// Applications of the room and of its drives are started from there.
bool runsPrograms(const struct statvfs& found) {
  return (found.f_flag & ST_NOEXEC) == 0;
}

bool isRoomy(const struct statvfs& found) {
  return found.f_bavail * found.f_frsize > (1UL << 30);
}

// The tree has thousands of links, which memory takes in a fraction of the time.
std::vector<std::string> treeCandidates() {
  std::vector<std::string> all = {variable("TMPDIR"), "/tmp", "/var/tmp"};
  struct statvfs memory {};
  if (::statvfs("/dev/shm", &memory) == 0 && runsPrograms(memory) && isRoomy(memory))
    all.insert(all.begin(), "/dev/shm");
  return all;
}

TemporaryFolder placeForTree() {
  for (const std::string& parent : treeCandidates())
    if (!parent.empty())
      if (auto folder = TemporaryFolder::make(parent)) return std::move(*folder);
  throw RoomError("no writable temporary folder");
}

// On another file system than the tree, since a move within one file system would be a rename.
std::optional<TemporaryFolder> placeForDrives(const std::string& tree) {
  const std::string ofUser = "/run/user/" + std::to_string(::geteuid());
  for (const bool mayForbidPrograms : {false, true})
    for (const std::string& parent :
         {std::string("/dev/shm"), variable("TMPDIR"), std::string("/tmp"), std::string("/var/tmp"), ofUser,
          std::string("/run/lock"), variable("HOME"), std::string("/dev")}) {
      struct statvfs found {};
      if (parent.empty() || ::statvfs(parent.c_str(), &found) != 0) continue;
      if (fileSystem(parent) == fileSystem(tree) || !(mayForbidPrograms || runsPrograms(found))) continue;
      if (auto folder = TemporaryFolder::make(parent)) return folder;
    }
  return std::nullopt;
}

void mountTable(const std::string& path) {
  std::error_code error;
  fs::remove(path, error);
  writeFile(path, "/dev/root / rootfs rw 0 0\n");
}

struct Places {
  TemporaryFolder base;    // holds the tree
  TemporaryFolder drives;  // becomes /Volumes
  std::string tree() const { return base.path() + "/root"; }
};

Places makePlaces() {
  TemporaryFolder base = placeForTree();
  auto drives = placeForDrives(base.path());
  if (!drives) throw RoomError("no second writable file system for drives");
  Places places{std::move(base), std::move(*drives)};
  makeFolders(places.tree());
  check(::chmod(places.drives.path().c_str(), 0755), places.drives.path());
  return places;
}

std::vector<std::string> words(const Options& options, const Places& places, const std::vector<Bind>& binds) {
  std::vector<std::string> all = {program(), "-v", "-1", "-r", places.tree(), "-w", options.cwd};
  const auto bind = [&all](const std::string& from, const std::string& to) {
    if ((from + to).find(':') != std::string::npos)
      throw RoomError("proot takes no path with a colon: " + from);
    all.insert(all.end(), {"-b", from + ":" + to});
  };
  bind("/", hostInRoom);
  bind("/proc", "/proc");
  bind("/dev", "/dev");
  bind(places.drives.path(), "/Volumes");
  for (const Bind& each : binds) bind(each.from, each.to);
  all.push_back(innerKeeper);
  all.insert(all.end(), options.command.begin(), options.command.end());
  return all;
}

// Under a tracer AddressSanitizer can't look for leaks, and a program built with it fails at its end.
std::string sanitizerOptions() {
  const std::string callers = variable("ASAN_OPTIONS");
  return "ASAN_OPTIONS=" + (callers.empty() ? "" : callers + ":") + "detect_leaks=0";
}

Launch enter(const Options& options, const std::string& executable) {
  program();
  ::umask(022);
  Places places = makePlaces();
  const auto binds = RoomTree::build({places.tree(), ""}, options, executable, ::geteuid(), ::getegid());
  const std::string table = places.tree() + "/etc/mtab";
  mountTable(table);
  for (const DriveRequest& drive : options.drives) Drives::plugFolder(drive, places.drives.path(), table);

  Launch launch;
  launch.words = words(options, places, binds);
  launch.environment = Environment::forRoom("proot", options.cwd);
  std::erase_if(launch.environment,
                [](const std::string& each) { return each.rfind("ASAN_OPTIONS=", 0) == 0; });
  launch.environment.push_back(sanitizerOptions());
  launch.keepRights = options.keepRights;
  launch.throughTracer = true;
  launch.folders.push_back(std::move(places.base));
  launch.folders.push_back(std::move(places.drives));
  return launch;
}

}  // namespace

RoomKind kind(const Options& options, const std::string& executable) {
  return {"proot", 0, [=] { return enter(options, executable); }};
}

}  // namespace quarn::room::Proot
