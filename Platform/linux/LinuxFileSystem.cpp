#include "Platform/linux/LinuxFileSystem.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/CocoaError.h"
#include "Platform/linux/AtomicWrite.h"
#include "Platform/linux/FileReader.h"
#include "Platform/linux/FolderMaker.h"
#include "Platform/linux/Mover.h"
#include "Platform/linux/ResolvedPath.h"
#include "Platform/linux/TreeRemover.h"
#include "Platform/linux/WriteError.h"
#include "Platform/posix/DirectoryReader.h"
#include "Platform/posix/HiddenFlag.h"
#include "Platform/posix/LinkText.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/Status.h"
#include "Platform/posix/TreeWalker.h"

namespace quarn {
namespace {

using CocoaError::Operation;

/// False, with `errno` set, if nothing can be told.
bool look(const Path& path, int flags, struct stat& status) {
  const PathAt at(path);
  if (at.error()) {
    errno = at.error();
    return false;
  }
  return ::fstatat(at.folder(), at.name(), &status, flags) == 0;
}

bool goesUp(const Path& path) {
  return ("/" + path.text() + "/").find("/../") != std::string::npos;
}

bool isLeftOut(Hidden hidden, int folder, const char* name) {
  if (hidden == Hidden::included) return false;
  return name[0] == '.' || (hidden == Hidden::skipped && hasHiddenFlag(folder, name));
}

}  // namespace

bool LinuxFileSystem::exists(const Path& path) const {
  struct stat status;
  return look(path, 0, status);
}

bool LinuxFileSystem::isDirectory(const Path& path) const {
  struct stat status;
  return look(path, 0, status) && S_ISDIR(status.st_mode);
}

Result<FileAttributes> LinuxFileSystem::attributes(const Path& path) const {
  struct stat status;
  if (look(path, AT_SYMLINK_NOFOLLOW, status)) return attributesFrom(status);
  return CocoaError::fromErrno(Operation::readFile, errno, path);
}

Result<std::string> LinuxFileSystem::readLink(const Path& path) const {
  const PathAt at(path);
  if (at.error()) return CocoaError::fromErrno(Operation::readFile, at.error(), path);
  if (auto text = linkText(at.folder(), at.name())) return *std::move(text);
  return CocoaError::fromErrno(Operation::readFile, errno, path);
}

Path LinuxFileSystem::resolvingLinks(const Path& path) const {
  const auto found = resolved(path);
  return found ? *found : standardized(path);
}

Path LinuxFileSystem::standardized(const Path& path) const {
  if (goesUp(path)) {
    if (const auto found = resolved(path)) return *found;
  }
  return path.simplified();
}

Result<std::vector<std::string>> LinuxFileSystem::list(const Path& folder, Hidden hidden) const {
  const PathAt at(folder);
  const Descriptor opened(
      at.error() ? -1 : ::openat(at.folder(), at.name(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!opened.isOpen())
    return CocoaError::fromErrno(Operation::listFolder, at.error() ? at.error() : errno, folder);
  DirectoryReader reader;
  reader.begin(opened.number());
  std::vector<std::string> names;
  while (const auto entry = reader.next()) {
    if (!isLeftOut(hidden, opened.number(), entry->name)) names.emplace_back(entry->name);
  }
  if (reader.error()) return CocoaError::fromErrno(Operation::listFolder, reader.error(), folder);
  return names;
}

void LinuxFileSystem::walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const {
  walkTree(root, hidden, visitor);
}

Result<std::string> LinuxFileSystem::read(const Path& file) const {
  std::string content;
  const int error = readWhole(PathAt(file), content);
  if (error != 0) return CocoaError::fromErrno(Operation::readFile, error, file);
  return content;
}

Result<void> LinuxFileSystem::createFolder(const Path& folder) {
  return makeFolder(folder);
}

Result<void> LinuxFileSystem::createLink(const Path& link, const std::string& target) {
  const PathAt at(link);
  if (at.error()) return writeError(Operation::save, at.error(), link);
  if (::symlinkat(target.c_str(), at.folder(), at.name()) == 0) return {};
  return writeError(Operation::save, errno, link);
}

Result<void> LinuxFileSystem::remove(const Path& item) {
  const int error = removeTree(PathAt(item));
  if (error == 0) return {};
  return CocoaError::fromErrno(Operation::remove, error, item);
}

Result<void> LinuxFileSystem::move(const Path& source, const Path& destination) {
  const int error = moveItem(PathAt(source), PathAt(destination), destination.parent());
  if (error == 0) return {};
  return writeError(Operation::move, error, source, destination);
}

Result<void> LinuxFileSystem::writeAtomically(const Path& file, std::string_view content) {
  const int error = quarn::writeAtomically(file, content);
  if (error == 0) return {};
  return writeError(Operation::saveAtomically, error, file);
}

}  // namespace quarn
