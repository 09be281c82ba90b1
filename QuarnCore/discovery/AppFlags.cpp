#include "QuarnCore/discovery/AppFlags.h"

namespace quarn::AppFlags {
namespace {

/// A folder that is a link counts by what it leads to. Most bundles have no such folder, so that is asked
/// first.
bool hasContents(const ReadOnlyPlatform& platform, const Path& folder) {
  if (!platform.files.isFolder(folder)) return false;
  return !platform.files.list(platform.files.resolvingLinks(folder), Hidden::included).valueOr({}).empty();
}

}  // namespace

bool isMacAppStore(const ReadOnlyPlatform& platform, const Path& bundle) {
  return platform.files.exists(bundle.appending("Contents/_MASReceipt/receipt"));
}

bool hasLoginItems(const ReadOnlyPlatform& platform, const Path& bundle) {
  return hasContents(platform, bundle.appending("Contents/Library/LoginItems"));
}

bool hasSystemExtension(const ReadOnlyPlatform& platform, const Path& bundle) {
  const Path library = bundle.appending("Contents/Library");
  return hasContents(platform, library.appending("SystemExtensions")) ||
         hasContents(platform, library.appending("Extensions"));
}

}  // namespace quarn::AppFlags
