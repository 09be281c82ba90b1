#include "QuarnCore/installer/ZipExpander.h"

#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/installer/InstallerError.h"

namespace quarn::ZipExpander {
namespace {

constexpr const char* errorDomain = "zip";
constexpr int unsafePathsCode = 1;

/// Looks for an item that doesn't lie in the folder that it was found in. No file system that this runs on
/// has a name that would allow that; this is the last guard if one does.
class UnsafePathVisitor : public WalkVisitor {
 public:
  UnsafePathVisitor(const FileSystem& files, const Path& folder)
      : files_(files), folder_(files.standardized(folder)), prefix_(folder_.text() + "/") {}

  WalkStep visit(const WalkItem& item) override {
    const Path path = files_.standardized(folder_.appending(item.relativePath()));
    found = !path.text().starts_with(prefix_);
    return found ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  bool found = false;

 private:
  const FileSystem& files_;
  const Path folder_;
  const std::string prefix_;
};

bool holdsUnsafePath(const FileSystem& files, const Path& folder) {
  UnsafePathVisitor visitor(files, folder);
  files.walk(folder, Hidden::included, visitor);
  return visitor.found;
}

}  // namespace

Path expand(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders, const Path& archive) {
  const Path folder = temporaryFolders.make("QuarnZip-");
  const CommandResult result =
      CommandRunner::run(platform, "/usr/bin/ditto", {"-x", "-k", archive.text(), folder.text()});
  if (!result.succeeded()) {
    temporaryFolders.setAside(folder, "zip-failed");
    throw InstallerError::ofTool(errorDomain, result.status, result.standardError);
  }
  if (holdsUnsafePath(platform.files, folder)) {
    temporaryFolders.setAside(folder, "zip-unsafe");
    throw PlatformError(errorDomain, unsafePathsCode, "Archive contains unsafe paths.");
  }
  return folder;
}

}  // namespace quarn::ZipExpander
