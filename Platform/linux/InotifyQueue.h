#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "Platform/posix/Descriptor.h"

namespace quarn {

/// An inotify instance: watched folders, and the queue of what happens in them (inotify(7)).
class InotifyQueue {
 public:
  struct Event {
    int watch;              ///< the number of the folder's watch; -1 if the queue has overflowed
    std::uint32_t mask;     ///< what happened, as inotify(7) tells it
    std::string_view name;  ///< of the item in the folder; empty for the folder itself
  };

  /// The queue isn't open if the system refuses one; nothing can then be added to it.
  InotifyQueue();

  /// For poll(2), which finds it readable when an event waits; negative if the queue isn't open.
  int descriptor() const { return descriptor_.number(); }
  /// Watches an open folder. Returns the number of its watch, the same for the same folder however often it
  /// is added, or -1 with `errno` set.
  int add(int folder, std::uint32_t mask);
  /// Ends a watch. Events that wait already stay in the queue.
  void remove(int watch);
  /// Hands over the events that wait at the time of the call, the oldest first. Returns whether there were
  /// any.
  bool readWaiting(const std::function<void(const Event&)>& handle);

 private:
  Descriptor descriptor_;
};

}  // namespace quarn
