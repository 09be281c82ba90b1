#include <filesystem>
#include <sys/mount.h>
#include <sys/stat.h>

#include "QuarnCore/move/HealthManifest.h"
#include "tests/move/Moving.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string noPermission =
    "“Foo.app” couldn’t be moved because you don’t have permission to access “Apps”.";

class Homecoming : public ::testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(movedApp);
    whole = scene::tree(movedApp);
  }
  void linkIt() {
    scene::link(app, movedApp);
    HealthManifest::record(hostPlatform(), {app, movedApp, std::nullopt, 1, {}});
  }
  /// Link, record and copy are as they were.
  void expectNothingChanged() {
    EXPECT_EQ(scene::target(app), movedApp);
    EXPECT_TRUE(scene::exists(movedApp + "/Contents/Info.plist"));
    EXPECT_EQ(HealthManifest::load(hostPlatform()).size(), 1u);
  }
  /// What lies hidden beside the application.
  static Lines hidden() {
    Lines names;
    for (const auto& item : fs::directory_iterator("/Applications")) {
      const std::string name = item.path().filename().string();
      if (name.starts_with(".")) names.push_back(name);
    }
    return names;
  }

  Lines whole;
};

TEST_F(Homecoming, aTreeThatTookTheLinksPlaceStays) {
  linkIt();
  GatedPlatform gated([](const std::string& operation) {
    if (!operation.starts_with("removeSymbolicLink")) return Result<void>();
    fs::remove(app);
    scene::write(app + "/Contents/mine", "an updater's");
    return Result<void>();
  });
  EXPECT_NE(restore(gated.platform()), "nothing");
  EXPECT_EQ(scene::read(app + "/Contents/mine"), "an updater's");
  EXPECT_EQ(scene::tree(movedApp), whole);
}

TEST_F(Homecoming, aSocketInTheCopyIsFoundBeforeAnythingChanges) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  linkIt();
  ASSERT_EQ(::mknod((movedApp + "/Contents/socket").c_str(), S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(restore(), "“Contents/socket” is a socket or a device, which can't be copied. Remove it first.");
  expectNothingChanged();
  fs::remove(movedApp + "/Contents/socket");
  EXPECT_EQ(restore(), "nothing");
  EXPECT_EQ(scene::tree(app), whole);
}

TEST_F(Homecoming, aFifoComesHome) {
  linkIt();
  ASSERT_EQ(::mkfifo((movedApp + "/Contents/fifo").c_str(), 0600), 0);
  EXPECT_EQ(restore(), "nothing");
  struct stat status {};
  ASSERT_EQ(::lstat((app + "/Contents/fifo").c_str(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(Homecoming, aFolderOnTheDriveThatMayNotBeEmptiedIsFoundBeforeAnythingChanges) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  linkIt();
  ::chmod((movedApp + "/Contents/Resources").c_str(), 0555);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_EQ(restore(), noPermission); }), "");
  expectNothingChanged();
  ::chmod((movedApp + "/Contents/Resources").c_str(), 0755);
  EXPECT_EQ(scene::tree(movedApp), whole);
}

TEST_F(Homecoming, anUnwritableFolderAroundTheCopyIsFoundBeforeAnythingChanges) {
  linkIt();
  ::chmod(appsFolder.c_str(), 0555);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_EQ(restore(), noPermission); }), "");
  expectNothingChanged();
  EXPECT_EQ(scene::tree(movedApp), whole);
}

TEST_F(Homecoming, anUnreadableFolderInTheCopyIsFoundBeforeAnythingChanges) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  linkIt();
  ::chmod((movedApp + "/Contents/MacOS").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_NE(restore(), "nothing"); }), "");
  expectNothingChanged();
}

TEST_F(Homecoming, whatChangesOnTheDriveWhileTheCopyIsWrittenOutIsNotLost) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  linkIt();
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("flush")) scene::write(movedApp + "/Contents/late", "written late");
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()),
            "Verification failed: Foo.app copied with 7 of 8 entries — 1 missing.");
  EXPECT_EQ(scene::read(movedApp + "/Contents/late"), "written late");
  EXPECT_FALSE(scene::exists(app)) << "a failed copy at home is removed, and the link stays away";
}

TEST_F(Homecoming, aLinkTooDeepInItsOwnTargetToTellStays) {
  const std::string link = makeFarFolder("/Users/me/tree", "/Users/me/half") + "/link";
  fs::create_symlink("/Users/me/tree", link);
  EXPECT_EQ(restore(hostPlatform(), link), "“" + std::string(200, 'd') + "” can’t be looked at: The file “" +
                                               std::string(200, 'd') + "” couldn’t be opened.");
  EXPECT_EQ(scene::target(link), "/Users/me/tree");
}

