#include <gtest/gtest.h>

#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/InstallerRunner.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/installer/Installing.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Packages.h"
#include "tests/support/Patterns.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;
using Status = InstallerSessionStatus;

const std::string sessionsRoot = "/Users/me/Library/Application Support/Quarn/InstallerSessions";

InstallerSession run(Request& request, const std::string& source, Platform& platform = hostPlatform()) {
  return InstallerRunner::run(platform, InstallerSource::of(platform.places, source), request.request);
}

std::vector<InstallerSession> savedSessions() {
  return SessionStore::list(hostPlatform(), Path(sessionsRoot));
}

/// Lines with their numbers of paths replaced, which depend on the room.
Texts withoutCounts(Texts lines) {
  for (std::string& line : lines) line = patterns::replace(line, "(\tfiles\t)[0-9]+", "$1N");
  return lines;
}

/// A session is stored with the precision of a number of seconds.
void expectSaved(const InstallerSession& session) {
  auto sessions = savedSessions();
  ASSERT_EQ(sessions.size(), 1u);
  EXPECT_LT(std::chrono::abs(sessions[0].createdAt - session.createdAt), std::chrono::microseconds(1));
  sessions[0].createdAt = session.createdAt;
  EXPECT_EQ(sessions[0], session);
}

bool holds(const Texts& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

class Running : public testing::Test {
 protected:
  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
  }
  /// A package that brings two applications and a helper.
  static std::string package() {
    scene::makeApp("/Users/me/payload/Applications/One.app");
    scene::makeApp("/Users/me/payload/Applications/Two.app", {.identifier = "com.example.two"});
    scene::write("/Users/me/payload/Library/LaunchAgents/com.example.one.plist", "x");
    const std::string file = "/Users/me/Two.pkg";
    packages::component(file, {.identifier = "com.example.pkg", .payload = "/Users/me/payload"});
    packages::sign(file);
    return file;
  }
};

TEST_F(Running, anApplicationTellsTheseSteps) {
  scene::makeApp("/Users/me/Foo.app");
  const std::string destination = apps + "/Foo.app";
  const std::string action = "installed-app\t/Applications/Foo.app\t" + destination;
  Request request;
  const InstallerSession session = run(request, "/Users/me/Foo.app");
  EXPECT_EQ(
      withoutCounts(withoutLauncher(request.lines)),
      (Texts{"inspect\tapp\t/Users/me/Foo.app", "snapshot-before\tfiles\tN", "events\tskip-focused",
             "source\tapp\t/Users/me/Foo.app", "copy-app\t/Users/me/Foo.app\t" + destination,
             "verify-app\t" + destination, action, "snapshot-after\tfiles\tN", "session\t" + session.id}));
  EXPECT_TRUE(patterns::match(session.id, "[0-9]{8}_[0-9]{6}")) << session.id;
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.sourcePath, "/Users/me/Foo.app");
  EXPECT_EQ(session.optionID, "own");
  EXPECT_EQ(session.targetDrivePath, "/Volumes/X9");
  EXPECT_EQ(session.actions, Texts{action});
  EXPECT_EQ(session.changedPaths, (Texts{"/Applications/Foo.app", destination}));
  EXPECT_EQ(session.newReceipts, Texts{});
  EXPECT_EQ(session.pendingExternalizeApps, Texts{});
  expectSaved(session);
}

TEST_F(Running, aPackageThatBringsTwoApplicationsEndsWhenBothAreOnTheDrive) {
  const std::string file = package();
  Request request;
  const InstallerSession session = run(request, file);
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.pendingExternalizeApps, Texts{});
  EXPECT_EQ(session.actions,
            (Texts{"installed-pkg\t" + file, "installed-app\t/Applications/One.app\t" + apps + "/One.app",
                   "installed-app\t/Applications/Two.app\t" + apps + "/Two.app"}));
  EXPECT_EQ(session.newReceipts, Texts{"com.example.pkg"});
  for (const char* path : {"/Applications/One.app", "/Applications/One.app/Contents/Info.plist",
                           "/Applications/Two.app", "/Library/LaunchAgents/com.example.one.plist"})
    EXPECT_TRUE(holds(session.changedPaths, path)) << path;
  EXPECT_EQ(launcherTarget("/Applications/One.app"), apps + "/One.app");
  EXPECT_EQ(launcherTarget("/Applications/Two.app"), apps + "/Two.app");
  const auto at = [&](const std::string& start) {
    for (std::size_t i = 0; i < request.lines.size(); ++i)
      if (request.lines[i].starts_with(start)) return i;
    return request.lines.size();
  };
  EXPECT_LT(at("events\tstart"), at("run-pkg\t"));
  EXPECT_LT(at("session\t"), at("externalize-safe-apps\t2"));
  EXPECT_LT(at("externalize-safe-apps\t2"), at("session-finalized\t"));
  EXPECT_EQ(request.lines.back(), "session-finalized\t" + session.id);
  expectSaved(session);
}

