#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "Platform/FileSystemDecorator.h"

namespace quarn {

/// For one scan of many applications, which asks the same few folders for hundreds of names that are not
/// there: a folder asked about again and again is listed once, and a name that isn't in the list needs no
/// look at the disk. Whatever may exist is looked up as ever, so a list only ever saves a "no".
/// What comes into a folder after it was listed isn't seen. For one thread.
class RememberedFolders : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;

  bool exists(const Path& path) const override;
  bool isDirectory(const Path& path) const override;

 private:
  struct Folder {
    int questions = 0;
    bool isListed = false;
    std::unordered_set<std::string> names;
  };

  bool mayExist(const Path& path) const;
  void remember(const Path& path, Folder& folder) const;

  mutable std::unordered_map<std::string, Folder> folders_;
};

}  // namespace quarn
