#include "RoomTree.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "Accounts.h"
#include "Sys.h"

namespace quarn::room::RoomTree {

namespace fs = std::filesystem;

namespace {

constexpr std::array macFolders = {
    "/Applications/Utilities",
    "/Library/Application Support",
    "/Library/Audio/Plug-Ins",
    "/Library/Caches",
    "/Library/LaunchAgents",
    "/Library/LaunchDaemons",
    "/Library/Logs",
    "/Library/Preferences",
    "/System/Applications/Utilities",
    "/System/Library",
    "/Users/Shared",
    "/Users/me/Applications",
    "/Users/me/Desktop",
    "/Users/me/Documents",
    "/Users/me/Downloads",
    "/Users/me/Library/Application Scripts",
    "/Users/me/Library/Application Support",
    "/Users/me/Library/Caches",
    "/Users/me/Library/Containers",
    "/Users/me/Library/Group Containers",
    "/Users/me/Library/HTTPStorages",
    "/Users/me/Library/LaunchAgents",
    "/Users/me/Library/Logs",
    "/Users/me/Library/Preferences",
    "/Users/me/Library/Saved Application State",
    "/Users/me/Library/WebKit",
    "/Volumes",
    "/dev",
    "/proc",
    "/run",
    "/tmp",
    "/usr/local/bin",
    "/usr/local/libexec",
    "/usr/libexec/quarn-room",
    "/var/db",
    "/var/log",
    "/var/run",
    "/var/tmp",
};

// Tools that quarn starts by fixed path: real copies, so that a test may also write over one in place, which
// through a link would reach for the host's.
constexpr std::array replaceableTools = {"bash", "du", "find", "ps", "rsync"};

class Builder {
 public:
  Builder(const RoomSite& site, const std::string& executable)
      : site_(site), hostExecutable_(site.host + executable) {}

  std::vector<Bind> build(const Options& options, unsigned uid, unsigned gid) {
    for (const char* folder : macFolders) makeFolders(inRoom(folder));
    makeFolders(inRoom(hostInRoom));
    for (const char* open : {"/tmp", "/var/tmp"}) check(::chmod(inRoom(open).c_str(), 01777), open);
    topLevel();
    copyReplaceableTools();
    etc(uid, gid);
    standIns();
    ownCommands(options);
    binds(options);
    return std::move(binds_);
  }

 private:
  std::string inRoom(const std::string& path) const { return site_.root + path; }
  std::string onHost(const std::string& path) const { return site_.host + path; }

  // A writable folder in which every entry of the host's folder is a link: half a millisecond for a thousand
  // tools, where copies would take a second and an overlay is not allowed everywhere.
  void linkFarm(const std::string& folder) {
    makeFolders(inRoom(folder));
    std::error_code error;
    const Descriptor room(check(::open(inRoom(folder).c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC), folder));
    for (const auto& entry : fs::directory_iterator(onHost(folder), error)) {
      const std::string name = entry.path().filename().string();
      const std::string target = hostInRoom + folder + "/" + name;
      if (::symlinkat(target.c_str(), room.number(), name.c_str()) != 0 && errno != EEXIST)
        failWithErrno(folder + "/" + name);
    }
  }

  void showFolder(const std::string& folder) {
    makeFolders(inRoom(folder));
    binds_.push_back({folder, folder});
  }

  void copyLink(const fs::directory_entry& entry, const std::string& to) {
    std::error_code error;
    fs::copy_symlink(entry.path(), inRoom(to), error);
  }

  static bool holdsTools(const std::string& name) {
    return name == "bin" || name == "sbin" || name == "libexec";
  }

  void childrenOf(const std::string& folder, bool (*wanted)(const std::string&)) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(onHost(folder.empty() ? "/" : folder), error)) {
      const std::string name = entry.path().filename().string();
      const std::string path = folder + "/" + name;
      if (!wanted(name)) continue;
      if (entry.is_symlink())
        copyLink(entry, path);
      else if (path == "/usr" || path == "/usr/local")
        childrenOf(path, [](const std::string&) { return true; });
      else if (entry.is_directory() && holdsTools(name))
        linkFarm(path);
      else if (entry.is_directory())
        showFolder(path);
    }
  }

  void topLevel() {
    childrenOf("", [](const std::string& name) {
      return name == "usr" || name == "bin" || name == "sbin" || name.rfind("lib", 0) == 0;
    });
  }

