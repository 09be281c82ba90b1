#include "QuarnCore/plugins/PluginTools.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/installer/Gantrix.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::PluginTools {

CommandResult asRoot(const ReadOnlyPlatform& platform, const std::vector<std::string>& words) {
  return CommandRunner::run(platform, Gantrix::path(platform).text(), words);
}

CommandResult copy(const ReadOnlyPlatform& platform, const Path& source, const Path& destination) {
  return CommandRunner::run(platform, "/usr/bin/ditto", {"--rsrc", source.text(), destination.text()});
}

void requireSucceeded(const CommandResult& result, const char* domain, int code, const std::string& text) {
  if (!result.succeeded()) throw PlatformError(domain, code, text + result.standardError);
}

void removeAsRoot(const ReadOnlyPlatform& platform, const char* flags, const Path& item,
                  const RemovalFailure& failure) {
  requireSucceeded(asRoot(platform, {"rm", flags, item.text()}), failure.domain, failure.code, failure.text);
  if (isAnythingAt(platform, item))
    throw PlatformError(failure.domain, failure.code, failure.text + "“" + item.text() + "” is still there.");
}

bool isAnythingAt(const ReadOnlyPlatform& platform, const Path& place) {
  const auto found = platform.files.attributes(place);
  if (!found && !CocoaError::saysMissing(found.error())) throw found.error();
  return found.succeeded();
}

void requireWhole(Platform& platform, const Path& source, const Path& copy) {
  const auto flushed = platform.files.flush(copy);
  // The tool follows a source that is a link, but the comparison would compare the link itself.
  const Path copied = platform.files.resolvingLinks(source);
  if (const auto difference = MoveVerifier::failureReason(platform, copied, copy))
    throw MoverError::verifyFailed(*difference);
  flushed.orThrow();
}

}  // namespace quarn::PluginTools