TEST_F(Homecoming, whatBelongsWhereItIsStaysWhateverLeadsToIt) {
  scene::write("/Users/me/Library/Preferences/x.plist", "mine");
  scene::makeFolder("/Users/me/Applications");
  scene::write(scene::manifest, "[\n\n]");
  const std::string link = "/Users/me/Link";
  for (const std::string target :
       {"/Users/me/Library", "/Users/me/Applications", "/Applications", "/Volumes/X9/ExternalQuarn",
        "/Volumes/X9/ExternalQuarn/Apps", "/Users/me/Library/Application Support/Quarn"}) {
    fs::remove(link);
    scene::link(link, target);
    const auto before = scene::tree(target);
    EXPECT_EQ(restore(hostPlatform(), link), "Link leads to a folder that belongs where it is: " + target);
    EXPECT_EQ(scene::target(link), target);
    EXPECT_EQ(scene::tree(target), before);
  }
}

TEST_F(Homecoming, aFolderOfApplicationsThatWasMovedAsAWholeComesHomeToItself) {
  const std::string applications = "/Users/me/Applications";
  scene::write("/Volumes/X9/Applications/note", "mine");
  fs::remove_all(applications);
  scene::link(applications, "/Volumes/X9/Applications");
  EXPECT_EQ(restore(hostPlatform(), applications), "nothing");
  EXPECT_EQ(scene::read(applications + "/note"), "mine");
  EXPECT_FALSE(scene::isLink(applications));
}

TEST_F(Homecoming, aLinkToABundleThatHoldsATargetFileIsALink) {
  scene::write("/Users/me/Documents/letter", "mine");
  scene::write(movedApp + "/Contents/Resources/ExternalAppTarget.txt", "/Users/me/Documents");
  linkIt();
  EXPECT_EQ(restore(), "nothing");
  EXPECT_EQ(scene::read("/Users/me/Documents/letter"), "mine");
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
}

TEST_F(Homecoming, aLinkTextThatEndsInADotNamesItsFolder) {
  scene::write("/Volumes/X9/d/file", "mine");
  scene::makeFolder("/Volumes/X9/e/f");
  scene::write("/Volumes/X9/e/file", "yours");
  scene::link("/Users/me/d", "/Volumes/X9/d/.");
  scene::link("/Users/me/e", "/Volumes/X9/e/f/..");
  EXPECT_EQ(restore(hostPlatform(), "/Users/me/d"), "nothing");
  EXPECT_EQ(scene::read("/Users/me/d/file"), "mine");
  EXPECT_FALSE(scene::exists("/Volumes/X9/d"));
  EXPECT_EQ(restore(hostPlatform(), "/Users/me/e"), "nothing");
  EXPECT_EQ(scene::read("/Users/me/e/file"), "yours");
  EXPECT_FALSE(scene::exists("/Volumes/X9/e"));
}

TEST_F(Homecoming, aSocketByItselfIsRefused) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  ASSERT_EQ(::mknod("/Volumes/X9/socket", S_IFSOCK | 0600, 0), 0);
  scene::link("/Users/me/socket", "/Volumes/X9/socket");
  EXPECT_EQ(restore(hostPlatform(), "/Users/me/socket"),
            "“socket” is a socket or a device, which can't be copied. Remove it first.");
  EXPECT_TRUE(scene::isLink("/Users/me/socket"));
}

TEST_F(Homecoming, fromAReadOnlyDriveIsRefusedInItsName) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  linkIt();
  EXPECT_EQ(child::failuresWithOwnMounts([this] {
              ASSERT_EQ(
                  ::mount(nullptr, scene::drive.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr),
                  0);
              EXPECT_EQ(restore(), "You can’t save the file “Foo.app” because the volume “X9” is read only.");
              expectNothingChanged();
            }),
            "");
}

TEST_F(Homecoming, fromASecondMountOfOneDeviceLooksAtWhatCannotBeCopied) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  EXPECT_EQ(child::failuresWithOwnMounts([] {
              scene::makeFolder("/Users/Shared/Disk");
              scene::makeFolder("/Volumes/Z");
              ASSERT_EQ(::mount("/Users/Shared/Disk", "/Volumes/Z", nullptr, MS_BIND, nullptr), 0);
              scene::makeApp("/Volumes/Z/Foo.app");
              ASSERT_EQ(::mknod("/Volumes/Z/Foo.app/socket", S_IFSOCK | 0600, 0), 0);
              scene::link(app, "/Volumes/Z/Foo.app");
              EXPECT_EQ(restore(),
                        "“socket” is a socket or a device, which can't be copied. Remove it first.");
              EXPECT_TRUE(scene::isLink(app));
            }),
            "");
}

TEST_F(Homecoming, whatForbidsTheRemovalWhileTheCopyIsWrittenOutLeavesTheDriveWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "a drive that shares the home's device is left by a rename";
  linkIt();
  EXPECT_EQ(child::failuresWithoutRights([] {
              GatedPlatform gated([](const std::string& operation) {
                if (operation.starts_with("flush")) ::chmod((movedApp + "/Contents/Resources").c_str(), 0555);
                return Result<void>();
              });
              EXPECT_EQ(restore(gated.platform()), noPermission);
            }),
            "");
  ::chmod((movedApp + "/Contents/Resources").c_str(), 0755);
  EXPECT_EQ(scene::tree(movedApp), whole);
  EXPECT_FALSE(scene::exists(app)) << "the copy at home is removed";
}

