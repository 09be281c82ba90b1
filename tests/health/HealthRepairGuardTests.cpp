#include <gtest/gtest.h>

#include "QuarnCore/health/HealthRepairGuard.h"
#include "QuarnCore/health/HealthRepairTrash.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

HealthIssue orphan() {
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
  EXPECT_EQ(thrown([] { HealthRepairGuard::requirePlausible(hostPlatform(), {}, orphan()); }), "nothing");
  for (const std::string& item : {app, moved}) {
    Unresolving files(item);
    const Platform platform = replacing({.files = &files});
    EXPECT_EQ(thrown([&] { HealthRepairGuard::requirePlausible(platform, {}, orphan()); }),
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
  report.issues.push_back(orphan());
  const HealthRepairTrash trash(platform, report,
                                [&lines](const std::string& line) { lines.push_back(line); });
  files.fades = true;
  trash.trash(Path(moved));
  EXPECT_EQ(lines,
            std::vector<std::string>{"  WARN: could not trash " + moved + ": " + Unresolving::of("Foo.app")});
  EXPECT_TRUE(scene::exists(moved));
}

}  // namespace
}  // namespace quarn
