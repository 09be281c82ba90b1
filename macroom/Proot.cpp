#include "Proot.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "Drives.h"
#include "Environment.h"
#include "RoomError.h"
#include "RoomTree.h"

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

TemporaryFolder placeForTree() {
  for (const std::string& parent : {variable("TMPDIR"), std::string("/tmp"), std::string("/var/tmp")})
    if (!parent.empty())
      if (auto folder = TemporaryFolder::make(parent)) return std::move(*folder);
  throw RoomError("no writable temporary folder");
}

dev_t fileSystem(const std::string& path) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0 ? found.st_dev : 0;
}

bool runsPrograms(const std::string& path) {
  struct statvfs found {};
  return ::statvfs(path.c_str(), &found) == 0 && (found.f_flag & ST_NOEXEC) == 0;
}

// The applications of a drive are to be started there, so a file system that forbids it comes last.
std::optional<TemporaryFolder> placeForDrives(const std::string& tree) {
  const std::string ofUser = "/run/user/" + std::to_string(::geteuid());
  for (const bool mayForbidPrograms : {false, true})
    for (const std::string& parent : {std::string("/dev/shm"), ofUser, std::string("/run/lock"),
                                      std::string("/var/tmp"), variable("HOME"), std::string("/dev")})
      if (!parent.empty() && fs::is_directory(parent) && fileSystem(parent) != fileSystem(tree) &&
          (mayForbidPrograms || runsPrograms(parent)))
        if (auto folder = TemporaryFolder::make(parent)) return folder;
  return std::nullopt;
}

void mountTable(const std::string& path) {
  std::error_code error;
  fs::remove(path, error);
  writeFile(path, "/dev/root / rootfs rw 0 0\n");
}

std::vector<std::string> words(const Options& options, const std::vector<TemporaryFolder>& folders,
                               const std::vector<Bind>& binds) {
  std::vector<std::string> all = {program(), "--kill-on-exit", "-r", folders[0].path(), "-w", options.cwd};
  const auto bind = [&all](const std::string& from, const std::string& to) {
    all.insert(all.end(), {"-b", from + ":" + to});
  };
  bind("/", hostInRoom);
  bind("/proc", "/proc");
  bind("/dev", "/dev");
  bind(folders[1].path(), "/Volumes");
  for (const Bind& each : binds) bind(each.from, each.to);
  all.insert(all.end(), options.command.begin(), options.command.end());
  return all;
}

Launch enter(const Options& options, const std::string& executable) {
  program();
  ::umask(022);
  std::vector<TemporaryFolder> folders;
  folders.push_back(placeForTree());
  const std::string tree = folders[0].path();
  auto drives = placeForDrives(tree);
  if (!drives) throw RoomError("no second writable file system for drives");
  folders.push_back(std::move(*drives));
  for (const auto& folder : folders) ::chmod(folder.path().c_str(), 0755);
  const auto binds = RoomTree::build({tree, ""}, options, executable, ::geteuid(), ::getegid());
  mountTable(tree + "/etc/mtab");
  for (const DriveRequest& drive : options.drives)
    Drives::plugFolder(drive, folders[1].path(), tree + "/etc/mtab");
  auto all = words(options, folders, binds);
  return {std::move(all), Environment::forRoom("proot", options.cwd), "", options.keepRights,
          std::move(folders)};
}

}  // namespace

RoomKind kind(const Options& options, const std::string& executable) {
  return {"proot", 0, [=] { return enter(options, executable); }};
}

}  // namespace quarn::room::Proot
