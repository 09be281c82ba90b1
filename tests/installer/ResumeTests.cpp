#include <gtest/gtest.h>

#include "Platform/DateText.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/ResumeCoordinator.h"
#include "QuarnCore/installer/SafeAppExternalizer.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/installer/Installing.h"
#include "tests/support/Child.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;
using Status = InstallerSessionStatus;

const std::string foo = "/Applications/Foo.app";
const std::string bar = "/Applications/Bar.app";
const std::string id = "20260131_090500";

std::string installedLine(const std::string& name) {
  return "installed-app\t/Applications/" + name + "\t" + apps + "/" + name;
}

/// What is new below /Applications after something was done.
Texts newAfter(const std::function<void()>& change) {
  const std::vector<Path> roots = {Path("/Applications"), Path("/Users/me/Applications")};
  const FileSnapshot before = Snapshotter::capture(hostPlatform(), roots);
  change();
  const FileSnapshot after = Snapshotter::capture(hostPlatform(), roots);
  Texts texts;
  for (const Path& app : SafeAppExternalizer::newApplications(hostPlatform(), before, after))
    texts.push_back(app.text());
  return texts;
}

TEST(NewApplications, areThoseThatAreNewAndSafe) {
  scene::makeApp("/Applications/Old.app");
  EXPECT_EQ(
      newAfter([] {
        scene::makeApp(foo);
        scene::makeApp(bar);
        scene::makeApp("/Applications/Sub/Deep.app");
        scene::makeApp("/Applications/Foo.app/Contents/Helpers/Inner.app");
        scene::write("/Applications/Old.app/Contents/new", "x");
        scene::write("/Applications/notes.txt", "x");
        scene::makeApp("/Users/me/Applications/Own.app");
      }),
      (Texts{bar, foo, "/Applications/Foo.app/Contents/Helpers/Inner.app", "/Applications/Sub/Deep.app"}));
}

TEST(NewApplications, leaveOutWhatIsNotSafeToMove) {
  EXPECT_EQ(newAfter([] {
              scene::makeApp("/Applications/Store.app");
              scene::write("/Applications/Store.app/Contents/_MASReceipt/receipt", "x");
              scene::makeApp("/Applications/Login.app");
              scene::makeFolder("/Applications/Login.app/Contents/Library/LoginItems/x.app");
              scene::makeApp("/Applications/Extension.app");
              scene::makeFolder("/Applications/Extension.app/Contents/Library/SystemExtensions/x");
              scene::link("/Applications/Link.app", "/Volumes/X9/Link.app");
              scene::write("/Applications/File.app", "no bundle");
              scene::makeApp(foo);
            }),
            Texts{foo});
}

TEST(NewApplications, leaveOutWhatCannotBeLookedInto) {
  const std::string resources = foo + "/Contents/Resources";
  EXPECT_EQ(child::failuresWithoutRights([&] {
              EXPECT_EQ(newAfter([&] {
                          scene::makeApp(bar);
                          scene::makeApp(foo);
                          ::chmod(resources.c_str(), 0);
                        }),
                        Texts{bar});
            }),
            "");
  ::chmod(resources.c_str(), 0755);
}

TEST(NewApplications, leaveOutALauncherThatAnotherRunHasMade) {
  EXPECT_EQ(newAfter([] {
              scene::makeApp(apps + "/Foo.app");
              scene::makeLauncher(foo, apps + "/Foo.app");
              scene::makeLauncher(bar, "/nowhere");
            }),
            Texts{});
}

InstallerSession pendingSession(const Texts& pendingApps) {
  return {.id = id,
          .sourcePath = "/Users/me/a.pkg",
          .optionID = "trusted-external",
          .createdAt = *DateText::fromSecondsSince2001(791456700),
          .actions = {"installed-pkg\t/Users/me/a.pkg"},
          .changedPaths = {foo},
          .newReceipts = {},
          .status = Status::pendingExternalize,
          .targetDrivePath = "/Volumes/X9",
          .pendingExternalizeApps = pendingApps};
}

