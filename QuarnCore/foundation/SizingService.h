#pragma once

#include <atomic>
#include <cstdint>
#include <future>
#include <memory>

#include "Platform/Platform.h"
#include "Platform/ThreadPriority.h"

/// Disk use by counting the blocks of every name, with those that begin with a dot left out. What can't be
/// read counts as 0. Bytes everywhere.
namespace quarn::SizingService {

/// Tells a walk from another thread to stop.
using Cancellation = std::atomic<bool>;

/// Links resolved at the top only: a file counts its blocks, a folder what `walk` finds, anything else 0.
std::int64_t measure(const ReadOnlyPlatform& platform, const Path& item);
/// The same as `measure`.
std::int64_t size(const ReadOnlyPlatform& platform, const Path& item);

/// Blocks of all that is below a folder but links and the folders themselves. A folder reached twice
/// counts once. Cancelled, it stops at the next folder and returns the sum so far.
std::int64_t walk(const ReadOnlyPlatform& platform, const Path& folder,
                  const Cancellation* cancellation = nullptr);

/// A measurement that runs on a thread of its own.
class SizeTask {
 public:
  SizeTask(const ReadOnlyPlatform& platform, const Path& item, ThreadPriority priority);
  ~SizeTask();
  SizeTask(const SizeTask&) = delete;
  SizeTask& operator=(const SizeTask&) = delete;

  /// Waits for the figure; once only.
  std::int64_t value();
  /// The figure is then that of what was walked before.
  void cancel();

 private:
  Cancellation cancellation_{false};
  std::future<std::int64_t> value_;
};

std::unique_ptr<SizeTask> sizeAsync(const ReadOnlyPlatform& platform, const Path& item,
                                    ThreadPriority priority);

}  // namespace quarn::SizingService
