#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/health/HealthCheck.h"
#include "QuarnCore/health/HealthRepair.h"
#include "QuarnCore/health/HealthRepairGuard.h"
#include "QuarnCore/health/HealthRepairTrash.h"
#include "QuarnCore/move/HealthManifest.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

HealthIssue reverted() {
  HealthIssue issue;
  issue.kind = HealthIssue::Kind::reverted;
  issue.location = Path(app);
  issue.target = Path(moved);
  return issue;
}

TEST(RepairGuard, trashesNothingThatCannotBeResolved) {
  scene::makeApp(moved);
  EXPECT_EQ(thrown([] { HealthRepairGuard::requireTrashable(hostPlatform(), Path(moved)); }), "nothing");
  Unresolving files(moved);
  const Platform platform = replacing({.files = &files});
  EXPECT_EQ(thrown([&] { HealthRepairGuard::requireTrashable(platform, Path(moved)); }),
            Unresolving::of("Foo.app"));
}

TEST(RepairGuard, takesNoCopyForOursThatCannotBeResolved) {
  scene::makeApp(app);
  scene::makeApp(moved);
  EXPECT_EQ(thrown([] { HealthRepairGuard::requirePlausible(hostPlatform(), {}, reverted()); }), "nothing");
  for (const std::string& item : {app, moved}) {
    Unresolving files(item);
    const Platform platform = replacing({.files = &files});
    EXPECT_EQ(thrown([&] { HealthRepairGuard::requirePlausible(platform, {}, reverted()); }),
              Unresolving::of("Foo.app"));
  }
}

/// From some look on, an item can't be looked at any more.
class Fading : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<FileAttributes> attributes(const Path& path) const override {
    if (fades && path == Path(moved)) return PlatformError("test", 1, Unresolving::sentence);
    return FileSystemDecorator::attributes(path);
  }
  bool fades = false;
};

TEST(RepairGuard, anItemThatCannotBeLookedAtAnyMoreIsNotTheOneThatWasFound) {
  scene::makeApp(moved);
  Fading files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  std::vector<std::string> lines;
  HealthReport report;
  report.issues.push_back(reverted());
  const HealthRepairTrash trash(platform, report,
                                [&lines](const std::string& line) { lines.push_back(line); });
  files.fades = true;
  trash.trash(Path(moved));
  EXPECT_EQ(lines,
            std::vector<std::string>{"  WARN: could not trash " + moved + ": " + Unresolving::of("Foo.app")});
  EXPECT_TRUE(scene::exists(moved));
}

/// The n-th look of one kind at an item fails, or every one if `nth` is 0.
class FailsToLook : public FileSystemDecorator {
 public:
  enum class Look { list, kind, text, content };
  FailsToLook(Look look, std::string item, int nth)
      : FileSystemDecorator(hostPlatform().files), look_(look), item_(std::move(item)), nth_(nth) {}

  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override {
    if (fails(Look::list, folder)) return failure();
    return FileSystemDecorator::list(folder, hidden);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (fails(Look::kind, path)) return failure();
    return FileSystemDecorator::attributes(path);
  }
  Result<std::string> readSymbolicLink(const Path& path) const override {
    if (fails(Look::text, path)) return failure();
    return FileSystemDecorator::readSymbolicLink(path);
  }
  bool exists(const Path& path) const override {
    return !fails(Look::kind, path) && FileSystemDecorator::exists(path);
  }
  Result<std::string> read(const Path& file) const override {
    if (fails(Look::content, file)) return failure();
    return FileSystemDecorator::read(file);
  }

 private:
  bool fails(Look look, const Path& path) const {
    if (look != look_ || path.text() != item_) return false;
    return ++looks_ == nth_ || nth_ == 0;
  }
  static PlatformError failure() {
    return {cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, Unresolving::sentence};
  }

  const Look look_;
  const std::string item_;
  const int nth_;
  mutable int looks_ = 0;
};

