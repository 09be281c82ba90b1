#include "Platform/system/FolderReader.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "Platform/posix/Status.h"

namespace quarn {
namespace {

/// An entry as the kernel returns it: struct linux_dirent64 of getdents64(2).
struct RawEntry {
  std::uint64_t inode;
  std::int64_t offset;
  std::uint16_t length;
  std::uint8_t type;
  char name[1];
};

bool isDots(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

struct FolderReader::State {
  // Large enough that nearly every folder needs one call, and one more to find its end.
  alignas(RawEntry) std::array<char, 64 * 1024> buffer;
  int folder = -1;
  std::size_t filled = 0;
  std::size_t position = 0;
  int error = 0;

  bool refill() {
    const long count = ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
    error = count < 0 ? errno : 0;
    filled = count > 0 ? static_cast<std::size_t>(count) : 0;
    position = 0;
    return filled > 0;
  }
};

// The buffer is deliberately not initialized: clearing it would cost more than most runs read.
FolderReader::FolderReader() : state_(new State) {}
FolderReader::~FolderReader() = default;

void FolderReader::begin(int folder) {
  state_->folder = folder;
  state_->filled = state_->position = 0;
  state_->error = 0;
}

std::optional<FolderReader::Entry> FolderReader::next() {
  for (;;) {
    if (state_->position == state_->filled && !state_->refill()) return std::nullopt;
    const char* raw = state_->buffer.data() + state_->position;
    // Copied byte by byte, because the buffer doesn't promise the alignment that a direct access needs.
    std::uint16_t length;
    std::memcpy(&length, raw + offsetof(RawEntry, length), sizeof length);
    state_->position += length;
    const char* name = raw + offsetof(RawEntry, name);
    if (!isDots(name))
      return Entry{name, entryKind(static_cast<unsigned char>(raw[offsetof(RawEntry, type)]))};
  }
}

int FolderReader::error() const {
  return state_->error;
}

}  // namespace quarn
