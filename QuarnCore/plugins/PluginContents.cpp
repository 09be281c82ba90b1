#include "QuarnCore/plugins/PluginContents.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::PluginContents {
namespace {

/// As much as has to be read to tell the start of a file from another one.
constexpr std::size_t bytesOfStart = 1'000'000;

/// Only folders, files and links can be copied.
bool isCopied(FileKind kind) {
  return kind == FileKind::regular || kind == FileKind::folder || kind == FileKind::symbolicLink;
}

/// What can't be listed can't be copied either, and the tool says so.
class Uncopyable : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    if (isCopied(item.kind())) return WalkStep::proceed;
    name = std::string(item.relativePath());
    kind = item.kind();
    return WalkStep::stop;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::string name;
  std::optional<FileKind> kind;
};

/// Returns whether nothing is lost with an item: it holds the attributes of another one or how a window
/// looked, or is what signing leaves behind when it is killed.
bool mayLack(const std::string& name) {
  return name.starts_with("._") || name == ".DS_Store" || name.ends_with(".cstemp");
}

/// Looks for an item that another folder has nothing of its name for.
class Lacking : public WalkVisitor {
 public:
  explicit Lacking(const Path& other) : other_(other) {}

  WalkStep visit(const WalkItem& item) override {
    const std::string name = Path(item.relativePath()).lastComponent();
    if (name == "_CodeSignature") return WalkStep::skipDescendants;
    if (mayLack(name) || !isCopied(item.kind())) return WalkStep::proceed;
    const auto there = item.attributesBelow(other_);
    if (there) return WalkStep::proceed;
    if (!CocoaError::saysMissing(there.error())) return failed(other_, there.error());
    missing = std::string(item.relativePath());
    return WalkStep::stop;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    fault = error;
    return WalkStep::stop;
  }

  std::optional<std::string> missing;
  std::optional<PlatformError> fault;

 private:
  const Path& other_;
};

/// Looks for a file that is only the start of the same file in another folder.
class CutShort : public WalkVisitor {
 public:
  CutShort(const ReadOnlyPlatform& platform, const Path& folder, const Path& other)
      : platform_(platform), folder_(folder), other_(other) {}

  WalkStep visit(const WalkItem& item) override {
    if (item.kind() != FileKind::regular) return WalkStep::proceed;
    const auto size = sizeOf(item.attributes());
    if (size >= sizeOf(item.attributesBelow(other_))) return WalkStep::proceed;
    const auto count = std::min(static_cast<std::size_t>(size), bytesOfStart);
    const auto start = startBelow(folder_, item, count), whole = startBelow(other_, item, count);
    if (!start || !whole) return failed(folder_, start ? whole.error() : start.error());
    isFound = *start == *whole;
    return isFound ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    fault = error;
    return WalkStep::stop;
  }

  bool isFound = false;
  std::optional<PlatformError> fault;

 private:
  static std::int64_t sizeOf(const Result<FileAttributes>& attributes) {
    return attributes ? attributes->size.value_or(0) : 0;
  }
  Result<std::string> startBelow(const Path& root, const WalkItem& item, std::size_t count) const {
    return platform_.files.readStart(root.appending(item.relativePath()), count);
  }

  const ReadOnlyPlatform& platform_;
  const Path& folder_;
  const Path& other_;
};

std::int64_t sizeOf(const FileAttributes& attributes) {
  return attributes.kind == FileKind::regular ? attributes.size.value_or(0) : 0;
}

/// Looks for an item that signing made less of in the copy.
class Spoilt : public WalkVisitor {
 public:
  Spoilt(const Path& copy, bool isSigned) : copy_(copy), isSigned_(isSigned) {}

  WalkStep visit(const WalkItem& item) override {
    const std::string name = Path(item.relativePath()).lastComponent();
    if (name == "_CodeSignature") return WalkStep::skipDescendants;
    if (mayLack(name)) return WalkStep::proceed;
    const auto before = item.attributes(), after = item.attributesBelow(copy_);
    if (!before || !after) return failed(copy_, before ? after.error() : before.error());
    if (isLike(*before, *after)) return WalkStep::proceed;
    found = std::string(item.relativePath());
    return WalkStep::stop;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    fault = error;
    return WalkStep::stop;
  }

  std::optional<std::string> found;
  std::optional<PlatformError> fault;

 private:
  bool isLike(const FileAttributes& before, const FileAttributes& after) const {
    if (before.kind != after.kind) return false;
    const std::int64_t was = sizeOf(before), now = sizeOf(after);
    return was == now || (isSigned_ && now > 0);
  }

  const Path& copy_;
  const bool isSigned_;
};

}  // namespace

std::string quoted(const Path& place) {
  return "“" + place.text() + "”";
}

void requireCopyable(const ReadOnlyPlatform& platform, const Path& bundle) {
  Uncopyable search;
  platform.files.walk(platform.files.resolvingLinks(bundle), Hidden::included, search);
  if (!search.kind) return;
  if (!Obstacles::canBeCopied(*search.kind)) throw MoveRefused::notCopyable(search.name);
  throw MoveRefused("“" + search.name +
                    "” is no file, folder or symbolic link, and can’t be copied. Remove it first.");
}

void requireNotUnfinished(const ReadOnlyPlatform& platform, const Path& item, const Path& copy) {
  CutShort search(platform, item, copy);
  platform.files.walk(item, Hidden::included, search);
  if (search.fault) throw *search.fault;
  if (search.isFound) throw MoveRefused(quoted(item) + " is an unfinished copy of " + quoted(copy) + ".");
}

void requireHoldsAll(const ReadOnlyPlatform& platform, const Path& other, const Path& item) {
  Lacking search(other);
  platform.files.walk(item, Hidden::included, search);
  if (search.fault) throw *search.fault;
  if (search.missing)
    throw MoveRefused(quoted(other) + " lacks what " + quoted(item) + " has: " + *search.missing);
}

void requireUnspoilt(const ReadOnlyPlatform& platform, const Path& copy, const Path& source, bool isSigned) {
  requireHoldsAll(platform, copy, source);
  Spoilt search(copy, isSigned);
  platform.files.walk(source, Hidden::included, search);
  if (search.fault) throw *search.fault;
  if (search.found)
    throw MoveRefused(quoted(copy) + " no longer holds what " + quoted(source) + " has: " + *search.found);
}

}  // namespace quarn::PluginContents
