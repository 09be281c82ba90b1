#include "Drives.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <regex>
#include <stdio.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Sys.h"

namespace quarn::room {

std::optional<DriveRequest> DriveRequest::parse(const std::string& text) {
  static const std::regex form("([^/]+)=([1-9][0-9]*[kKmMgG]?)(,ro)?");
  std::smatch match;
  if (!std::regex_match(text, match, form)) return std::nullopt;
  if (match[1] == "." || match[1] == "..") return std::nullopt;
  return DriveRequest{match[1], match[2], match[3].matched};
}

namespace Drives {

namespace fs = std::filesystem;

namespace {

const std::string volumes = "/Volumes";
const std::string mtab = "/etc/mtab";

void mountDrive(const DriveRequest& request) {
  const std::string path = volumes + "/" + request.name;
  check(::mkdir(path.c_str(), 0755), path);
  unsigned long flags = MS_NOSUID | MS_NODEV;
  if (request.readOnly) flags |= MS_RDONLY;
  const std::string data = "mode=755,size=" + request.size;
  if (::mount("tmpfs", path.c_str(), "tmpfs", flags, data.c_str()) == 0) return;
  const int why = errno;
  ::rmdir(path.c_str());
  errno = why;
  failWithErrno(path);
}

void pullOut(const std::string& path) {
  check(::umount2(path.c_str(), MNT_DETACH), path);
  check(::rmdir(path.c_str()), path);
}

// As the kernel writes such names in its own table.
std::string escaped(const std::string& name) {
  std::string text;
  for (const char c : name) {
    if (c == ' ')
      text += "\\040";
    else if (c == '\t')
      text += "\\011";
    else if (c == '\n')
      text += "\\012";
    else if (c == '\\')
      text += "\\134";
    else
      text += c;
  }
  return text;
}

std::string tableStart(const std::string& name) {
  return "tmpfs " + volumes + "/" + escaped(name) + " ";
}

void addLine(const std::string& table, const DriveRequest& request) {
  std::ofstream file(table, std::ios::app | std::ios::binary);
  file << tableStart(request.name) << "tmpfs " << (request.readOnly ? "ro" : "rw") << " 0 0\n";
  if (!file.flush()) failWithErrno(table);
}

void dropLine(const std::string& table, const std::string& name) {
  std::ifstream file(table, std::ios::binary);
  std::string rest;
  bool found = false;
  for (std::string line; std::getline(file, line);) {
    const bool isIt = line.rfind(tableStart(name), 0) == 0;
    found = found || isIt;
    if (!isIt) rest += line + "\n";
  }
  if (!found) throw RoomError(volumes + "/" + name + ": no such drive");
  writeFile(table, rest);
}

// Moved out of sight first, so that it is gone at once, as a drive is, however much it holds.
void removeFolder(const std::string& name) {
  const std::string hidden = volumes + "/.unplugged-" + std::to_string(::getpid());
  check(::rename((volumes + "/" + name).c_str(), hidden.c_str()), volumes + "/" + name);
  std::error_code ignored;
  fs::remove_all(hidden, ignored);
}

}  // namespace

void plugFolder(const DriveRequest& request, const std::string& folder, const std::string& table) {
  const std::string path = folder + "/" + request.name;
  check(::mkdir(path.c_str(), 0755), path);
  if (request.readOnly) check(::chmod(path.c_str(), 0555), path);
  addLine(table, request);
}

void plug(const DriveRequest& request, const std::string& kind) {
  if (kind == "proot")
    plugFolder(request, volumes, mtab);
  else
    mountDrive(request);
}

void unplug(const std::string& name, const std::string& kind) {
  if (kind != "proot") return pullOut(volumes + "/" + name);
  dropLine(mtab, name);
  removeFolder(name);
}

}  // namespace Drives

}  // namespace quarn::room