class Resuming : public testing::Test {
 protected:
  void save(const InstallerSession& session) {
    SessionStore::save(hostPlatform(), session, AppStorageNames::sessionRoot(hostPlatform().places));
  }
  std::optional<InstallerSession> saved() {
    return SessionStore::find(hostPlatform(), id, AppStorageNames::sessionRoot(hostPlatform().places));
  }
  InstallerSession resume(Platform& platform = hostPlatform()) {
    lines.clear();
    return ResumeCoordinator::resume(platform, id,
                                     {.sink = [this](const std::string& line) { lines.push_back(line); }});
  }
  Texts lines;
};

TEST_F(Resuming, takesWhatIsPendingToTheDrive) {
  scene::makeApp(foo);
  scene::makeApp(bar);
  const Texts original = scene::tree(foo);
  save(pendingSession({bar, foo}));
  const InstallerSession session = resume();
  EXPECT_EQ(session.status, Status::done);
  EXPECT_EQ(session.actions,
            (Texts{"installed-pkg\t/Users/me/a.pkg", installedLine("Bar.app"), installedLine("Foo.app")}));
  EXPECT_EQ(session.pendingExternalizeApps, Texts{});
  EXPECT_EQ(session.changedPaths, Texts{foo}) << "as it was";
  EXPECT_EQ(lines, (Texts{"externalize-safe-apps\t2", "session-finalized\t" + id}));
  EXPECT_EQ(saved(), session);
  EXPECT_EQ(scene::tree(apps + "/Foo.app"), original);
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), original);
  EXPECT_EQ(launcherTarget(foo), apps + "/Foo.app");
}

TEST_F(Resuming, aSecondTimeHasNothingToDo) {
  scene::makeApp(foo);
  save(pendingSession({foo}));
  resume();
  const auto before = scene::tree("/Users/me/Library");
  EXPECT_EQ(resume().status, Status::done);
  EXPECT_EQ(lines, Texts{"resume-noop\t" + id + "\tdone"});
  EXPECT_EQ(scene::tree("/Users/me/Library"), before) << "nothing is written";
}

TEST_F(Resuming, ofAFailedSessionDoesNothing) {
  InstallerSession failed = pendingSession({foo});
  failed.status = Status::failed;
  save(failed);
  EXPECT_EQ(resume(), failed);
  EXPECT_EQ(lines, Texts{"resume-noop\t" + id + "\tfailed"});
}

TEST_F(Resuming, oneThatFailsKeepsAllPending) {
  scene::makeApp(foo);
  scene::makeApp(bar);
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("copy ") && operation.find("Bar.app") != std::string::npos)
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  save(pendingSession({bar, foo}));
  const InstallerSession session = resume(gated.platform());
  EXPECT_EQ(session.status, Status::pendingExternalize);
  EXPECT_EQ(session.actions,
            (Texts{"installed-pkg\t/Users/me/a.pkg", "externalize-failed\t" + bar + "\tIt is full.",
                   installedLine("Foo.app")}));
  EXPECT_EQ(session.pendingExternalizeApps, (Texts{bar, foo}));
  EXPECT_EQ(lines, (Texts{"externalize-safe-apps\t2", "session-partial\t" + id}));
  EXPECT_EQ(saved(), session);
}

TEST_F(Resuming, leavesOutWhatIsGoneAndWhatHasBecomeALink) {
  scene::link(bar, "/Volumes/X9/Bar.app");
  save(pendingSession({bar, foo}));
  EXPECT_EQ(resume().status, Status::done);
  EXPECT_EQ(lines, (Texts{"externalize-safe-apps\t0", "session-finalized\t" + id}));
  EXPECT_EQ(saved()->actions, Texts{"installed-pkg\t/Users/me/a.pkg"});
  EXPECT_EQ(scene::target(bar), "/Volumes/X9/Bar.app");
}

