#include "tests/support/linux/ChangingCalls.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <sched.h>
#include <set>
#include <sys/syscall.h>

namespace scene {
namespace {

/// What an argument means; `folder` belongs to the path behind it.
enum class Argument { none, path, folder, file, text };
using enum Argument;

struct Shape {
  std::string name;
  std::array<Argument, 5> arguments;
};

const std::map<std::uint64_t, Shape> shapes = {
#ifdef SYS_mkdir
    {SYS_mkdir, {"mkdir", {path}}},
    {SYS_rename, {"rename", {path, path}}},
    {SYS_unlink, {"unlink", {path}}},
    {SYS_rmdir, {"rmdir", {path}}},
    {SYS_link, {"link", {path, path}}},
    {SYS_symlink, {"symlink", {text, path}}},
    {SYS_creat, {"creat", {path}}},
    {SYS_chmod, {"chmod", {path}}},
    {SYS_open, {"open", {path}}},
    {SYS_vfork, {"start", {}}},
    {SYS_fork, {"start", {}}},
#endif
#ifdef SYS_renameat
    {SYS_renameat, {"renameat", {folder, path, folder, path}}},
#endif
    {SYS_mkdirat, {"mkdirat", {folder, path}}},
    {SYS_renameat2, {"renameat2", {folder, path, folder, path}}},
    {SYS_unlinkat, {"unlinkat", {folder, path}}},
    {SYS_linkat, {"linkat", {folder, path, folder, path}}},
    {SYS_symlinkat, {"symlinkat", {text, folder, path}}},
    {SYS_openat, {"openat", {folder, path}}},
    {SYS_ftruncate, {"ftruncate", {file}}},
    {SYS_truncate, {"truncate", {path}}},
    {SYS_fchmodat, {"fchmodat", {folder, path}}},
    {SYS_fchmod, {"fchmod", {file}}},
    {SYS_fchown, {"fchown", {file}}},
    {SYS_fchownat, {"fchownat", {folder, path}}},
    {SYS_utimensat, {"utimensat", {folder, path}}},
    {SYS_fsetxattr, {"fsetxattr", {file}}},
    {SYS_mknodat, {"mknodat", {folder, path}}},
    {SYS_pwrite64, {"pwrite", {file}}},
    {SYS_write, {"write", {file}}},
    {SYS_fsync, {"fsync", {file}}},
    {SYS_fdatasync, {"fdatasync", {file}}},
    {SYS_syncfs, {"syncfs", {file}}},
    {SYS_sync, {"sync", {}}},
    {SYS_clone, {"start", {}}},
    {SYS_clone3, {"start", {}}},
};

bool makesFile(std::uint64_t flags) {
  return (flags & (O_CREAT | O_TRUNC)) != 0;
}

/// One of several calls of a number, told by its flags.
bool isMeant(const TracedProgram& program, const CallStop& stop) {
  const auto& entry = stop.entry;
#ifdef SYS_open
  if (entry.nr == SYS_open) return makesFile(entry.args[1]);
#endif
  if (entry.nr == SYS_openat) return makesFile(entry.args[2]);
  if (entry.nr == SYS_clone) return (entry.args[0] & CLONE_THREAD) == 0;
  // The flags come first in what is passed.
  if (entry.nr == SYS_clone3) return (program.numberAt(entry.args[0]).value_or(0) & CLONE_THREAD) == 0;
  return true;
}

std::string below(const std::string& folder, const std::string& path) {
  return path.starts_with("/") ? path : folder + "/" + path;
}

std::vector<std::string> paths(const TracedProgram& program, const CallStop& stop, const Shape& shape) {
  std::vector<std::string> found;
  int from = AT_FDCWD;
  for (std::size_t i = 0; i < shape.arguments.size(); ++i) {
    const auto value = stop.entry.args[i];
    const int descriptor = static_cast<int>(value);
    if (shape.arguments[i] == folder) from = descriptor;
    if (shape.arguments[i] == file) found.push_back(program.pathOf(descriptor));
    if (shape.arguments[i] == text) found.push_back(program.textAt(value));
    if (shape.arguments[i] == path) {
      found.push_back(below(program.pathOf(from), program.textAt(value)));
      from = AT_FDCWD;
    }
  }
  return found;
}

}  // namespace

std::optional<Call> callEntered(const TracedProgram& program, const CallStop& stop) {
  if (stop.op != PTRACE_SYSCALL_INFO_ENTRY) return std::nullopt;
  const auto shape = shapes.find(stop.entry.nr);
  if (shape == shapes.end() || !isMeant(program, stop)) return std::nullopt;
  return Call{shape->second.name, paths(program, stop, shape->second)};
}

bool writesNoFile(const Call& call) {
  return call.name == "write" && (!call.paths[0].starts_with("/") || TracedProgram::isOutput(call.paths[0]));
}

bool changesTree(const Call& call) {
  static const std::set<std::string> others = {"write", "fsync", "fdatasync", "syncfs", "sync", "start"};
  return !others.contains(call.name);
}

std::string Call::text() const {
  std::string line = name;
  for (const std::string& each : paths) line += " " + each;
  return error == 0 ? line : line + " = " + std::to_string(error);
}

}  // namespace scene