class LauncherHomecoming : public Homecoming {
 protected:
  void SetUp() override {
    Homecoming::SetUp();
    scene::makeLauncher(app, movedApp);
    launcher = scene::tree(app);
  }
  Lines launcher;
};

TEST_F(LauncherHomecoming, isSetAsideFirstAndRemovedLast) {
  Lines steps;
  GatedPlatform gated([&steps](const std::string& operation) {
    steps.push_back(operation.substr(0, operation.find(' ')));
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()), "nothing");
  EXPECT_EQ(scene::tree(app), whole);
  EXPECT_EQ(hidden(), Lines{});
  EXPECT_EQ(steps.front(), "rename") << "the launcher";
  const Lines expected =
      scene::hasMounts() ? Lines{"rename", "rename", "copy", "flush", "start", "start", "remove", "remove"}
                         : Lines{"rename", "rename", "remove"};
  EXPECT_EQ(steps, expected);
}

TEST_F(LauncherHomecoming, isPutBackWhenTheMoveFails) {
  const PlatformError broken("test", 1, "It broke.");
  const Lines failing = scene::hasMounts() ? Lines{"copy", "flush"} : Lines{"rename " + movedApp};
  for (const std::string& word : failing) {
    GatedPlatform gated([&](const std::string& operation) {
      return operation.starts_with(word) ? Result<void>(broken) : Result<void>();
    });
    EXPECT_EQ(restore(gated.platform()), "It broke.") << word;
    EXPECT_EQ(scene::tree(app), launcher) << word;
    EXPECT_EQ(scene::tree(movedApp), whole) << word;
    EXPECT_EQ(hidden(), Lines{});
  }
}

TEST_F(LauncherHomecoming, staysAsideWhereItsPlaceIsTaken) {
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("rename " + movedApp)) scene::write(app, "somebody else's");
    return Result<void>();
  });
  EXPECT_NE(restore(gated.platform()), "nothing");
  EXPECT_EQ(scene::read(app), "somebody else's");
  EXPECT_EQ(scene::tree(movedApp), whole);
  ASSERT_EQ(hidden().size(), 1u);
  EXPECT_EQ(scene::tree("/Applications/" + hidden()[0]), launcher);
  EXPECT_TRUE(hidden()[0].starts_with(".quarn-launcher-"));
}

TEST_F(LauncherHomecoming, thatLeadsToNoApplicationCarriesNothingOff) {
  scene::write("/Users/me/Documents/letter", "mine");
  scene::write("/Volumes/X9/Photos/photo", "mine");
  scene::write("/Volumes/X9/File.app", "a file");
  for (const std::string target :
       {"/Users/me/Documents", "/Library", "/Volumes/X9/Photos", "/Volumes/X9/File.app"}) {
    fs::remove_all(app);
    scene::makeLauncher(app, target);
    const auto before = scene::tree(app);
    EXPECT_EQ(restore(), "A launcher must lead to an application: " + target);
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_TRUE(scene::exists(target));
  }
}

TEST_F(LauncherHomecoming, intoWhichSomethingWasInstalledGoesToTheTrash) {
  // An installer took it for the application.
  scene::write(app + "/Contents/MacOS/Foo", "a new version");
  const Lines mixed = scene::tree(app);
  EXPECT_EQ(restore(hostPlatform()), "nothing");
  EXPECT_EQ(scene::tree(app), whole);
  EXPECT_EQ(hidden(), Lines{});
  Lines trashed;
  for (const auto& item : fs::directory_iterator("/Users/me/.Trash")) trashed = scene::tree(item.path());
  EXPECT_EQ(trashed, mixed);
}

TEST_F(LauncherHomecoming, thatCannotBeRemovedInTheEndGoesToTheTrash) {
  GatedPlatform gated([](const std::string& operation) {
    const bool isLauncher = operation.starts_with("remove /Applications/.quarn-launcher-");
    return isLauncher ? Result<void>(PlatformError("test", 1, "It broke.")) : Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()), "nothing");
  EXPECT_EQ(scene::tree(app), whole);
  EXPECT_EQ(hidden(), Lines{});
}

TEST_F(LauncherHomecoming, thatMayNotBeRemovedIsFoundBeforeAnythingChanges) {
  ::chmod((app + "/Contents").c_str(), 0555);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(restore(),
                        "“Contents” couldn’t be removed because you don’t have permission to access it.");
            }),
            "");
  EXPECT_TRUE(scene::exists(app + "/Contents/Resources/ExternalAppTarget.txt"));
  EXPECT_EQ(scene::tree(movedApp), whole);
  EXPECT_EQ(hidden(), Lines{});
}

}  // namespace
}  // namespace quarn
