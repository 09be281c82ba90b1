#include "QuarnCore/health/DataLinkDetection.h"

#include <algorithm>

#include "Platform/PathText.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/health/FolderChildren.h"

namespace quarn {

namespace StaleRootRetarget {
namespace {

std::string asComponent(std::string_view name) {
  return "/" + std::string(name) + "/";
}

std::string replacingAll(std::string text, const std::string& part, const std::string& replacement) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += replacement.size())
    text.replace(at, part.size(), replacement);
  return text;
}

}  // namespace

std::optional<Path> candidate(const ReadOnlyPlatform& platform, const Path& path) {
  const Path relocated(replacingAll(path.text(), asComponent(AppStorageNames::legacyExternalRoots.front()),
                                    asComponent(AppStorageNames::externalRoot)));
  if (relocated == path || !platform.files.exists(relocated)) return std::nullopt;
  return relocated;
}

}  // namespace StaleRootRetarget

namespace DanglingDataLinkDetector {
namespace {

constexpr int deepestLevel = 3;

/// Returns 1 for a child of the root.
auto levelOf(std::string_view relativePath) {
  return 1 + std::count(relativePath.begin(), relativePath.end(), '/');
}

/// Browsers note in such links which of their processes is running. The text of most isn't a path.
bool isNoteOfBrowser(const Path& link) {
  const std::string name = link.lastComponent();
  return name.starts_with("Singleton") || name.starts_with("RunningChromeVersion");
}

std::string remedy(const ReadOnlyPlatform& platform, const Path& missing) {
  const auto candidate = StaleRootRetarget::candidate(platform, missing);
  if (!candidate) return "No relocated copy found; the app may crash at launch until re-linked.";
  return "Relocated copy found at " + candidate->text() + "; `health repair` repoints it.";
}

class DeadLinks : public WalkVisitor {
 public:
  DeadLinks(const ReadOnlyPlatform& platform, const Path& root, std::vector<HealthIssue>& issues)
      : platform_(platform), root_(root), issues_(issues) {}

  WalkStep visit(const WalkItem& item) override {
    if (item.kind() == FileKind::symbolicLink) examine(root_.appending(item.relativePath()));
    return levelOf(item.relativePath()) < deepestLevel ? WalkStep::proceed : WalkStep::skipDescendants;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

 private:
  void examine(const Path& link) {
    if (isNoteOfBrowser(link)) return;
    const auto text = platform_.files.readSymbolicLink(link);
    if (!text) return;
    const Path target = PathText::linkTarget(link, *text);
    if (platform_.files.exists(target)) return;
    issues_.push_back({.kind = HealthIssue::Kind::dangling,
                       .location = link,
                       .target = target,
                       .detail = "App-data symlink target is missing. " + remedy(platform_, target),
                       .sizeBytes = 0});
  }

  const ReadOnlyPlatform& platform_;
  const Path& root_;
  std::vector<HealthIssue>& issues_;
};

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform) {
  std::vector<HealthIssue> issues;
  for (const char* folder : {"Library/Application Support", "Library/Logs", "Library/HTTPStorages",
                             "Library/WebKit", "Library/Saved Application State"}) {
    const Path root = platform.places.home().appending(folder);
    DeadLinks deadLinks(platform, root, issues);
    platform.files.walk(root, Hidden::skipped, deadLinks);
  }
  return issues;
}

}  // namespace DanglingDataLinkDetector

namespace UnsafePrefsPlistDetector {
namespace {

std::vector<Path> preferenceFolders(const ReadOnlyPlatform& platform, const std::vector<Path>& extraHomes) {
  std::vector<Path> folders = {Path("/Library/Preferences"),
                               platform.places.home().appending("Library/Preferences")};
  for (const Path& home : extraHomes) folders.push_back(home.appending("Library/Preferences"));
  return folders;
}

std::optional<Path> targetOf(const ReadOnlyPlatform& platform, const Path& link) {
  const auto text = platform.files.readSymbolicLink(link);
  if (!text) return std::nullopt;
  return PathText::fileURL(platform.places, *text);
}

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const std::vector<Path>& extraHomes) {
  std::vector<HealthIssue> issues;
  for (const Path& folder : preferenceFolders(platform, extraHomes)) {
    for (const Path& link : FolderChildren::links(platform, folder, Hidden::included)) {
      if (link.extension() != "plist") continue;
      issues.push_back(
          {.kind = HealthIssue::Kind::unsafePrefsPlist,
           .location = link,
           .target = targetOf(platform, link),
           .detail = "Library/Preferences plist is a symlink; cfprefsd will break it on next write.",
           .sizeBytes = 0});
    }
  }
  return issues;
}

}  // namespace UnsafePrefsPlistDetector

namespace SandboxExternalSymlinkDetector {
namespace {

HealthIssue external(const Path& link, const std::string& target) {
  return {.kind = HealthIssue::Kind::sandboxExternalSymlink,
          .location = link,
          .target = Path(target),
          .detail =
              "Sandbox-managed path symlinked to external volume. macOS sandbox blocks reads from "
              "/Volumes/, breaking sandboxed apps. Restore to internal disk.",
          .sizeBytes = 0};
}

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform) {
  std::vector<HealthIssue> issues;
  for (const char* folder :
       {"Library/Containers", "Library/Group Containers", "Library/Application Scripts"}) {
    const Path root = platform.places.home().appending(folder);
    for (const Path& link : FolderChildren::links(platform, root, Hidden::skipped)) {
      const auto text = platform.files.readSymbolicLink(link);
      if (text && text->starts_with("/Volumes/")) issues.push_back(external(link, *text));
    }
  }
  return issues;
}

}  // namespace SandboxExternalSymlinkDetector
}  // namespace quarn
