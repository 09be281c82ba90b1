#include "QuarnCore/move/MoveVerifier.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/move/EntryCount.h"

namespace quarn::MoveVerifier {
namespace {

using Reason = std::optional<std::string>;

/// Returns whether no tool copies items of this kind, so that they aren't expected at the destination.
bool shouldSkipUnsupported(FileKind kind) {
  return kind == FileKind::socket || kind == FileKind::blockDevice || kind == FileKind::characterDevice ||
         kind == FileKind::unknown;
}

Reason missing(const std::string& relativePath) {
  return relativePath + " is missing at the destination.";
}

Reason notInspected(const std::string& name) {
  return "Could not inspect " + name + ".";
}

Reason verifySymlink(const ReadOnlyPlatform& platform, const Path& source, const Path& destination,
                     const std::string& relativePath) {
  if (platform.files.readSymbolicLink(source).asOptional() ==
      platform.files.readSymbolicLink(destination).asOptional()) {
    return std::nullopt;
  }
  return relativePath + " symlink target does not match.";
}

/// An item and its copy. The top item and those below it are looked up in different ways.
class Pair {
 public:
  virtual ~Pair() = default;
  virtual FileKind kind() const = 0;  ///< of the source
  virtual Result<FileAttributes> source() const = 0;
  virtual Result<FileAttributes> copy() const = 0;
  virtual Reason differenceOfTargets(const std::string& relativePath) const = 0;
};

Reason verifyItem(const Pair& pair, const std::string& relativePath) {
  const FileKind kind = pair.kind();
  if (shouldSkipUnsupported(kind)) return std::nullopt;
  std::int64_t size = 0;
  if (kind == FileKind::regular) {
    const auto source = pair.source();
    if (!source) return notInspected(relativePath);
    size = source->size.value_or(0);
  }
  const auto copy = pair.copy();
  if (!copy) return missing(relativePath);
  if (kind == FileKind::symbolicLink) return pair.differenceOfTargets(relativePath);
  if (kind == FileKind::folder && copy->kind != FileKind::folder) {
    return relativePath + " is not a folder at the destination.";
  }
  if (kind == FileKind::regular && copy->size != size) {
    return relativePath + " copied with a different file size.";
  }
  return std::nullopt;
}

class TopPair : public Pair {
 public:
  TopPair(const ReadOnlyPlatform& platform, const FileAttributes& attributes, const Path& source,
          const Path& destination)
      : platform_(platform), attributes_(attributes), source_(source), destination_(destination) {}

  FileKind kind() const override { return attributes_.kind; }
  Result<FileAttributes> source() const override { return attributes_; }
  Result<FileAttributes> copy() const override { return platform_.files.attributes(destination_); }
  Reason differenceOfTargets(const std::string& relativePath) const override {
    return verifySymlink(platform_, source_, destination_, relativePath);
  }

 private:
  const ReadOnlyPlatform& platform_;
  const FileAttributes& attributes_;
  const Path& source_;
  const Path& destination_;
};

class WalkedPair : public Pair {
 public:
  WalkedPair(const ReadOnlyPlatform& platform, const WalkItem& item, const Path& source,
             const Path& destination)
      : platform_(platform), item_(item), source_(source), destination_(destination) {}

  FileKind kind() const override { return item_.kind(); }
  Result<FileAttributes> source() const override { return item_.attributes(); }
  Result<FileAttributes> copy() const override { return item_.attributesBelow(destination_); }
  Reason differenceOfTargets(const std::string& relativePath) const override {
    return verifySymlink(platform_, source_.appending(relativePath), destination_.appending(relativePath),
                         relativePath);
  }

 private:
  const ReadOnlyPlatform& platform_;
  const WalkItem& item_;
  const Path& source_;
  const Path& destination_;
};

Reason fileCountParity(EntryCount& ofSource, EntryCount& ofDestination, const std::string& name) {
  // Without both counts nothing can be said here; the comparison of the items decides.
  const auto expected = ofSource.value();
  const auto found = ofDestination.value();
  if (!expected || !found || *found >= *expected) return std::nullopt;
  return name + " copied with " + std::to_string(*found) + " of " + std::to_string(*expected) +
         " entries — " + std::to_string(*expected - *found) + " missing.";
}

class ItemByItem : public WalkVisitor {
 public:
  ItemByItem(const ReadOnlyPlatform& platform, const Path& source, const Path& destination)
      : platform_(platform), source_(source), destination_(destination) {}

  WalkStep visit(const WalkItem& item) override {
    reason = verifyItem(WalkedPair(platform_, item, source_, destination_), std::string(item.relativePath()));
    return reason ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path& item, const PlatformError& error) override {
    reason = "Could not inspect " + item.lastComponent() + ": " + error.description;
    return WalkStep::stop;
  }

  Reason reason;

 private:
  const ReadOnlyPlatform& platform_;
  const Path& source_;
  const Path& destination_;
};

class ItemByItemBeforeRemoval : public ItemByItem {
 public:
  using ItemByItem::ItemByItem;

  /// Looks for obstacles in the same walk: a second one would take as long again.
  WalkStep visit(const WalkItem& item) override {
    if (!obstacle) obstacle = item.obstacleToRemoval();
    return ItemByItem::visit(item);
  }

  std::optional<PlatformError> obstacle;
};

/// A removal names the whole item, so an obstacle to it does too.
std::optional<PlatformError> asOfTheWhole(const std::optional<PlatformError>& obstacle, const Path& item) {
  if (!obstacle || obstacle->domain != cocoaErrorDomain) return obstacle;
  return CocoaError::fromCode(CocoaError::Operation::remove, obstacle->code, item);
}

Reason difference(const ReadOnlyPlatform& platform, const Path& source, const Path& destination,
                  ItemByItem& check) {
  if (!platform.files.exists(destination)) return missing(destination.lastComponent());
  const std::string name = source.lastComponent();
  const auto attributes = platform.files.attributes(source);
  if (!attributes) return notInspected(name);
  if (auto reason = verifyItem(TopPair(platform, *attributes, source, destination), name)) return reason;
  if (attributes->kind != FileKind::folder) return std::nullopt;
  // `find` counts on both sides while the items are compared. A missing entry that it finds is reported
  // first.
  EntryCount ofSource(platform, source);
  EntryCount ofDestination(platform, destination);
  platform.files.walk(source, Hidden::included, check);
  const auto missingEntries = fileCountParity(ofSource, ofDestination, name);
  return missingEntries ? missingEntries : check.reason;
}

}  // namespace

std::optional<std::string> failureReason(const ReadOnlyPlatform& platform, const Path& source,
                                         const Path& destination) {
  ItemByItem check(platform, source, destination);
  return difference(platform, source, destination, check);
}

Findings beforeRemoval(const ReadOnlyPlatform& platform, const Path& source, const Path& destination) {
  ItemByItemBeforeRemoval check(platform, source, destination);
  check.obstacle = platform.files.obstacleToRemoval(source);
  auto found = difference(platform, source, destination, check);
  return {std::move(found), asOfTheWhole(check.obstacle, source)};
}

}  // namespace quarn::MoveVerifier
