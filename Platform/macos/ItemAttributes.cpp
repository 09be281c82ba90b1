#include "Platform/posix/ItemAttributes.h"

#include <fcntl.h>
#include <sys/attr.h>
#include <unistd.h>

#include "Platform/posix/Status.h"

namespace quarn {
namespace {

/// As the kernel answers: the length of the answer, what it could tell, then each in the order of its bit.
struct __attribute__((packed)) Answer {
  std::uint32_t length;
  attribute_set_t told;
  off_t allForks;
  off_t dataFork;
};

/// Where a volume can't tell them, the sizes stay absent.
void setAllocatedSizes(int folder, const char* name, FileAttributes& attributes) {
  attrlist question{};
  question.bitmapcount = ATTR_BIT_MAP_COUNT;
  question.commonattr = ATTR_CMN_RETURNED_ATTRS;
  question.fileattr = ATTR_FILE_ALLOCSIZE | ATTR_FILE_DATAALLOCSIZE;
  Answer answer{};
  attributes.totalAllocatedSize = attributes.allocatedSize = std::nullopt;
  constexpr unsigned long options = FSOPT_NOFOLLOW | FSOPT_PACK_INVAL_ATTRS;
  if (::getattrlistat(folder, name, &question, &answer, sizeof answer, options) != 0) return;
  if (answer.told.fileattr & ATTR_FILE_ALLOCSIZE) attributes.totalAllocatedSize = answer.allForks;
  if (answer.told.fileattr & ATTR_FILE_DATAALLOCSIZE) attributes.allocatedSize = answer.dataFork;
}

}  // namespace

std::optional<FileAttributes> itemAttributes(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  FileAttributes attributes = attributesFrom(status);
  setAllocatedSizes(folder, name, attributes);
  return attributes;
}

}  // namespace quarn
