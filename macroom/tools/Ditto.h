#pragma once

#include <cstdint>
#include <dirent.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <utility>

#include "FileCopy.h"

namespace quarn::ditto {

/// One copying of one tree. Names are bytes; whatever fails is said on standard error as
/// "ditto: PATH: REASON", and the rest goes on.
class Ditto {
 public:
  /// A folder's contents are merged into `destination`, a file becomes `destination` or goes into that
  /// folder. A link given as `source` is followed. False when anything was not copied.
  bool copy(const std::string& source, const std::string& destination);

 private:
  // Both sides of the folder at hand.
  struct Pair {
    int from;
    int to;
  };
  using Identity = std::pair<dev_t, ino_t>;

  void copyFolder(const Pair& parent, const char* sourceName, const char* name, bool top);
  void copyEntries(DIR* folder, const Pair& pair);
  void copyEntry(const Pair& pair, const dirent& entry);
  void copyFile(const Pair& pair, const char* sourceName, const char* name, int followLinks);
  void copyLink(const Pair& pair, const char* name);
  void copyDevice(const Pair& pair, const char* name);
  void fillFile(int from, int to, const struct stat& info);

  int createFile(const Pair& pair, const char* name, const struct stat& source);
  int makeRoom(const Pair& pair, const char* name, const struct stat* source);
  bool linkedToEarlierCopy(const Pair& pair, const char* name, const struct stat& info);
  void remember(const struct stat& info);

  void sourceFailed(int error);
  void destinationFailed(int error);

  FileCopy files_;
  std::string sourceRoot_, destinationRoot_;
  std::string relative_;  // of the folder at hand below both roots, with a slash in front unless empty
  int destinationTop_ = -1;
  Identity destinationIdentity_{};
  std::map<Identity, std::string> linked_;  // hard-linked files copied so far, relative to the top
  bool good_ = true;
};

}  // namespace quarn::ditto