  void copyTool(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::remove(inRoom(to), error);
    fs::copy_file(from, inRoom(to), error);
    if (error) throw RoomError(from + ": " + error.message());
  }

  void copyReplaceableTools() {
    for (const std::string folder : {"/usr/bin", "/bin"}) {
      if (folder == "/bin" && fs::is_symlink(inRoom(folder))) continue;
      for (const std::string tool : replaceableTools)
        if (fs::is_regular_file(onHost(folder + "/" + tool)))
          copyTool(onHost(folder + "/" + tool), folder + "/" + tool);
    }
  }

  void ownFile(const std::string& path, const std::string& content) {
    std::error_code error;
    fs::remove(inRoom(path), error);
    writeFile(inRoom(path), content);
  }

  void etc(unsigned uid, unsigned gid) {
    linkFarm("/etc");
    ownFile("/etc/passwd", Accounts::passwd(onHost("/etc/passwd"), uid, gid));
    ownFile("/etc/group", Accounts::group(onHost("/etc/group"), gid));
    std::error_code error;
    fs::remove(inRoom("/etc/mtab"), error);
    check(::symlink("/proc/self/mounts", inRoom("/etc/mtab").c_str()), "/etc/mtab");
  }

  // One copy at its own path, to be replaced by tests, and one that stays.
  void standIns() {
    std::error_code error;
    const fs::path tree = fs::path(hostExecutable_).parent_path() / "stand-ins";
    for (const auto& entry : fs::recursive_directory_iterator(tree, error)) {
      if (!entry.is_regular_file()) continue;
      const fs::path path = "/" / entry.path().lexically_relative(tree);
      makeFolders(inRoom(path.parent_path().string()));
      copyTool(entry.path().string(), path.string());
      copyTool(entry.path().string(), "/usr/libexec/quarn-room/" + path.filename().string());
    }
    if (error) throw RoomError(tree.string() + ": " + error.message());
  }

  void putLink(const std::string& target, const std::string& at) {
    std::error_code error;
    fs::remove(inRoom(at), error);
    check(::symlink(target.c_str(), inRoom(at).c_str()), at);
  }

  void ownCommands(const Options& options) {
    copyTool(hostExecutable_, "/usr/libexec/quarn-room/quarn-room");
    for (const std::string name : {"/usr/local/bin/plug", "/usr/local/bin/unplug", innerKeeper})
      putLink("/usr/libexec/quarn-room/quarn-room", name);
    for (const std::string& quarn : options.quarns) ownProgram(quarn);
  }

  // As where it is installed: the program and its companion beside each other, and on the PATH a script that
  // starts the program by its path.
  void ownProgram(const fs::path& program) {
    const std::string name = program.filename().string();
    putLink(hostInRoom + program.string(), "/usr/local/libexec/" + name);
    const fs::path companion = program.parent_path() / "external-app-launcher";
    if (fs::exists(onHost(companion.string())))
      putLink(hostInRoom + companion.string(), "/usr/local/libexec/" + companion.filename().string());
    const std::string script = "/usr/local/bin/" + name;
    ownFile(script, "#!/bin/sh\nexec \"/usr/local/libexec/${0##*/}\" \"$@\"\n");
    check(::chmod(inRoom(script).c_str(), 0755), script);
  }

  // A target inside a folder that is itself bound exists there already and cannot be made here.
  bool insideBound(const std::string& path) const {
    return std::any_of(binds_.begin(), binds_.end(),
                       [&](const Bind& bind) { return path.rfind(bind.to + "/", 0) == 0; });
  }

  void binds(const Options& options) {
    for (const HostPath& path : options.binds) {
      if (!insideBound(path.named)) makeTarget(path);
      binds_.push_back({path.real, path.named, true});
    }
  }

  void makeTarget(const HostPath& path) {
    const fs::path target = inRoom(path.named);
    if (fs::is_symlink(target)) fs::remove(target);  // of a link farm; it would lead to the host's own
    if (fs::is_directory(onHost(path.real))) return makeFolders(target.string());
    makeFolders(target.parent_path().string());
    if (!fs::exists(target)) writeFile(target.string(), "");
  }

  RoomSite site_;
  std::string hostExecutable_;
  std::vector<Bind> binds_;
};

}  // namespace

std::vector<Bind> build(const RoomSite& site, const Options& options, const std::string& executable,
                        unsigned uid, unsigned gid) {
  return Builder(site, executable).build(options, uid, gid);
}

}  // namespace quarn::room::RoomTree
