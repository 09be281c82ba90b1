#include "Platform/linux/WatchedTree.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"
#include "Platform/posix/TreeDescent.h"

namespace quarn {
namespace {

constexpr std::uint32_t anyChange =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB;
constexpr std::uint32_t comingAndGoing = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

constexpr std::size_t largestBatch = 1024;

// Some volumes keep times in steps of up to two seconds (FAT), and the kernel stamps files by a clock that
// lags a little behind the one that programs read.
constexpr std::time_t coarsestStep = 2;

std::time_t now() {
  return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
}

/// Resolves the links of a path as far as it exists.
Path real(const Path& path) {
  if (const auto found = resolved(path)) return *found;
  const Path parent = path.parent();
  return parent == path ? path : real(parent).appending(path.lastComponent());
}

Descriptor openFolder(const std::string& path) {
  return openAt(Path(path), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
}

bool saysNoFolder(int errnoValue) {
  return errnoValue == ENOENT || errnoValue == ENOTDIR || errnoValue == ELOOP;
}

}  // namespace

/// Watches every folder below one that has just been given a watch.
class WatchedTree::Scan : public TreeWork {
 public:
  Scan(WatchedTree& tree, const std::string& folder, Reports reports, bool isNew)
      : tree_(tree), root_(folder), reports_(reports), isNew_{isNew} {}

  Next entry(const FolderStack& at, const FolderReader::Entry& entry) override {
    struct stat status {};
    const bool isChange = reports_ == Reports::changes && !isNew_[at.depth()];
    if (isChange || !entry.kind) {
      if (::fstatat(at.folder(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0) return Next::goOn;
    }
    if (reports_ != Reports::nothing && (!isChange || status.st_ctime >= tree_.beginning_))
      tree_.report(pathIn(pathOf(at), entry.name));
    const bool isFolder = entry.kind ? *entry.kind == FileKind::folder : S_ISDIR(status.st_mode);
    return isFolder ? Next::enter : Next::goOn;
  }

  bool entered(const FolderStack& at) override {
    const std::string path = pathOf(at);
    const int watch = tree_.watch(at.folder(), path);
    isNew_.resize(at.depth());
    isNew_.push_back(isNew_.back() || !tree_.wasKnown(path, watch));
    return true;
  }

  // What can't be opened can't be watched either.
  bool failed(const FolderStack&, std::string_view, int) override { return true; }

 private:
  std::string pathOf(const FolderStack& at) const {
    return at.depth() == 0 ? root_ : pathIn(root_, at.path());
  }

  WatchedTree& tree_;
  const std::string root_;
  const Reports reports_;
  std::vector<bool> isNew_;  // one for each folder from the root to the innermost one
};

WatchedTree::WatchedTree(const std::vector<Path>& roots, FileEventSink sink)
    : sink_(std::move(sink)), beginning_(now() - coarsestStep) {
  for (const Path& root : roots) {
    if (root.isAbsolute()) roots_.push_back({root, std::nullopt});
  }
  if (isOpen()) checkRoots(Reports::nothing);
}

void WatchedTree::reportWaiting() {
  const bool rootsMayDiffer = above_.readWaiting([](const InotifyQueue::Event&) {});
  // Before the roots are looked at, because a folder that is given up takes along what waits of its events.
  readEvents();
  if (rootsMayDiffer) checkRoots(Reports::everything);
  if (hasOverflowed_) rescan();
  deliver();
}

void WatchedTree::reportRest() {
  hasOverflowed_ = hasOverflowed_ || lacksWatches_;
  reportWaiting();
}

void WatchedTree::readEvents() {
  events_.readWaiting([this](const InotifyQueue::Event& event) { handle(event); });
}

void WatchedTree::handle(const InotifyQueue::Event& event) {
  if (event.mask & IN_Q_OVERFLOW) hasOverflowed_ = true;
  const std::string* folder = folders_.path(event.watch);
  // Of a folder that has been given up, nothing is reported under its old path.
  if (!folder) return;
  if (event.mask & IN_IGNORED) return folders_.forget(event.watch);
  const std::string path = event.name.empty() ? *folder : pathIn(*folder, event.name);
  report(path);
  // Whatever has come or gone, the disk may be ahead of the event, and what is there now has to be watched.
  if (event.mask & (IN_ISDIR | IN_UNMOUNT)) takeUp(path, Reports::everything);
}

void WatchedTree::checkRoots(Reports reports) {
  for (Root& root : roots_) {
    const std::string path = real(root.given).text();
    watchAbove(Path(path));
    takeUp(path, reports);
    const auto watch = folders_.watch(path);
    const bool mayHaveChanged = watch != root.watch || (watch && reports == Reports::changes);
    if (mayHaveChanged && reports != Reports::nothing) report(path);
    root.watch = watch;
  }
}

// From the top: whenever one of the folders is made or replaced, the one above it tells.
void WatchedTree::watchAbove(const Path& root) {
  if (root.parent() == root) return;
  watchAbove(root.parent());
  const Descriptor folder = openAt(root.parent(), searchOnly | O_DIRECTORY);
  if (folder.isOpen()) above_.add(folder.number(), comingAndGoing);
}

/// Watches the folder at a path and all below it. If there is none, gives up what was known there.
void WatchedTree::takeUp(const std::string& path, Reports reports) {
  Descriptor folder = openFolder(path);
  if (!folder.isOpen()) {
    if (saysNoFolder(errno)) giveUp(path);
    return;
  }
  const auto watchBefore = folders_.watch(path);
  const int watch = this->watch(folder.number(), path);
  // Known already, with all that is in it.
  if (watchBefore == watch) return;
  endWatches(folders_.takeAllBelow(path));
  Scan scan(*this, path, reports, !wasKnown(path, watch));
  descend(std::move(folder), scan);
}

/// Returns the number of the watch, or `unwatched`.
int WatchedTree::watch(int folder, const std::string& path) {
  const int watch = events_.add(folder, anyChange);
  if (watch < 0) lacksWatches_ = true;
  const int previous = folders_.put(path, watch);
  if (previous != WatchedFolders::unwatched) events_.remove(previous);
  return watch;
}

void WatchedTree::giveUp(const std::string& path) {
  endWatches(folders_.takeWithAllBelow(path));
}

void WatchedTree::endWatches(const std::vector<int>& watches) {
  for (const int watch : watches) events_.remove(watch);
}

// A watch belongs to its folder and not to the folder's path, so it tells a folder from another one that has
// taken its place.
bool WatchedTree::wasKnown(const std::string& path, int watch) const {
  if (watch == WatchedFolders::unwatched) return before_.watch(path).has_value();
  const std::string* pathBefore = before_.path(watch);
  return pathBefore && *pathBefore == path;
}

/// Finds out what events that didn't arrive would have told.
void WatchedTree::rescan() {
  hasOverflowed_ = false;
  before_ = std::exchange(folders_, {});
  checkRoots(Reports::changes);
  for (const auto& [path, watch] : before_.all()) {
    if (folders_.watch(path)) continue;
    report(path);
    if (!folders_.path(watch)) events_.remove(watch);
  }
  before_ = {};
}

void WatchedTree::report(const std::string& path) {
  changed_.emplace_back(path);
  if (changed_.size() == largestBatch) deliver();
}

void WatchedTree::deliver() {
  if (changed_.empty()) return;
  sink_(changed_);
  changed_.clear();
}

}  // namespace quarn
