#include "Platform/CocoaError.h"

#include <cerrno>

namespace quarn::CocoaError {
namespace {

using namespace CocoaErrorCode;

bool reads(Operation operation) {
  return operation == Operation::readFile || operation == Operation::listFolder;
}

/// A Mac has separate codes for reading and for writing, and several error numbers share one code
/// (NSFileReadUnknownError and its neighbours in FoundationErrors.h).
int readingCode(int errnoValue) {
  switch (errnoValue) {
    case ENOENT:
      return fileReadNoSuchFile;
    case EPERM:
    case EACCES:
      return fileReadNoPermission;
    case ENAMETOOLONG:
      return fileReadInvalidFileName;
    case EFBIG:
      return fileReadTooLarge;
    default:
      return fileReadUnknown;
  }
}

int writingCode(int errnoValue) {
  switch (errnoValue) {
    case ENOENT:
      return fileNoSuchFile;
    case EPERM:
    case EACCES:
      return fileWriteNoPermission;
    case ENAMETOOLONG:
      return fileWriteInvalidFileName;
    case EEXIST:
      return fileWriteFileExists;
    case ENOSPC:
    case EDQUOT:
      return fileWriteOutOfSpace;
    case EROFS:
      return fileWriteVolumeReadOnly;
    default:
      return fileWriteUnknown;
  }
}

int code(Operation operation, int errnoValue) {
  // Foundation reports ENOTEMPTY from a removal as a missing permission.
  if (operation == Operation::remove && errnoValue == ENOTEMPTY) return fileWriteNoPermission;
  return reads(operation) ? readingCode(errnoValue) : writingCode(errnoValue);
}

// The name by which a Mac shows the folder "/".
constexpr const char* startupVolume = "Macintosh HD";

std::string quoted(const std::string& name) {
  return "“" + name + "”";
}
std::string named(const Path& item) {
  return quoted(item.lastComponent());
}

std::string parentNamed(const Path& item) {
  const Path parent = item.parent();
  return quoted(parent == Path("/") ? startupVolume : parent.lastComponent());
}

std::string doesNotExist(const Path& file) {
  return "The file " + named(file) + " doesn’t exist.";
}

std::string readingSentence(Operation operation, int number, const Path& item) {
  if (operation == Operation::listFolder && number == fileReadNoSuchFile)
    return "The folder " + named(item) + " doesn’t exist.";
  const std::string beginning = "The file " + named(item) + " couldn’t be opened";
  if (number == fileReadNoSuchFile) return beginning + " because there is no such file.";
  if (number == fileReadNoPermission) return beginning + " because you don’t have permission to view it.";
  return beginning + ".";
}

std::string removalSentence(int number, const Path& item) {
  const std::string beginning = named(item) + " couldn’t be removed";
  if (number == fileWriteNoPermission) return beginning + " because you don’t have permission to access it.";
  return beginning + ".";
}

std::string trashSentence(int number, const Path& item) {
  if (number == fileNoSuchFile) return doesNotExist(item);
  const std::string beginning = named(item) + " couldn’t be moved to the trash";
  if (number == fileWriteNoPermission) return beginning + " because you don’t have permission to access it.";
  return beginning + ".";
}

/// Builds the sentence for moving or copying. They differ in the verb and in what they say about a missing
/// item.
std::string transferSentence(Operation operation, int number, const Path& item, const Path& destination) {
  const bool moves = operation == Operation::move;
  const std::string verb = named(item) + (moves ? " couldn’t be moved" : " couldn’t be copied");
  const std::string there = parentNamed(destination);
  if (number == fileWriteFileExists)
    return verb + " to " + there + " because an item with the same name already exists.";
  if (number == fileWriteNoPermission)
    return verb + " because you don’t have permission to access " + there + ".";
  if (number != fileNoSuchFile) return verb + " to " + there + ".";
  if (!moves) return doesNotExist(item);
  return verb + " to " + there +
         " because either the former doesn’t exist, or the folder containing the latter doesn’t exist.";
}

/// The sentence for a missing parent folder names the file itself, as Foundation does, and calls it a folder
/// if the write was atomic.
std::string savingSentence(Operation operation, int number, const Path& item) {
  const std::string place = "the file " + named(item) + " in the folder " + parentNamed(item);
  if (number == fileNoSuchFile)
    return operation == Operation::saveAtomically ? "The folder " + named(item) + " doesn’t exist."
                                                  : doesNotExist(item);
  if (number == fileWriteNoPermission) return "You don’t have permission to save " + place + ".";
  const std::string beginning =
      "The file " + named(item) + " couldn’t be saved in the folder " + parentNamed(item);
  if (number == fileWriteFileExists) return beginning + " because a file with the same name already exists.";
  return beginning + ".";
}

/// Builds the sentence for a full or a read-only volume. It is the same whatever was being written.
std::string volumeSentence(int number, const Path& item, const std::string& volume) {
  return "You can’t save the file " + named(item) + " because the volume " + quoted(volume) +
         (number == fileWriteOutOfSpace ? " is out of space." : " is read only.");
}

/// Removals and the Trash have no sentence of their own for a volume.
bool concernsVolume(Operation operation, int number) {
  if (operation == Operation::remove || operation == Operation::trash) return false;
  return number == fileWriteOutOfSpace || number == fileWriteVolumeReadOnly;
}

std::string sentence(Operation operation, int number, const Path& item, const Path& destination,
                     const std::function<std::string()>& volumeName) {
  if (concernsVolume(operation, number))
    return volumeSentence(number, item, volumeName ? volumeName() : startupVolume);
  switch (operation) {
    case Operation::readFile:
    case Operation::listFolder:
      return readingSentence(operation, number, item);
    case Operation::remove:
      return removalSentence(number, item);
    case Operation::trash:
      return trashSentence(number, item);
    case Operation::move:
    case Operation::copy:
      return transferSentence(operation, number, item, destination);
    case Operation::save:
    case Operation::saveAtomically:
      break;
  }
  return savingSentence(operation, number, item);
}

PlatformError error(int number, std::string description) {
  return PlatformError(cocoaErrorDomain, number, std::move(description));
}

}  // namespace

PlatformError fromErrno(Operation operation, int errnoValue, const Path& item, const Path& destination,
                        const std::function<std::string()>& volumeName) {
  return fromCode(operation, code(operation, errnoValue), item, destination, volumeName);
}

PlatformError fromCode(Operation operation, int code, const Path& item, const Path& destination,
                       const std::function<std::string()>& volumeName) {
  return error(code, sentence(operation, code, item, destination, volumeName));
}

PlatformError toolNotStarted(const Path& executable) {
  return error(fileNoSuchFile, doesNotExist(executable));
}

PlatformError outOfResources(int errnoValue) {
  return ofDomain("NSPOSIXErrorDomain", errnoValue);
}

PlatformError ofDomain(const std::string& domain, int code) {
  const std::string which = domain + " error " + std::to_string(code);
  return {domain, code, "The operation couldn’t be completed. (" + which + ".)"};
}

bool saysMissing(const PlatformError& error) {
  return error.code == fileReadNoSuchFile || error.code == fileReadInvalidFileName;
}

PlatformError noTrash(const Path& item, const std::string& volumeName) {
  return error(featureUnsupported, named(item) + " couldn’t be moved to the trash because the volume " +
                                       quoted(volumeName) + " doesn’t have one.");
}

PlatformError notUTF8(const Path& file) {
  return error(fileReadInapplicableStringEncoding,
               "The file " + named(file) + " couldn’t be opened using text encoding Unicode (UTF-8).");
}

PlatformError notPropertyList() {
  return error(propertyListReadCorrupt, "The data couldn’t be read because it isn’t in the correct format.");
}

}  // namespace quarn::CocoaError
