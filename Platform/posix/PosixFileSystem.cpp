#include "Platform/posix/PosixFileSystem.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/CocoaError.h"
#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/Trees.h"
#include "Platform/system/FolderReader.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

using CocoaError::Operation;

/// Looks an item up and follows links. Returns whether it exists.
bool follow(const Path& path, struct stat& status) {
  const PathAt at(path);
  return !at.error() && ::fstatat(at.folder(), at.name(), &status, 0) == 0;
}

/// Returns 0 or the error number.
int makeEmpty(const PathAt& place, FileKind folderOrRegular) {
  if (place.error()) return place.error();
  if (folderOrRegular == FileKind::folder)
    return ::mkdirat(place.folder(), place.name(), 0700) == 0 ? 0 : errno;
  // O_EXCL makes this atomic: of several programs only one creates the file (open(2)).
  const Descriptor made(
      ::openat(place.folder(), place.name(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  return made.isOpen() ? 0 : errno;
}

/// unlinkat(2) refuses a folder, so a tree that replaces the link after the check is not removed.
int unlinkLink(const PathAt& link) {
  if (link.error()) return link.error();
  struct stat status;
  if (::fstatat(link.folder(), link.name(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (!S_ISLNK(status.st_mode)) return EINVAL;
  return ::unlinkat(link.folder(), link.name(), 0) == 0 ? 0 : errno;
}

/// Changes a file or a folder, but not what a link leads to.
int setMode(const PathAt& item, mode_t mode) {
  if (item.error()) return item.error();
  struct stat status;
  if (::fstatat(item.folder(), item.name(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (S_ISLNK(status.st_mode)) return EINVAL;
  return ::fchmodat(item.folder(), item.name(), mode, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

}  // namespace

bool PosixFileSystem::exists(const Path& path) const {
  struct stat status;
  return follow(path, status);
}

bool PosixFileSystem::isFolder(const Path& path) const {
  struct stat status;
  return follow(path, status) && S_ISDIR(status.st_mode);
}

Result<FileAttributes> PosixFileSystem::attributes(const Path& path) const {
  const PathAt at(path);
  if (at.error()) return CocoaError::fromErrno(Operation::readFile, at.error(), path);
  if (const auto found = itemAttributes(at.folder(), at.name())) return *found;
  return CocoaError::fromErrno(Operation::readFile, errno, path);
}

Result<std::string> PosixFileSystem::readSymbolicLink(const Path& path) const {
  const PathAt at(path);
  if (at.error()) return CocoaError::fromErrno(Operation::readFile, at.error(), path);
  if (auto text = linkText(at.folder(), at.name())) return *std::move(text);
  return CocoaError::fromErrno(Operation::readFile, errno, path);
}

Result<std::vector<std::string>> PosixFileSystem::list(const Path& folder, Hidden hidden) const {
  const PathAt at(folder);
  // O_NOFOLLOW: a link to a folder must not be listed as if it were the folder.
  const Descriptor opened(
      at.error() ? -1 : ::openat(at.folder(), at.name(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!opened.isOpen())
    return CocoaError::fromErrno(Operation::listFolder, at.error() ? at.error() : errno, folder);
  FolderReader reader;
  reader.begin(opened.number());
  std::vector<std::string> names;
  while (const auto entry = reader.next()) {
    if (!isLeftOut(hidden, opened.number(), entry->name)) names.emplace_back(entry->name);
  }
  if (reader.error()) return CocoaError::fromErrno(Operation::listFolder, reader.error(), folder);
  return names;
}

void PosixFileSystem::walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const {
  walkTree(root, hidden, visitor);
}

void PosixFileSystem::walkSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) const {
  walkTreeSorted(root, hidden, visitor);
}

Result<std::string> PosixFileSystem::read(const Path& file) const {
  std::string content;
  const int error = readWhole(PathAt(file), content);
  if (error != 0) return CocoaError::fromErrno(Operation::readFile, error, file);
  return content;
}

Result<std::string> PosixFileSystem::readStart(const Path& file, std::size_t count) const {
  std::string content;
  const int error = quarn::readStart(PathAt(file), count, content);
  if (error != 0) return CocoaError::fromErrno(Operation::readFile, error, file);
  return content;
}

std::optional<PlatformError> PosixFileSystem::obstacleToRemoval(const Path& item) const {
  const int error = removalObstacle(item);
  if (error == 0) return std::nullopt;
  return CocoaError::fromErrno(Operation::remove, error, item);
}

Result<void> PosixFileSystem::createFolder(const Path& folder) {
  return makeFolder(folder);
}

Result<void> PosixFileSystem::createSymbolicLink(const Path& link, const std::string& target) {
  const PathAt at(link);
  if (at.error()) return writeError(Operation::save, at.error(), link);
  if (::symlinkat(target.c_str(), at.folder(), at.name()) == 0) return {};
  return writeError(Operation::save, errno, link);
}

Result<void> PosixFileSystem::claim(const Path& place, FileKind folderOrRegular) {
  const int error = makeEmpty(PathAt(place), folderOrRegular);
  if (error == 0) return {};
  return writeError(Operation::save, error, place);
}

Result<void> PosixFileSystem::remove(const Path& item) {
  const int error = removeTree(PathAt(item));
  if (error == 0) return {};
  return CocoaError::fromErrno(Operation::remove, error, item);
}

Result<void> PosixFileSystem::removeSymbolicLink(const Path& link) {
  const int error = unlinkLink(PathAt(link));
  if (error == 0) return {};
  return CocoaError::fromErrno(Operation::remove, error, link);
}

Result<bool> PosixFileSystem::rename(const Path& source, const Path& destination) {
  const PathAt from(source), to(destination);
  int error = from.error() ? from.error() : to.error();
  if (error == 0) error = renameExclusively(from.folder(), from.name(), to.folder(), to.name());
  // EXDEV: the destination lies on another volume, which is an answer and not a failure (rename(2)).
  if (error == 0 || error == EXDEV) return error == 0;
  return writeError(Operation::move, error, source, destination);
}

Result<void> PosixFileSystem::copy(const Path& source, const Path& destination) {
  const int error = copyTree(PathAt(source), PathAt(destination), destination.parent());
  if (error == 0) return {};
  return writeError(Operation::copy, error, source, destination);
}

Result<void> PosixFileSystem::copyAttributes(const Path& source, const Path& destination) {
  const int error = copyItemMetadata(PathAt(source), PathAt(destination));
  if (error == 0) return {};
  return writeError(Operation::copy, error, source, destination);
}

Result<void> PosixFileSystem::setPermissions(const Path& item, std::uint32_t mode) {
  const int error = setMode(PathAt(item), static_cast<mode_t>(mode));
  if (error == 0) return {};
  return CocoaError::fromErrno(Operation::save, error, item);
}

Result<void> PosixFileSystem::writeAtomically(const Path& file, std::string_view content) {
  const int error = quarn::writeAtomically(file, content);
  if (error == 0) return {};
  return writeError(Operation::saveAtomically, error, file);
}

Result<void> PosixFileSystem::flush(const Path& item) {
  const int error = flushVolume(item);
  if (error == 0) return {};
  return writeError(Operation::save, error, item);
}

}  // namespace quarn
