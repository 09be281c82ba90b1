#include "Platform/macos/MacApplications.h"

#import <AppKit/AppKit.h>
#include <algorithm>
#include <dlfcn.h>
#include <signal.h>
#include <thread>

#include "Platform/macos/FoundationText.h"
#include "Platform/macos/ProcessTable.h"
#include "Platform/posix/BundleOfExecutable.h"

namespace quarn {
namespace {

/// AppKit brings much along that most commands never use, so it is loaded when somebody first asks for
/// applications. Null where it can't be loaded.
Class appKitClass(NSString* name) {
  static const bool isLoaded =
      ::dlopen("/System/Library/Frameworks/AppKit.framework/AppKit", RTLD_LAZY) != nullptr;
  return isLoaded ? NSClassFromString(name) : Nil;
}

/// The list changes only while the main loop runs (NSRunningApplication.h). What it has to deliver is
/// bounded, lest a program that keeps reporting should keep us.
void letListChange() {
  constexpr int most = 64;
  for (int i = 0; i < most; ++i) {
    if (CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, true) != kCFRunLoopRunHandledSource) return;
  }
}

RunningApplication describe(NSRunningApplication* application) {
  RunningApplication description{application.processIdentifier, std::nullopt};
  if (!application.bundleURL) return description;
  const Path path = pathOf(application.bundleURL);
  // Now and then it is the executable's.
  description.bundlePath = path.extension() == "app" ? path : bundleOfExecutable(path.text()).value_or(path);
  return description;
}

std::optional<Path> bundleOf(int process) {
  return bundleOfExecutable(executableOf(process));
}

/// Null for a process that is no application to the system.
NSRunningApplication* listedAs(int process) {
  return [appKitClass(@"NSRunningApplication") runningApplicationWithProcessIdentifier:process];
}

/// Not if the number belongs to another one by now.
bool isStill(const RunningApplication& wanted, NSRunningApplication* found) {
  if (wanted.processIdentifier <= 0) return false;
  return (found && describe(found) == wanted) ||
         (wanted.bundlePath && bundleOf(wanted.processIdentifier) == wanted.bundlePath);
}

std::vector<RunningApplication> listed() {
  std::vector<RunningApplication> applications;
  letListChange();
  for (NSRunningApplication* application in
       [[appKitClass(@"NSWorkspace") sharedWorkspace] runningApplications])
    applications.push_back(describe(application));
  return applications;
}

}  // namespace

// The system's list has neither what was started from a remote shell nor, for a moment, what has just been
// started; the kernel's has no application whose program lies elsewhere, such as a script.
std::vector<RunningApplication> MacApplications::running() const {
  @autoreleasepool {
    std::vector<RunningApplication> applications = listed();
    for (const int process : processes()) {
      const RunningApplication application{process, bundleOf(process)};
      const bool isKnown =
          std::find(applications.begin(), applications.end(), application) != applications.end();
      if (application.bundlePath && !isKnown) applications.push_back(application);
    }
    return applications;
  }
}

void MacApplications::terminate(const RunningApplication& application) {
  @autoreleasepool {
    NSRunningApplication* found = listedAs(application.processIdentifier);
    if (!isStill(application, found)) return;
    if (found)
      [found terminate];
    else
      ::kill(application.processIdentifier, SIGTERM);
  }
}

void MacApplications::forceTerminate(const RunningApplication& application) {
  @autoreleasepool {
    NSRunningApplication* found = listedAs(application.processIdentifier);
    if (!isStill(application, found)) return;
    if (found)
      [found forceTerminate];
    else
      ::kill(application.processIdentifier, SIGKILL);
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
