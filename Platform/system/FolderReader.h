#pragma once

#include <memory>
#include <optional>
#include <sys/types.h>

#include "Platform/FileSystem.h"

namespace quarn {

/// Reads the names in open folders, one folder after another, with few system calls. Leaves out "." and "..".
class FolderReader {
 public:
  struct Entry {
    const char* name;              ///< valid until the next call
    std::optional<FileKind> kind;  ///< absent if the file system doesn't report it
  };

  FolderReader();
  ~FolderReader();
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  /// Starts reading a folder that was just opened. It must stay open while it is read.
  void begin(int folder);
  /// Returns the next entry, or nothing at the end or after a failure; `error` then tells which.
  std::optional<Entry> next();
  int error() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quarn
