#include "QuarnCore/installer/Snapshotter.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn::Snapshotter {
namespace {

class Capture : public WalkVisitor {
 public:
  Capture(FileSnapshot& snapshot, const Path& root) : snapshot_(snapshot), root_(root), path_(root.text()) {
    snapshot_.paths.append(path_);
    if (path_ != "/") path_ += '/';
    prefix_ = path_.size();
  }

  WalkStep visit(const WalkItem& item) override {
    path_.resize(prefix_);
    path_ += item.relativePath();
    snapshot_.paths.append(path_);
    return WalkStep::proceed;
  }

  WalkStep failed(const Path&, const PlatformError& error) override {
    if (CocoaError::saysMissing(error)) return WalkStep::proceed;
    snapshot_.unseen.push_back({root_.text(), snapshot_.paths.last()});
    return WalkStep::stop;
  }

 private:
  FileSnapshot& snapshot_;
  const Path& root_;
  std::string path_;
  std::size_t prefix_ = 0;
};

void captureRoot(const FileSystem& files, const Path& root, FileSnapshot& snapshot) {
  const auto attributes = files.attributes(root);
  if (!attributes) return snapshot.unseen.push_back({root.text(), ""});
  Capture capture(snapshot, root);
  // A walk would follow a root that is a link.
  if (attributes->kind == FileKind::folder) files.walkSorted(root, Hidden::skipped, capture);
}

/// Adds a root inside another one. Whether the walk of that one has met it isn't known: it may lie in a
/// hidden folder.
void captureInside(const FileSystem& files, const Path& root, FileSnapshot& snapshot) {
  FileSnapshot inner;
  captureRoot(files, root, inner);
  snapshot.paths = united(snapshot.paths, inner.paths);
  snapshot.unseen.insert(snapshot.unseen.end(), inner.unseen.begin(), inner.unseen.end());
}

/// Returns those that may exist, standardized, each once and in path order.
std::vector<Path> inPathOrder(const FileSystem& files, const std::vector<Path>& roots) {
  std::vector<Path> found;
  for (const Path& root : roots) {
    if (mayExist(files, root)) found.push_back(files.standardized(root));
  }
  std::sort(found.begin(), found.end(),
            [](const Path& a, const Path& b) { return precedesInPathOrder(a.text(), b.text()); });
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace

std::vector<Path> defaultRoots(const Places& places) {
  const Path home = places.home();
  return {Path("/Applications"),
          home.appending("Applications"),
          Path("/Library/Application Support"),
          Path("/Library/LaunchAgents"),
          Path("/Library/LaunchDaemons"),
          Path("/Library/PrivilegedHelperTools"),
          home.appending("Library/Application Support"),
          home.appending("Library/LaunchAgents")};
}

FileSnapshot capture(const ReadOnlyPlatform& platform, const std::vector<Path>& roots) {
  FileSnapshot snapshot;
  Path outer;
  for (const Path& root : inPathOrder(platform.files, roots)) {
    if (isBelow(root.text(), outer.text())) {
      captureInside(platform.files, root, snapshot);
      continue;
    }
    captureRoot(platform.files, root, snapshot);
    outer = root;
  }
  return snapshot;
}

std::vector<std::string> added(const FileSnapshot& before, const FileSnapshot& after) {
  std::vector<std::string> found = difference(after.paths, before.paths);
  std::erase_if(found, [&before](const std::string& path) { return !before.knows(path); });
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace quarn::Snapshotter
