#include "Platform/system/FolderReader.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

#include "Platform/posix/Status.h"

namespace quarn {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

struct FolderReader::State {
  std::unique_ptr<DIR, CloseFolder> folder;
  int error = 0;
};

FolderReader::FolderReader() : state_(new State) {}
FolderReader::~FolderReader() = default;

void FolderReader::begin(int folder) {
  // closedir(3) closes the descriptor of its stream, so the stream gets a duplicate of the caller's.
  const int own = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
  state_->folder.reset(own < 0 ? nullptr : ::fdopendir(own));
  state_->error = state_->folder ? 0 : errno;
  if (!state_->folder && own >= 0) ::close(own);
}

std::optional<FolderReader::Entry> FolderReader::next() {
  while (state_->folder) {
    // readdir(3) returns a null pointer both at the end and on failure; only `errno` tells them apart.
    errno = 0;
    const dirent* entry = ::readdir(state_->folder.get());
    if (!entry) {
      state_->error = errno;
      state_->folder.reset();
      return std::nullopt;
    }
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return Entry{entry->d_name, entryKind(entry->d_type)};
  }
  return std::nullopt;
}

int FolderReader::error() const {
  return state_->error;
}

}  // namespace quarn
