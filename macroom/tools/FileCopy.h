#pragma once

#include <sys/stat.h>
#include <vector>

namespace quarn::ditto {

/// Copies what belongs to one open file or folder to another open one. Every operation answers 0 or an errno.
class FileCopy {
 public:
  /// All bytes of the regular file `from`, described by `info`; holes stay holes.
  int content(int from, int to, const struct stat& info);

  /// Extended attributes and access lists; those that the destination or the rights at hand do not allow are
  /// left out.
  int extendedAttributes(int from, int to);

  /// Owner as far as allowed, mode, times; the times last, because everything else changes them.
  int properties(int to, const struct stat& info);

 private:
  int range(int from, int to, off_t begin, off_t end);
  int throughBuffer(int from, int to, off_t begin, off_t end);
  int sparse(int from, int to, off_t size);

  std::vector<char> buffer_ = std::vector<char>(128 * 1024);
  bool kernelCopies_ = true;
};

}  // namespace quarn::ditto
