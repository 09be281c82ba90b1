#pragma once

#include <memory>
#include <optional>
#include <sys/types.h>

#include "Platform/FileSystem.h"

namespace quarn {

/// Reads the names in open folders, one folder after the other, with few calls. The folder's own entry
/// and its parent's are left out.
class FolderReader {
 public:
  struct Entry {
    const char* name;              ///< until the next call
    std::optional<FileKind> kind;  ///< absent where the file system doesn't tell it
  };

  FolderReader();
  ~FolderReader();
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  /// Begins with a folder just opened, which must stay open while it is read.
  void begin(int folder);
  /// Nothing at the end, or if the folder can't be read on: then `error` isn't 0.
  std::optional<Entry> next();
  int error() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quarn
