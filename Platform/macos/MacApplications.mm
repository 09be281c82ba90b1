#import <AppKit/AppKit.h>
#include <algorithm>
#include <dlfcn.h>
#include <signal.h>
#include <thread>

#include "Platform/macos/FoundationText.h"
#include "Platform/macos/MacPlatform.h"
#include "Platform/macos/ProcessTable.h"
#include "Platform/posix/BundleOfExecutable.h"

namespace quarn {
namespace {

/// Loads AppKit when applications are first asked for, because loading it takes longer than most commands
/// run. Returns null if it can't be loaded.
Class appKitClass(NSString* name) {
  static const bool isLoaded =
      ::dlopen("/System/Library/Frameworks/AppKit.framework/AppKit", RTLD_LAZY) != nullptr;
  return isLoaded ? NSClassFromString(name) : Nil;
}

/// Lets the list of applications change, which it does only while the main run loop runs
/// (NSRunningApplication.h). The number of sources is limited, so that a program that keeps sending can't
/// keep us here.
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
  // Occasionally it is the URL of the executable instead.
  description.bundlePath = path.extension() == "app" ? path : bundleOfExecutable(path.text()).value_or(path);
  return description;
}

std::optional<Path> bundleOf(int process) {
  return bundleOfExecutable(executableOf(process));
}

/// Returns null if the system doesn't list the process as an application.
NSRunningApplication* listedAs(int process) {
  return [appKitClass(@"NSRunningApplication") runningApplicationWithProcessIdentifier:process];
}

/// Returns whether the identifier still belongs to the same application.
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

// Two lists are combined. The system's list lacks applications started from a remote shell and, for a moment,
// those just started. The kernel's list lacks applications whose process runs an executable outside the
// bundle, such as a script.
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
      // A run loop without sources returns at once (CFRunLoopRunInMode), which would turn this into a busy
      // loop.
      if (CFRunLoopRunInMode(kCFRunLoopDefaultMode, left.count(), false) == kCFRunLoopRunFinished)
        std::this_thread::sleep_until(end);
    }
  }
}

}  // namespace quarn
