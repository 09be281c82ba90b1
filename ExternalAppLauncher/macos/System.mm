#include "ExternalAppLauncher/System.h"

#import <AppKit/AppKit.h>
#include <climits>
#include <cstdlib>

namespace quarn::System {
namespace {

NSString* textOf(const std::string& bytes) {
  return [[NSFileManager defaultManager] stringWithFileSystemRepresentation:bytes.data() length:bytes.size()];
}

std::string bytesOf(NSString* text) {
  const char* bytes = text.UTF8String;
  return bytes ? bytes : "";
}

}  // namespace

std::string executable() {
  @autoreleasepool {
    NSString* file = NSBundle.mainBundle.executablePath;
    char resolved[PATH_MAX];
    if (!file || !::realpath(file.fileSystemRepresentation, resolved)) return "";
    return resolved;
  }
}

/// Launch Services opens the application as if it had been opened in the Finder.
std::string open(const std::string& application, const std::vector<std::string>& arguments) {
  @autoreleasepool {
    NSMutableArray<NSString*>* words = [NSMutableArray array];
    // An argument that isn't UTF-8 has no text.
    for (const std::string& argument : arguments) {
      if (NSString* word = textOf(argument)) [words addObject:word];
    }
    NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
    configuration.arguments = words;
    const dispatch_semaphore_t answered = dispatch_semaphore_create(0);
    __block std::string reasonOfFailure;
    // The answer comes on a queue of its own, so this thread can wait for it.
    [NSWorkspace.sharedWorkspace openApplicationAtURL:[NSURL fileURLWithPath:textOf(application)]
                                        configuration:configuration
                                    completionHandler:^(NSRunningApplication*, NSError* error) {
                                      if (error) reasonOfFailure = bytesOf(error.localizedDescription);
                                      dispatch_semaphore_signal(answered);
                                    }];
    dispatch_semaphore_wait(answered, DISPATCH_TIME_FOREVER);
    return reasonOfFailure;
  }
}

void tell(const std::string& sentence) {
  @autoreleasepool {
    CFStringRef text =
        CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(sentence.data()),
                                static_cast<CFIndex>(sentence.size()), kCFStringEncodingUTF8, false);
    if (!text) return;
    CFOptionFlags answer = 0;
    CFUserNotificationDisplayAlert(0, kCFUserNotificationCautionAlertLevel, nullptr, nullptr, nullptr, text,
                                   nullptr, nullptr, nullptr, nullptr, &answer);
    CFRelease(text);
  }
}

}  // namespace quarn::System
