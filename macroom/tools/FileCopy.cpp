#include "FileCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quarn::ditto {

namespace {

// Below this a read and a write cost less than setting up a copy in the kernel.
constexpr off_t smallFile = 128 * 1024;
constexpr off_t largestStep = off_t{1} << 30;

bool isNotForThisPair(int error) {
  return error == EXDEV || error == ENOSYS || error == EOPNOTSUPP || error == EINVAL || error == EPERM;
}

int writeAll(int to, const char* data, std::size_t size, off_t at) {
  while (size > 0) {
    const ssize_t written = ::pwrite(to, data, size, at);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    data += written;
    size -= static_cast<std::size_t>(written);
    at += written;
  }
  return 0;
}

bool mayBeLeftOut(int error) {
  return error == ENOTSUP || error == EPERM || error == EACCES;
}

}  // namespace

int FileCopy::throughBuffer(int from, int to, off_t begin, off_t end) {
  while (begin < end) {
    const auto wanted = std::min(static_cast<off_t>(buffer_.size()), end - begin);
    const ssize_t count = ::pread(from, buffer_.data(), static_cast<std::size_t>(wanted), begin);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return 0;  // the file has become shorter
    if (const int error = writeAll(to, buffer_.data(), static_cast<std::size_t>(count), begin)) return error;
    begin += count;
  }
  return 0;
}

int FileCopy::range(int from, int to, off_t begin, off_t end) {
  while (kernelCopies_ && begin < end) {
    off_t source = begin, target = begin;
    const auto wanted = static_cast<std::size_t>(std::min(largestStep, end - begin));
    const ssize_t count = ::copy_file_range(from, &source, to, &target, wanted, 0);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && !isNotForThisPair(errno)) return errno;
    // Some file systems answer 0 for a file they cannot copy this way, as if it ended here.
    if (count <= 0) kernelCopies_ = count == 0;
    if (count <= 0) break;
    begin += count;
  }
  return throughBuffer(from, to, begin, end);
}

int FileCopy::sparse(int from, int to, off_t size) {
  off_t begin = 0;
  while (begin < size) {
    const off_t data = ::lseek(from, begin, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;
    if (data < 0) return range(from, to, begin, size);
    const off_t hole = ::lseek(from, data, SEEK_HOLE);
    const off_t end = hole < 0 ? size : hole;
    if (const int error = range(from, to, data, end)) return error;
    begin = end;
  }
  return ::ftruncate(to, size) == 0 ? 0 : errno;
}

int FileCopy::content(int from, int to, const struct stat& info) {
  if (static_cast<off_t>(info.st_blocks) * 512 < info.st_size) return sparse(from, to, info.st_size);
  if (info.st_size <= smallFile) return throughBuffer(from, to, 0, info.st_size);
  return range(from, to, 0, info.st_size);
}

int FileCopy::extendedAttributes(int from, int to) {
  const ssize_t size = ::flistxattr(from, nullptr, 0);
  if (size <= 0) return size == 0 || errno == ENOTSUP ? 0 : errno;
  std::vector<char> names(static_cast<std::size_t>(size) + 1);
  const ssize_t listed = ::flistxattr(from, names.data(), names.size());
  if (listed < 0) return errno;
  int result = 0;
  for (const char* name = names.data(); name < names.data() + listed; name += std::strlen(name) + 1) {
    std::vector<char> value(64 * 1024);
    const ssize_t length = ::fgetxattr(from, name, value.data(), value.size());
    const bool copied =
        length >= 0 && ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
    if (!copied && !mayBeLeftOut(errno)) result = errno;
  }
  return result;
}

int FileCopy::properties(int to, const struct stat& info) {
  struct stat made {};
  if (::fstat(to, &made) != 0) return errno;
  mode_t mode = info.st_mode & 07777;
  if ((made.st_uid != info.st_uid || made.st_gid != info.st_gid) &&
      ::fchown(to, info.st_uid, info.st_gid) != 0) {
    mode &= 01777;  // another owner must not gain the old one's rights
    (void)::fchown(to, static_cast<uid_t>(-1), info.st_gid);
  }
  if (::fchmod(to, mode) != 0) return errno;
  const timespec times[2] = {info.st_atim, info.st_mtim};
  return ::futimens(to, times) == 0 ? 0 : errno;
}

}  // namespace quarn::ditto