TEST_F(Running, theSessionIsPendingOnTheDiskBeforeAnyApplicationIsMoved) {
  const std::string file = package();
  std::optional<InstallerSession> seen;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation.starts_with("copy /Applications/") && !seen) seen = savedSessions().at(0);
    return {};
  });
  Request request;
  run(request, file, gated.platform());
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen->status, Status::pendingExternalize);
  EXPECT_EQ(seen->pendingExternalizeApps, (Texts{"/Applications/One.app", "/Applications/Two.app"}));
  EXPECT_EQ(seen->actions, Texts{"installed-pkg\t" + file});
}

TEST_F(Running, anOptionCanLeaveNewApplicationsWhereTheyAre) {
  const std::string file = package();
  InstallerOption chosen = option();
  chosen.relocateSafeApps = false;
  Request request(chosen);
  const InstallerSession session = run(request, file);
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.actions, Texts{"installed-pkg\t" + file});
  EXPECT_EQ(session.pendingExternalizeApps, Texts{});
  EXPECT_EQ(namesIn(apps), Texts{});
  EXPECT_TRUE(scene::exists("/Applications/One.app/Contents/Info.plist"));
}

TEST_F(Running, anApplicationThatIsNotSafeToMoveStays) {
  scene::makeApp("/Users/me/payload/Applications/Login.app");
  scene::makeFolder("/Users/me/payload/Applications/Login.app/Contents/Library/LoginItems/x.app");
  packages::component("/Users/me/a.pkg", {.payload = "/Users/me/payload"});
  Request request(lenient());
  const InstallerSession session = run(request, "/Users/me/a.pkg");
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.pendingExternalizeApps, Texts{});
  EXPECT_EQ(namesIn(apps), Texts{});
}

TEST_F(Running, aBlockedPackageIsAFailedSession) {
  packages::component("/Users/me/a.pkg");
  Request request;
  EXPECT_EQ(thrown([&] { run(request, "/Users/me/a.pkg"); }), "Untrusted package blocked.");
  EXPECT_EQ(request.lines.back(), "failed\tUntrusted package blocked.");
  const auto sessions = savedSessions();
  ASSERT_EQ(sessions.size(), 1u);
  EXPECT_EQ(sessions[0].status, Status::failed);
  EXPECT_EQ(sessions[0].sourcePath, "/Users/me/a.pkg");
  EXPECT_EQ(sessions[0].optionID, "own");
  EXPECT_EQ(sessions[0].targetDrivePath, "/Volumes/X9");
  EXPECT_EQ(sessions[0].actions, Texts{});
  EXPECT_EQ(sessions[0].changedPaths, Texts{});
  EXPECT_EQ(sessions[0].pendingExternalizeApps, Texts{});
}

TEST_F(Running, anUnknownSourceIsAFailedSession) {
  Request request;
  EXPECT_EQ(thrown([&] { run(request, "/Users/me/a.txt"); }), "Unsupported source type.");
  EXPECT_EQ(request.lines[0], "inspect\tunknown\t/Users/me/a.txt");
  EXPECT_EQ(savedSessions().at(0).status, Status::failed);
}

TEST_F(Running, aFailedSessionThatCannotBeSavedKeepsTheFirstError) {
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("writeAtomically"))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  Request request;
  EXPECT_EQ(thrown([&] { run(request, "/Users/me/a.txt", gated.platform()); }), "Unsupported source type.");
  EXPECT_EQ(savedSessions().size(), 0u);
}

TEST_F(Running, aSessionThatCannotBeSavedIsAnError) {
  scene::makeApp("/Users/me/Foo.app");
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("writeAtomically " + sessionsRoot))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  Request request;
  EXPECT_EQ(thrown([&] { run(request, "/Users/me/Foo.app", gated.platform()); }), "It is full.");
  EXPECT_TRUE(scene::exists(apps + "/Foo.app/Contents/Info.plist")) << "it is installed";
  EXPECT_EQ(savedSessions().size(), 0u) << "and no failed session is written";
}

TEST_F(Running, anImageWithoutItemsIsASuccess) {
  scene::write("/Users/me/content/Read me.txt", "x");
  scene::run(
      {"/usr/bin/bsdtar", "--format", "iso9660", "-cf", "/Users/me/I.dmg", "-C", "/Users/me/content", "."});
  Request request;
  const InstallerSession session = run(request, "/Users/me/I.dmg");
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.actions, Texts{});
  EXPECT_TRUE(holds(request.lines, "events\tskip-focused"));
}

