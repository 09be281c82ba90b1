#include "Platform/macos/MacApplications.h"

#import <AppKit/AppKit.h>
#include <thread>

#include "Platform/macos/FoundationText.h"

namespace quarn {
namespace {

RunningApplication describe(NSRunningApplication* application) {
  RunningApplication description{application.processIdentifier, std::nullopt};
  if (application.bundleURL) description.bundlePath = pathOf(application.bundleURL);
  return description;
}

/// Null if the number belongs to another application by now.
NSRunningApplication* current(const RunningApplication& wanted) {
  NSRunningApplication* found =
      [NSRunningApplication runningApplicationWithProcessIdentifier:wanted.processIdentifier];
  return found && describe(found) == wanted ? found : nil;
}

}  // namespace

std::vector<RunningApplication> MacApplications::running() const {
  @autoreleasepool {
    std::vector<RunningApplication> applications;
    for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications)
      applications.push_back(describe(application));
    return applications;
  }
}

void MacApplications::terminate(const RunningApplication& application) {
  @autoreleasepool {
    [current(application) terminate];
  }
}

void MacApplications::forceTerminate(const RunningApplication& application) {
  @autoreleasepool {
    [current(application) forceTerminate];
  }
}

void MacApplications::wait(std::chrono::milliseconds duration) {
  using Seconds = std::chrono::duration<double>;
  const auto end = std::chrono::steady_clock::now() + duration;
  for (;;) {
    const Seconds left = end - std::chrono::steady_clock::now();
    if (left.count() <= 0) return;
    @autoreleasepool {
      // A run loop to which nobody reports returns at once.
      if (CFRunLoopRunInMode(kCFRunLoopDefaultMode, left.count(), false) == kCFRunLoopRunFinished)
        std::this_thread::sleep_until(end);
    }
  }
}

}  // namespace quarn