/// Finds what there is and repairs it. Returns what was said.
std::string repairWith(Platform platform) {
  const HealthReport report = HealthCheck::run(platform, {Path("/Applications")});
  std::string said;
  const HealthRepairDialog dialog{.describe = [](const HealthIssue&, const std::string&) {},
                                  .shouldProceed = [] { return true; },
                                  .say = [&said](const std::string& line) { said += line + "\n"; }};
  HealthRepair::carryOut(platform, report, RevertedChoice::reclaim, dialog);
  return said;
}

/// The same, while looks at an item fail.
std::string repairWhileFailing(FailsToLook::Look look, const std::string& item, int nth) {
  FailsToLook files(look, item, nth);
  return repairWith(replacing({.files = &files}));
}

using Look = FailsToLook::Look;

/// Every look that a check and a repair have, and once more than that; 0 for all of them.
constexpr int lastLook = 12;

TEST(Repair, takesNoApplicationWhoseLinkCannotBeLookedAt) {
  scene::makeApp(moved);
  scene::link(app, moved);
  scene::link("/Applications/Other.app", "/Volumes/Away/Other.app");
  Platform whole = hostPlatform();
  HealthManifest::record(
      whole,
      {.sourcePath = app, .destinationPath = moved, .bundleIdentifier = {}, .movedAt = whole.clock.now()});
  const std::pair<Look, std::string> looks[] = {
      {Look::list, "/Applications"}, {Look::text, app}, {Look::kind, app}};
  for (const auto& [look, item] : looks) {
    for (int nth = 0; nth <= lastLook; ++nth) {
      const std::string said = repairWhileFailing(look, item, nth);
      EXPECT_TRUE(scene::exists(moved)) << item << " " << nth << "\n" << said;
      EXPECT_TRUE(scene::isLink(app)) << item << " " << nth << "\n" << said;
    }
  }
}

TEST(Repair, takesNoApplicationWhoseLauncherCannotBeLookedAt) {
  scene::makeApp(moved);
  scene::makeLauncher(app, moved);
  for (const std::string item :
       {"", "/Contents", "/Contents/Resources", "/Contents/Resources/ExternalAppTarget.txt"}) {
    for (const Look look : {Look::kind, Look::content}) {
      for (int nth = 0; nth <= lastLook; ++nth) {
        const std::string said = repairWhileFailing(look, app + item, nth);
        EXPECT_TRUE(scene::exists(moved)) << item << " " << nth << "\n" << said;
        EXPECT_TRUE(scene::exists(app)) << item << " " << nth << "\n" << said;
      }
    }
  }
}

/// Counts the bytes of the paths that are looked at.
class Weighing : public FileSystemDecorator {
 public:
  Weighing() : FileSystemDecorator(hostPlatform().files) {}
  bool exists(const Path& path) const override {
    bytes += path.text().size();
    return FileSystemDecorator::exists(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    bytes += path.text().size();
    return FileSystemDecorator::attributes(path);
  }
  Result<Path> realPath(const Path& path) const override {
    bytes += path.text().size();
    return FileSystemDecorator::realPath(path);
  }
  mutable std::size_t bytes = 0;
};

TEST(Repair, ofARecordOfAnyLengthLooksAtItAFewTimes) {
  scene::makeApp(app);
  for (const std::string start : {"", "/Volumes/X9/ExternalQuarn/Apps"}) {
    std::string longest = start;
    while (longest.size() < 4'000'000) longest += "/a";
    longest += "/Foo.app";
    for (const bool isSource : {false, true}) {
      Weighing files;
      Platform platform = replacing({.files = &files});
      std::filesystem::remove(scene::manifest);
      HealthManifest::record(platform, {.sourcePath = isSource ? longest : app,
                                        .destinationPath = isSource ? moved : longest,
                                        .bundleIdentifier = {},
                                        .movedAt = platform.clock.now()});
      files.bytes = 0;
      EXPECT_EQ(repairWith(platform), "");
      EXPECT_LT(files.bytes, 10 * longest.size());
    }
  }
}

}  // namespace
}  // namespace quarn
