#include "QuarnCore/move/MoveVerifier.h"

#include "QuarnCore/move/EntryCount.h"

namespace quarn::MoveVerifier {
namespace {

using Reason = std::optional<std::string>;

bool isDirectory(Platform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  return attributes && attributes->kind == FileKind::directory;
}

/// What no tool copies: it isn't expected at the destination.
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

Reason verifySymlink(Platform& platform, const Path& source, const Path& destination,
                     const std::string& relativePath) {
  if (platform.files.readLink(source).asOptional() == platform.files.readLink(destination).asOptional()) {
    return std::nullopt;
  }
  return relativePath + " symlink target does not match.";
}

/// `ofSource` looks up the source's size, which only a regular file needs.
template <class AttributesOfSource>
Reason verifyItem(Platform& platform, FileKind kind, const AttributesOfSource& ofSource, const Path& source,
                  const Path& destination, const std::string& relativePath) {
  if (shouldSkipUnsupported(kind)) return std::nullopt;
  std::int64_t size = 0;
  if (kind == FileKind::regular) {
    const Result<FileAttributes> attributes = ofSource();
    if (!attributes) return notInspected(relativePath);
    size = attributes->size.value_or(0);
  }
  const auto copied = platform.files.attributes(destination);
  if (!copied) return missing(relativePath);
  if (kind == FileKind::symbolicLink) return verifySymlink(platform, source, destination, relativePath);
  if (kind == FileKind::directory && copied->kind != FileKind::directory) {
    return relativePath + " is not a folder at the destination.";
  }
  if (kind == FileKind::regular && copied->size != size) {
    return relativePath + " copied with a different file size.";
  }
  return std::nullopt;
}

Reason verifyTop(Platform& platform, const Path& source, const Path& destination) {
  const std::string name = source.lastComponent();
  const auto attributes = platform.files.attributes(source);
  if (!attributes) return notInspected(name);
  return verifyItem(
      platform, attributes->kind, [&attributes] { return attributes; }, source, destination, name);
}

Reason fileCountParity(EntryCount& ofSource, EntryCount& ofDestination, const std::string& name) {
  const auto expected = ofSource.value();
  const auto found = ofDestination.value();
  if (!expected || !found || *found >= *expected) return std::nullopt;
  return name + " copied with " + std::to_string(*found) + " of " + std::to_string(*expected) +
         " entries — " + std::to_string(*expected - *found) + " missing.";
}

class ItemByItem : public WalkVisitor {
 public:
  ItemByItem(Platform& platform, const Path& source, const Path& destination)
      : platform_(platform), source_(source), destination_(destination) {}

  WalkStep visit(const WalkItem& item) override {
    const std::string relativePath(item.relativePath());
    reason = verifyItem(
        platform_, item.kind(), [&item] { return item.attributes(); }, source_.appending(relativePath),
        destination_.appending(relativePath), relativePath);
    return reason ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path& item, const PlatformError& error) override {
    reason = "Could not inspect " + item.lastComponent() + ": " + error.description;
    return WalkStep::stop;
  }

  Reason reason;

 private:
  Platform& platform_;
  const Path& source_;
  const Path& destination_;
};

}  // namespace

std::optional<std::string> failureReason(Platform& platform, const Path& source, const Path& destination) {
  if (!platform.files.exists(destination)) return missing(destination.lastComponent());
  if (auto reason = verifyTop(platform, source, destination)) return reason;
  if (!isDirectory(platform, source)) return std::nullopt;
  // `find` counts on both sides while the items are looked at; what it finds missing is told first.
  EntryCount ofSource(platform, source);
  EntryCount ofDestination(platform, destination);
  ItemByItem check(platform, source, destination);
  platform.files.walk(source, Hidden::included, check);
  const auto missingEntries = fileCountParity(ofSource, ofDestination, source.lastComponent());
  return missingEntries ? missingEntries : check.reason;
}

}  // namespace quarn::MoveVerifier