TEST_F(Resuming, leavesOutWhatCanBeNoItemAnyMore) {
  scene::write("/Applications/Suite", "a file");
  scene::link("/Applications/Loop", "/Applications/Loop");
  save(pendingSession({"/Applications/Suite/Foo.app", "/Applications/Loop/Foo.app",
                       "/Applications/" + std::string(300, 'n') + ".app"}));
  EXPECT_EQ(resume().status, Status::done);
}

/// Can't look at one item.
class BlindForFoo : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  bool exists(const Path& path) const override {
    return path.text() != foo && FileSystemDecorator::exists(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (path.text() != foo) return FileSystemDecorator::attributes(path);
    return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "an error of the disk");
  }
};

TEST_F(Resuming, whatCannotBeLookedAtIsNotGoneAndStaysPending) {
  scene::makeApp(foo);
  scene::makeApp(bar);
  const Texts original = scene::tree(foo);
  save(pendingSession({bar, foo}));
  BlindForFoo files(hostPlatform().files);
  Platform blind = replacing({.files = &files});
  const InstallerSession session = resume(blind);
  EXPECT_EQ(session.status, Status::pendingExternalize);
  EXPECT_EQ(session.pendingExternalizeApps, (Texts{bar, foo}));
  EXPECT_EQ(session.actions[1], installedLine("Bar.app"));
  EXPECT_TRUE(session.actions[2].starts_with("externalize-failed\t" + foo + "\t")) << session.actions[2];
  EXPECT_EQ(lines, (Texts{"externalize-safe-apps\t2", "session-partial\t" + id}));
  EXPECT_EQ(scene::tree(foo), original);
}

TEST_F(Resuming, oneThatWasReplacedAlreadyButForItsLauncherGetsTheLauncher) {
  scene::makeApp(foo);
  const Texts original = scene::tree(foo);
  save(pendingSession({foo}));
  EXPECT_FALSE(child::succeeds([this] {
    GatedPlatform killing([](const std::string& operation) -> Result<void> {
      if (operation.starts_with("rename /Applications/.quarn-new-launcher-")) ::_exit(9);
      return {};
    });
    resume(killing.platform());
    return true;
  }));
  EXPECT_FALSE(scene::exists(foo));
  EXPECT_EQ(resume().status, Status::done);
  EXPECT_EQ(lines[0], "externalize-safe-apps\t1");
  EXPECT_EQ(saved()->actions.back(), installedLine("Foo.app"));
  EXPECT_EQ(launcherTarget(foo), apps + "/Foo.app");
  EXPECT_EQ(scene::tree(apps + "/Foo.app"), original);
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), original);
}

TEST_F(Resuming, whatSomebodyTookAwayIsNotBroughtBack) {
  // Only a launcher that a killed run left shows that the copy is whole.
  scene::makeApp(apps + "/Foo.app");
  save(pendingSession({foo}));
  EXPECT_EQ(resume().status, Status::done);
  EXPECT_EQ(lines[0], "externalize-safe-apps\t0");
  EXPECT_FALSE(scene::exists(foo));
}

TEST_F(Resuming, anApplicationInsideAnotherOneGoesAlongWithIt) {
  scene::makeApp(foo);
  scene::makeApp(foo + "/Contents/Helpers/Inner.app");
  save(pendingSession({foo, foo + "/Contents/Helpers/Inner.app"}));
  EXPECT_EQ(resume().status, Status::done);
  EXPECT_EQ(lines[0], "externalize-safe-apps\t1");
  EXPECT_TRUE(scene::exists(apps + "/Foo.app/Contents/Helpers/Inner.app/Contents/Info.plist"));
}

