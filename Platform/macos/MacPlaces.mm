#include <crt_externs.h>

#include "Platform/macos/FoundationText.h"
#include "Platform/macos/MacPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

Path MacPlaces::home() const {
  @autoreleasepool {
    return Path(bytesOf(NSHomeDirectory()));
  }
}

std::optional<Path> MacPlaces::home(const std::string& user) const {
  @autoreleasepool {
    NSString* name = foundationText(user);
    NSString* home = name ? NSHomeDirectoryForUser(name) : nil;
    if (!home) return std::nullopt;
    return Path(bytesOf(home));
  }
}

Path MacPlaces::executable() const {
  @autoreleasepool {
    NSString* file = NSBundle.mainBundle.executablePath;
    // The path may lead through links, so they are resolved here.
    const Path path(file ? bytesOf(file) : "");
    return resolved(path).valueOr(path);
  }
}

std::string MacPlaces::invokedAs() const {
  // As main received them (crt_externs(3)).
  char** arguments = *_NSGetArgv();
  return arguments && arguments[0] ? arguments[0] : "";
}

Path MacPlaces::temporaryFolder() const {
  @autoreleasepool {
    return Path(bytesOf(NSTemporaryDirectory()));
  }
}

}  // namespace quarn
