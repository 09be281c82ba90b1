#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// Receives the paths of items that have changed, in no particular order; a path can come more than once. It
/// is called on another thread, one call at a time, and must not stop the stream.
using FileEventSink = std::function<void(const std::vector<Path>& changed)>;

/// Watches until it is stopped. The destructor stops it.
class FileEventStream {
 public:
  virtual ~FileEventStream() = default;
  /// Delivers what happened before this call, and then no more. When it returns, the sink is not running and
  /// will not be called again. Stopping twice is harmless.
  virtual void stop() = 0;
};

class FileEvents {
 public:
  virtual ~FileEvents() = default;
  /// Reports changes to some folders and to everything below them, hidden items included, from before this
  /// call returns until the stream is stopped. The roots are absolute paths. Returns nothing if the system
  /// refuses.
  ///
  /// Reported is the path of an item that is created, removed, renamed (its old and its new path), written to
  /// (when the writer closes it), or given another mode, owner, time or extended attribute, whoever does it.
  /// The item may be gone by the time its path is delivered. What changed shortly before this call may be
  /// reported, too, as may what a folder holds that is moved in from elsewhere.
  ///
  /// Links below a root are reported and not followed. A root that is a link is followed, and the paths are
  /// those of its target. A root that doesn't exist, or goes, is reported and watched as soon as it exists.
  ///
  /// What is removed again at once may be missing. If more happens than the system keeps, the path of a
  /// folder may stand for what changed in it.
  virtual std::unique_ptr<FileEventStream> watch(const std::vector<Path>& roots,
                                                 FileEventSink sink) const = 0;
};

}  // namespace quarn
