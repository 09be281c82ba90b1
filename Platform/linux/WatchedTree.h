#pragma once

#include <ctime>

#include "Platform/FileEvents.h"
#include "Platform/linux/InotifyQueue.h"
#include "Platform/linux/WatchedFolders.h"

namespace quarn {

/// Some roots and every folder below them, each with a watch of its own, since inotify tells of one folder
/// only. A folder that appears is watched first and then listed, so that nothing in it is missed. Use it from
/// one thread at a time.
class WatchedTree {
 public:
  WatchedTree(const std::vector<Path>& roots, FileEventSink sink);

  /// Returns false if the system refuses to watch anything.
  bool isOpen() const { return events_.descriptor() >= 0; }
  /// For poll(2): one of them is readable when there is something to report. They may be negative.
  std::vector<int> descriptors() const { return {events_.descriptor(), above_.descriptor()}; }
  /// Reports what has happened up to this call.
  void reportWaiting();
  /// Does the same for the last time, and looks at the folders for which there were no watches.
  void reportRest();

 private:
  class Scan;
  struct Root {
    Path given;
    std::optional<int> watch;  ///< absent if the root doesn't exist
  };
  /// What a scan of a folder reports, besides watching each folder in it.
  enum class Reports {
    nothing,
    everything,
    changes,  ///< what has changed since the beginning, and everything in folders that weren't known before
  };

  void readEvents();
  void handle(const InotifyQueue::Event& event);
  void checkRoots(Reports reports);
  void watchAbove(const Path& root);
  void takeUp(const std::string& path, Reports reports);
  int watch(int folder, const std::string& path);
  void giveUp(const std::string& path);
  void endWatches(const std::vector<int>& watches);
  bool wasKnown(const std::string& path, int watch) const;
  void rescan();
  void report(const std::string& path);
  void deliver();

  FileEventSink sink_;
  std::vector<Root> roots_;
  std::time_t beginning_;
  InotifyQueue events_;
  InotifyQueue above_;  ///< tells when a root may have appeared, gone, or been replaced
  WatchedFolders folders_;
  WatchedFolders before_;  ///< during a rescan, the folders that were known until then
  bool hasOverflowed_ = false;
  bool lacksWatches_ = false;
  std::vector<Path> changed_;
};

}  // namespace quarn
