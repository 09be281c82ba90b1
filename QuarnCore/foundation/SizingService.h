#pragma once

#include <atomic>
#include <cstdint>
#include <future>
#include <memory>

#include "Platform/Platform.h"
#include "Platform/ThreadPriority.h"

/// Measures disk use as the sum of the blocks of every name, without names that begin with a dot. What can't
/// be read counts as 0. All sizes are in bytes.
namespace quarn::SizingService {

/// Tells a walk on another thread to stop.
using Cancellation = std::atomic<bool>;

/// Measures an item. If the item itself is a link, its target is measured; links below it aren't followed. A
/// file counts its blocks, a folder what `walk` returns, and anything else 0.
std::int64_t measure(const ReadOnlyPlatform& platform, const Path& item);
/// Does the same as `measure`.
std::int64_t size(const ReadOnlyPlatform& platform, const Path& item);

/// Returns the blocks of everything below a folder except links and the folders themselves. A folder that is
/// reached twice counts once. When cancelled, stops at the next folder and returns the sum so far.
std::int64_t walk(const ReadOnlyPlatform& platform, const Path& folder,
                  const Cancellation* cancellation = nullptr);

/// A measurement on a thread of its own.
class SizeTask {
 public:
  SizeTask(const ReadOnlyPlatform& platform, const Path& item, ThreadPriority priority);
  ~SizeTask();
  SizeTask(const SizeTask&) = delete;
  SizeTask& operator=(const SizeTask&) = delete;

  /// Waits for the result. May be called once.
  std::int64_t value();
  /// Stops the measurement. Its result is then what had been counted so far.
  void cancel();

 private:
  Cancellation cancellation_{false};
  std::future<std::int64_t> value_;
};

std::unique_ptr<SizeTask> sizeAsync(const ReadOnlyPlatform& platform, const Path& item,
                                    ThreadPriority priority);

}  // namespace quarn::SizingService
