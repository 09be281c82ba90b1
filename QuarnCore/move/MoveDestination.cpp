#include "QuarnCore/move/MoveDestination.h"

namespace quarn::MoveDestination {
namespace {

std::string relativePath(const Path& source, const Path& home) {
  const std::string prefix = home.text() + "/";
  const std::string& text = source.text();
  if (text.starts_with(prefix)) return text.substr(prefix.size());
  if (text.starts_with("/Library/")) return "System" + text;
  return source.lastComponent();
}

}  // namespace

Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent) {
  return dataDestination(platform, source, dataParent, platform.places.home());
}

Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent,
                     const Path& home) {
  return dataParent.appending(
      relativePath(platform.files.standardized(source), platform.files.standardized(home)));
}

}  // namespace quarn::MoveDestination