TEST_F(Resuming, aDriveThatIsAwayKeepsItPending) {
  scene::makeApp(foo);
  const auto before = scene::tree(foo);
  for (const auto& [drive, why] : {std::pair{"/Volumes/Away", "No drive is mounted there: /Volumes/Away"},
                                   {"", "It isn’t known which drive to install onto."}}) {
    InstallerSession session = pendingSession({foo});
    session.targetDrivePath = drive;
    save(session);
    EXPECT_EQ(resume().status, Status::pendingExternalize);
    EXPECT_EQ(saved()->actions.back(), "externalize-failed\t" + foo + "\t" + why);
    EXPECT_EQ(scene::tree(foo), before);
  }
  EXPECT_FALSE(scene::exists("/Volumes/Away"));
}

TEST_F(Resuming, takesNothingThatIsNoApplicationInItsPlace) {
  // Somebody else may have written the session.
  scene::write("/Users/me/Documents/precious", "precious");
  scene::makeApp("/Users/me/Foo.app");
  scene::makeFolder("/Applications/Utilities");
  const Texts hostile = {"/",
                         "/Applications",
                         "/Applications/Utilities",
                         "/Users/me",
                         "/Users/me/Documents",
                         "/Users/me/Foo.app",
                         "/Volumes/X9",
                         "/Applications/../Users/me/Foo.app"};
  const auto before = scene::tree("/Users/me/Documents");
  for (const std::string& path : hostile) {
    save(pendingSession({path}));
    EXPECT_EQ(resume().status, Status::pendingExternalize) << path;
    EXPECT_TRUE(saved()->actions.back().starts_with("externalize-failed\t")) << path;
  }
  EXPECT_EQ(scene::tree("/Users/me/Documents"), before);
  EXPECT_TRUE(scene::exists("/Users/me/Foo.app/Contents/Info.plist"));
  EXPECT_EQ(namesIn(apps), Texts{});
}

TEST_F(Resuming, ofWhatIsALauncherAlreadySetsTheGoodCopyAside) {
  // A run that was killed after the first of two applications: by the rules both are installed again.
  scene::makeApp(foo);
  save(pendingSession({foo}));
  resume();
  const auto copy = scene::tree(apps + "/Foo.app");
  save(pendingSession({foo}));
  resume();
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), copy);
}

TEST_F(Resuming, ofWhatIsUnknownIsAnError) {
  const auto errorOf = [this] {
    try {
      resume();
    } catch (const PlatformError& error) {
      return error.domain + " " + std::to_string(error.code) + " " + error.localizedDescription();
    }
    return std::string("nothing");
  };
  EXPECT_EQ(errorOf(), "install-resume 1 No session with id " + id);
  InstallerSession session = pendingSession({foo});
  session.optionID = "gone";
  save(session);
  EXPECT_EQ(errorOf(), "install-resume 2 Unknown option id gone");
}

TEST_F(Resuming, aSessionThatCannotBeSavedIsAnErrorAndIsStillPending) {
  scene::makeApp(foo);
  save(pendingSession({foo}));
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("writeAtomically /Users/me/Library"))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  EXPECT_EQ(thrown([&] { resume(gated.platform()); }), "It is full.");
  EXPECT_EQ(lines, Texts{"externalize-safe-apps\t1"});
  EXPECT_EQ(saved(), pendingSession({foo}));
}

TEST_F(Resuming, pendingSessionsAreListedFromTheNewest) {
  InstallerSession session = pendingSession({foo});
  for (const auto& [name, seconds, status] : {std::tuple{"a", 1.0, Status::pendingExternalize},
                                              {"b", 3.0, Status::done},
                                              {"c", 2.0, Status::pendingExternalize},
                                              {"d", 4.0, Status::failed}}) {
    session.id = name;
    session.createdAt = *DateText::fromSecondsSince2001(seconds);
    session.status = status;
    save(session);
  }
  Texts ids;
  for (const InstallerSession& one : PendingSessionsLookup::all(hostPlatform())) ids.push_back(one.id);
  EXPECT_EQ(ids, (Texts{"c", "a"}));
}

}  // namespace
}  // namespace quarn
