#include "tests/support/linux/LookingCalls.h"

#include <cstdint>
#include <fcntl.h>
#include <map>
#include <sys/syscall.h>

namespace scene {
namespace {

/// Where a call says what it looks at.
enum class Place { path, folderAndPath, file };

struct Shape {
  std::string name;
  Place place;
};

const std::map<std::uint64_t, Shape> shapes = {
#ifdef SYS_stat
    {SYS_stat, {"stat", Place::path}},
    {SYS_lstat, {"lstat", Place::path}},
    {SYS_open, {"open", Place::path}},
    {SYS_access, {"access", Place::path}},
    {SYS_readlink, {"readlink", Place::path}},
#endif
    {SYS_newfstatat, {"fstatat", Place::folderAndPath}},
    {SYS_statx, {"statx", Place::folderAndPath}},
    {SYS_openat, {"openat", Place::folderAndPath}},
    {SYS_faccessat, {"faccessat", Place::folderAndPath}},
    {SYS_faccessat2, {"faccessat2", Place::folderAndPath}},
    {SYS_readlinkat, {"readlinkat", Place::folderAndPath}},
    {SYS_statfs, {"statfs", Place::path}},
    {SYS_fstat, {"fstat", Place::file}},
    {SYS_fstatfs, {"fstatfs", Place::file}},
    {SYS_getdents64, {"getdents", Place::file}},
    {SYS_read, {"read", Place::file}},
    {SYS_pread64, {"pread", Place::file}},
    {SYS_flistxattr, {"flistxattr", Place::file}},
    {SYS_fgetxattr, {"fgetxattr", Place::file}},
};

bool makesFile(const CallStop& stop) {
  const auto& entry = stop.entry;
#ifdef SYS_open
  if (entry.nr == SYS_open) return (entry.args[1] & (O_CREAT | O_TRUNC)) != 0;
#endif
  return entry.nr == SYS_openat && (entry.args[2] & (O_CREAT | O_TRUNC)) != 0;
}

std::string placeOf(const TracedProgram& program, const CallStop& stop, Place place) {
  const auto& arguments = stop.entry.args;
  if (place == Place::path) return program.textAt(arguments[0]);
  const std::string at = program.pathOf(static_cast<int>(arguments[0]));
  if (place == Place::file) return at;
  const std::string path = program.textAt(arguments[1]);
  if (path.empty() || path.starts_with("/")) return path.empty() ? at : path;
  return at + "/" + path;
}

bool belongsToTheLoader(const std::string& path) {
  return path.starts_with("/lib") || path.starts_with("/usr/lib/") || path.starts_with("/etc/ld.so");
}

}  // namespace

std::optional<std::string> lookEntered(const TracedProgram& program, const CallStop& stop) {
  if (stop.op != PTRACE_SYSCALL_INFO_ENTRY) return std::nullopt;
  const auto shape = shapes.find(stop.entry.nr);
  if (shape == shapes.end() || makesFile(stop)) return std::nullopt;
  const std::string place = placeOf(program, stop, shape->second.place);
  if (belongsToTheLoader(place) || TracedProgram::isOutput(place)) return std::nullopt;
  return shape->second.name + " " + place;
}

}  // namespace scene