TEST_F(Running, aScriptRecordsOnlyWhatWasMovedAndWatchesEverything) {
  scene::write("/Users/me/a.sh", "cp -R /Users/me/Foo.app /Applications/\n");
  scene::makeApp("/Users/me/Foo.app");
  Request request(lenient());
  const InstallerSession session = run(request, "/Users/me/a.sh");
  EXPECT_TRUE(holds(request.lines, "events\tstart"));
  EXPECT_EQ(session.actions, (Texts{"ran-script\t/Users/me/a.sh",
                                    "installed-app\t/Applications/Foo.app\t" + apps + "/Foo.app"}));
  EXPECT_EQ(session.changedPaths, Texts{}) << "the changes were merged before";
  EXPECT_EQ(session.status, Status::done);
}

TEST_F(Running, everyNewPathOfAPackageThatKeepsRenamingIsRecorded) {
  scene::write("/Users/me/scripts/postinstall",
               "#!/bin/bash\nset -e\nbase='/Library/Application Support/Churn'\n"
               "for i in $(seq 100); do\n"
               "  echo x >\"$base/brief-$i\"\n"
               "  mkdir -p \"$base/$i/deep\"\n"
               "  for j in $(seq 10); do echo x >\"$base/$i/deep/$j\"; done\n"
               "  mv \"$base/$i/deep\" \"$base/$i/moved\"\n"
               "  mv \"$base/$i/moved/1\" \"$base/$i/first\"\n"
               "  rm \"$base/$i/moved/2\" \"$base/brief-$i\"\n"
               "done\n");
  std::filesystem::permissions("/Users/me/scripts/postinstall", std::filesystem::perms(0755));
  packages::component("/Users/me/a.pkg", {.scripts = "/Users/me/scripts"});
  std::filesystem::create_directories("/Library/Application Support/Churn");
  Request request(lenient());
  const InstallerSession session = run(request, "/Users/me/a.pkg");
  std::size_t count = 0;
  for (const auto& item :
       std::filesystem::recursive_directory_iterator("/Library/Application Support/Churn")) {
    ++count;
    EXPECT_TRUE(
        std::binary_search(session.changedPaths.begin(), session.changedPaths.end(), item.path().string()))
        << item.path();
  }
  EXPECT_EQ(count, 100u * (1 + 1 + 8 + 1));
  // Made and removed again at once, in a folder that was watched from the beginning; in a new one they may be
  // missed, depending on how busy the machine is.
  for (int i = 1; i <= 100; ++i) {
    const std::string brief = "/Library/Application Support/Churn/brief-" + std::to_string(i);
    EXPECT_TRUE(holds(session.changedPaths, brief)) << brief;
  }
}

TEST_F(Running, aRootThatDoesNotExistAddsNothing) {
  scene::makeApp("/Users/me/Foo.app");
  InstallerOption chosen = option();
  chosen.applicationLinkRoot = "/Users/me/Launchers";
  Request request(chosen);
  run(request, "/Users/me/Foo.app");
  EXPECT_TRUE(holds(request.lines, "snapshot-before\tfiles\t0")) << testing::PrintToString(request.lines);
  EXPECT_EQ(launcherTarget("/Users/me/Launchers/Foo.app"), apps + "/Foo.app");
}

TEST_F(Running, aRelativeSourceIsRecordedAsItWasGiven) {
  scene::makeApp("/Users/me/Foo.app");
  std::filesystem::current_path("/Users/me");
  Request request;
  const InstallerSession session = run(request, "Foo.app");
  EXPECT_EQ(request.lines[0], "inspect\tapp\tFoo.app");
  EXPECT_EQ(session.sourcePath, "Foo.app");
  EXPECT_EQ(session.actions, Texts{"installed-app\t/Applications/Foo.app\t" + apps + "/Foo.app"});
}

TEST_F(Running, aNameThatIsNoTextDoesNotKeepTheRestFromBeingRecorded) {
  scene::write("/Users/me/scripts/postinstall",
               "#!/bin/bash\nmkdir -p '/Library/Application Support/Odd'\n"
               "touch '/Library/Application Support/Odd/good' $'/Library/Application Support/Odd/b\\xFFd'\n");
  std::filesystem::permissions("/Users/me/scripts/postinstall", std::filesystem::perms(0755));
  packages::component("/Users/me/a.pkg", {.scripts = "/Users/me/scripts"});
  Request request(lenient());
  const InstallerSession session = run(request, "/Users/me/a.pkg");
  EXPECT_TRUE(holds(session.changedPaths, "/Library/Application Support/Odd/good"));
  EXPECT_EQ(savedSessions().size(), 1u);
}

}  // namespace
}  // namespace quarn
