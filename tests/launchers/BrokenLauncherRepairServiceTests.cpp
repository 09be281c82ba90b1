#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/PropertyList.h"
#include "QuarnCore/launchers/BrokenLauncherRepairService.h"
#include "tests/launchers/Building.h"
#include "tests/support/Child.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;

const std::string gone = "/Volumes/X9/ExternalQuarn/Apps/Gone.app";
const std::string again = "/Applications/Foo 2.app";
const std::string ofUser = "/Users/me/Applications/Foo.app";
const std::string suffix = ".externallauncher";
const std::string retargeted = "Retargeted Foo.app to " + again + ".";
const std::string noReplacement =
    "No replacement app found for Foo.app. Reinstall the app or remove the broken launcher.";
const std::string noLauncher = "Could not retarget Foo.app: “Foo.app” isn’t a launcher.";

/// A launcher whose application is gone.
class BrokenLauncher : public testing::Test, protected building::Scene {
 protected:
  BrokenLauncher() { scene::makeLauncher(launcher, gone); }

  std::string repair(const std::string& at = launcher) {
    Platform mine = platform();
    return BrokenLauncherRepairService::repair(mine, Path(at));
  }
  /// Expects a sentence, and nothing changed and no tool started.
  void expectUntouched(const std::string& sentence, const std::string& at = launcher) {
    const NothingLost oracle(app);
    EXPECT_EQ(repair(at), sentence);
    EXPECT_EQ(oracle.foreignChanges({}), "");
    EXPECT_FALSE(scene::exists("/tmp/codesign"));
    EXPECT_FALSE(scene::exists("/tmp/lsregister"));
  }
};

std::string replacement(const std::string& at = launcher) {
  const auto found = BrokenLauncherRepairService::replacementTarget(hostPlatform(), Path(at));
  return found ? found->text() : "none";
}

void identify(const std::string& bundle, const std::string& identifier) {
  scene::write(bundle + "/Contents/Info.plist", PropertyList::xml({{"CFBundleIdentifier", identifier}}));
}

TEST_F(BrokenLauncher, opensTheApplicationThatWasInstalledAgain) {
  scene::makeApp(again);
  EXPECT_EQ(replacement(), again);
  EXPECT_EQ(repair(), retargeted);
  EXPECT_EQ(scene::read(launcher + targetFile), again) << "without a line end";
}

TEST_F(BrokenLauncher, isChangedInNothingButItsTarget) {
  scene::write(launcher + "/Contents/Resources/Foo.icns", "an icon");
  fs::permissions(launcher + targetFile, fs::perms(0640));
  scene::makeApp(again);
  const Lines application = scene::tree(again);
  const NothingLost oracle(app);
  EXPECT_EQ(repair(), retargeted);
  EXPECT_EQ(oracle.foreignChanges({}), "changed: " + launcher + targetFile + "\n");
  EXPECT_EQ(fs::status(launcher + targetFile).permissions(), fs::perms(0640));
  EXPECT_EQ(scene::tree(again), application);
}

TEST_F(BrokenLauncher, isSignedAndThenRegistered) {
  scene::makeApp(again);
  scene::replaceTool(lsregister,
                     "#!/bin/sh\nprintf '%s\\n' \"$@\" >/tmp/lsregister\ncp /tmp/codesign /tmp/before\n");
  EXPECT_EQ(repair(), retargeted);
  EXPECT_EQ(scene::read("/tmp/codesign"), "--force\n--sign\n-\n--timestamp=none\n" + launcher + "\n");
  EXPECT_EQ(scene::read("/tmp/lsregister"), "-f\n" + launcher + "\n");
  EXPECT_TRUE(scene::exists("/tmp/before"));
}

TEST_F(BrokenLauncher, saysTheSameThoughTheToolsFailOrAreMissing) {
  scene::makeApp(again);
  const std::string fails = "#!/bin/sh\necho no identity >&2; exit 1\n";
  scene::replaceTool("/usr/bin/codesign", fails);
  scene::replaceTool(lsregister, fails);
  EXPECT_EQ(repair(), retargeted);
  scene::write(launcher + targetFile, gone);
  scene::removeTool("/usr/bin/codesign");
  scene::removeTool(lsregister);
  EXPECT_EQ(repair(), retargeted);
  EXPECT_EQ(scene::read(launcher + targetFile), again);
}

TEST_F(BrokenLauncher, withoutTheToolThatSignsIsRegisteredAllTheSame) {
  scene::makeApp(again);
  scene::removeTool("/usr/bin/codesign");
  repair();
  EXPECT_EQ(scene::read("/tmp/lsregister"), "-f\n" + launcher + "\n");
}

TEST_F(BrokenLauncher, withAnIdentifierThatNamesNoApplicationIsNotSaved) {
  for (const std::string identifier : {"", ".externallauncher", ".externallauncher.externallauncher"}) {
    SCOPED_TRACE(identifier);
    identify(launcher, identifier);
    scene::makeApp(again);
    identify(again, "");
    expectUntouched(noReplacement);
  }
  scene::write(launcher + "/Contents/Info.plist", PropertyList::xml({{"CFBundleName", "Foo"}}));
  expectUntouched(noReplacement);
  fs::remove(launcher + "/Contents/Info.plist");
  expectUntouched(noReplacement);
}

TEST_F(BrokenLauncher, isNotSavedByAnotherLauncher) {
  scene::makeLauncher(again, app);
  expectUntouched(noReplacement);
  identify(again, "com.example.foo");
  expectUntouched(noReplacement);
}

TEST_F(BrokenLauncher, isNotSavedByABundleThatOnlySaysThatItIsALauncher) {
  identify(launcher, "com.example.foo.external.externallauncherlauncher");
  scene::makeApp(again);
  identify(again, "com.example.foo" + suffix);
  expectUntouched(noReplacement);
}

TEST_F(BrokenLauncher, isSavedByAnApplicationForEverybodyBeforeOneOfTheUser) {
  scene::makeApp(ofUser);
  EXPECT_EQ(replacement(), ofUser);
  scene::makeApp("/Applications/Utilities/Foo.app");
  EXPECT_EQ(replacement(), "/Applications/Utilities/Foo.app");
}

TEST_F(BrokenLauncher, isSavedByAnApplicationTwoFoldersDownAndNotByOneFurtherDown) {
  scene::makeApp("/Applications/One/Two/Three/Foo.app");
  EXPECT_EQ(replacement(), "none");
  scene::makeApp("/Users/me/Applications/One/Two/Foo.app");
  EXPECT_EQ(replacement(), "/Users/me/Applications/One/Two/Foo.app");
  scene::makeApp("/Applications/One/Two/Foo.app");
  EXPECT_EQ(replacement(), "/Applications/One/Two/Foo.app");
}

TEST_F(BrokenLauncher, isNotSavedByItselfHoweverItIsSpelled) {
  // A launcher by its program alone: nothing else in it says that it's no replacement.
  fs::remove(launcher + targetFile);
  scene::write(launcher + "/Contents/Info.plist",
               PropertyList::xml({{"CFBundleIdentifier", "com.example.foo"},
                                  {"CFBundleExecutable", "ExternalAppLauncher"}}));
  fs::remove_all("/Users/me/Applications");
  scene::link("/Users/me/Applications", "/Applications");
  for (const std::string& at :
       Lines{launcher, "/Applications/./Utilities/../Foo.app", "/Users/me/Applications/Foo.app"}) {
    SCOPED_TRACE(at);
    EXPECT_EQ(replacement(at), "none");
    expectUntouched(noReplacement, at);
  }
}

TEST_F(BrokenLauncher, mayStandAnywhere) {
  const std::string elsewhere = "/Users/me/Desktop/Foo.app";
  scene::makeLauncher(elsewhere, gone);
  scene::makeApp(again);
  EXPECT_EQ(repair(elsewhere), retargeted);
  EXPECT_EQ(scene::read(elsewhere + targetFile), again);
  EXPECT_EQ(scene::read(launcher + targetFile), gone + "\n");
}

TEST_F(BrokenLauncher, isKnownWithoutATargetFile) {
  fs::remove(launcher + targetFile);
  scene::makeApp(again);
  EXPECT_EQ(repair(), retargeted);
  EXPECT_EQ(scene::read(launcher + targetFile), again);
}

TEST_F(BrokenLauncher, isWrittenIntoOnlyIfItIsOne) {
  scene::makeApp(again);
  fs::remove_all(launcher);
  scene::makeApp(launcher);
  EXPECT_EQ(replacement(), again) << "and yet nothing is written";
  expectUntouched(noLauncher);
}

TEST_F(BrokenLauncher, thatIsALinkIsNotWrittenThrough) {
  scene::makeApp(again);
  fs::rename(launcher, "/Users/me/Desktop/Real.app");
  scene::link(launcher, "/Users/me/Desktop/Real.app");
  expectUntouched(noLauncher);
}

TEST_F(BrokenLauncher, isNotWrittenThroughALinkInIt) {
  scene::makeApp(again);
  for (const std::string folder : {"/Contents/Resources", "/Contents"}) {
    SCOPED_TRACE(folder);
    const std::string mine = "/Users/me/Documents/mine" + std::to_string(folder.size());
    scene::makeFolder("/Users/me/Documents");
    fs::remove_all(launcher);
    scene::makeLauncher(launcher, gone);
    fs::rename(launcher + folder, mine);
    scene::link(launcher + folder, mine);
    expectUntouched(noLauncher);
  }
}

TEST_F(BrokenLauncher, whoseTargetFileIsALinkGetsAFileInItsPlace) {
  scene::makeApp(again);
  scene::write("/Users/me/Documents/mine", "mine");
  fs::remove(launcher + targetFile);
  scene::link(launcher + targetFile, "/Users/me/Documents/mine");
  EXPECT_EQ(repair(), retargeted);
  EXPECT_FALSE(scene::isLink(launcher + targetFile));
  EXPECT_EQ(scene::read("/Users/me/Documents/mine"), "mine");
}

struct IdentifierCase {
  std::string ofLauncher;
  std::string ofApp;
  bool matches;
};

TEST_F(BrokenLauncher, goesByTheWholeIdentifierAndNothingLikeIt) {
  scene::makeApp(again);
  const std::string longest = "com." + std::string(1'000'000, 'x');
  const std::vector<IdentifierCase> cases = {
      {"com.foo.App" + suffix, "com.foo.App", true},
      {"com.foo.App", "com.foo.App", true},
      {"com.foo.App" + suffix + suffix, "com.foo.App", true},
      {"com" + suffix + ".foo" + suffix, "com.foo", true},
      {"com.foo.external" + suffix + "launcher", "com.foo", false},
      {"com.foo.App" + suffix, "com.foo.App2", false},
      {"com.foo.App" + suffix, "com.foo.App.helper", false},
      {"com.foo.App" + suffix, "com-foo-App", false},
      {"com.foo.App" + suffix, "com.foo.app", false},
      {"com.foo.App" + suffix, "com.foo.App ", false},
      {"com.foo.App.ExternalLauncher", "com.foo.App", false},
      {".*" + suffix, "com.foo.App", false},
      {".*" + suffix, ".*", true},
      {"com.(foo[+" + suffix, "com.(foo[+", true},
      {"com.foo|com.bar" + suffix, "com.foo", false},
      {"com.caf\u00E9" + suffix, "com.cafe\u0301", true},
      {"com.cafe\u0301" + suffix, "com.caf\u00E9", true},
      {"com.cafe" + suffix, "com.caf\u00E9", false},
      {"../../Documents" + suffix, "../../Documents", true},
      {longest + suffix, longest, true},
      {longest + suffix, longest + "x", false},
  };
  for (const IdentifierCase& each : cases) {
    SCOPED_TRACE(each.ofLauncher.substr(0, 60) + " | " + each.ofApp.substr(0, 60));
    identify(launcher, each.ofLauncher);
    identify(again, each.ofApp);
    EXPECT_EQ(replacement(), each.matches ? again : "none");
  }
}

TEST_F(BrokenLauncher, passesOverApplicationsWithoutAReadableIdentifier) {
  // Each is found before the good one: 1.app to 9.app sort before it, whatever the order of the folder.
  const std::vector<std::string> lists = {
      "",
      "bplist00",
      std::string("bplist00\xD1\x01\x02", 11),
      "<plist><array><string>com.example.foo</string></array></plist>",
      "<plist><dict><key>CFBundleIdentifier</key><integer>7</integer></dict></plist>",
      "<plist><dict><key>CFBundleIdentifier</key><array><string>com.example.foo</string></array></dict></"
      "plist>",
      "<plist><dict><key>CFBundleIdentifier</key><string>com.example.foo",
      "com.example.foo",
      std::string(1'000'000, '<'),
  };
  for (std::size_t i = 0; i < lists.size(); ++i)
    scene::write("/Applications/" + std::to_string(i) + ".app/Contents/Info.plist", lists[i]);
  scene::makeFolder("/Applications/Folder.app/Contents/Info.plist");
  scene::makeFolder("/Applications/Pipe.app/Contents");
  ASSERT_EQ(::mkfifo("/Applications/Pipe.app/Contents/Info.plist", 0600), 0);
  scene::write("/Applications/File.app", "a file");
  scene::link("/Applications/Dangling.app", "/nowhere");
  EXPECT_EQ(repair(), noReplacement);
  scene::makeApp(ofUser);
  EXPECT_EQ(replacement(), ofUser);
}

TEST_F(BrokenLauncher, whoseOwnListIsHostileFindsNothing) {
  scene::makeApp(again);
  for (const std::string& list :
       {std::string("bplist00"), std::string("<plist><array/></plist>"),
        std::string("<plist><dict><key>CFBundleIdentifier</key><integer>7</integer></dict></plist>"),
        std::string("<plist><dict><key>CFBundleIdentifier</key><string>com.example.foo")}) {
    scene::write(launcher + "/Contents/Info.plist", list);
    expectUntouched(noReplacement);
  }
}

TEST_F(BrokenLauncher, isReadFromABinaryListToo) {
  // {CFBundleIdentifier: "com.a"}
  std::string list = "bplist00";
  list += std::string("\xD1\x01\x02\x5F\x10\x12", 6) + "CFBundleIdentifier" + "\x55" + "com.a";
  list += std::string("\x08\x0B\x20", 3);
  list += std::string("\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x26", 32);
  ASSERT_TRUE(PropertyList::texts(list));
  scene::makeApp(again);
  scene::write(again + "/Contents/Info.plist", list);
  identify(launcher, "com.a" + suffix);
  EXPECT_EQ(replacement(), again);
}

TEST_F(BrokenLauncher, namesOfAnyCharactersAreWrittenAndSaidAsTheyAre) {
  for (const std::string name :
       {"A b\tc\n'\"$(x)`y`\\ &<>.app", "Caf\u00E9.app", "Cafe\u0301 2.app", "-rf.app"}) {
    SCOPED_TRACE(name);
    const std::string target = "/Applications/" + name;
    scene::makeApp(target);
    EXPECT_EQ(repair(), "Retargeted Foo.app to " + target + ".");
    EXPECT_EQ(scene::read(launcher + targetFile), target);
    fs::remove_all(target);
  }
}

TEST_F(BrokenLauncher, thatIsMissingOrNoPathFindsNothing) {
  scene::makeApp(again);
  expectUntouched(
      "No replacement app found for Nothing.app. Reinstall the app or remove the broken launcher.",
      "/Applications/Nothing.app");
  expectUntouched("No replacement app found for . Reinstall the app or remove the broken launcher.", "");
  EXPECT_EQ(repair(launcher + std::string("\0.app", 5)).find("No replacement app found for Foo.app"), 0u);
}

// A write that fails.

TEST_F(BrokenLauncher, thatMayNotBeWrittenStaysAsItIs) {
  scene::makeApp(again);
  fs::permissions(launcher + "/Contents/Resources", fs::perms(0555));
  EXPECT_EQ(child::failuresWithoutRights([&] {
              expectUntouched(
                  "Could not retarget Foo.app: You don’t have permission to save the file "
                  "“ExternalAppTarget.txt” in the folder “Resources”.");
            }),
            "");
}

TEST_F(BrokenLauncher, withoutItsFolderOfResourcesStaysAsItIs) {
  scene::makeApp(again);
  fs::remove_all(launcher + "/Contents/Resources");
  expectUntouched("Could not retarget Foo.app: The folder “ExternalAppTarget.txt” doesn’t exist.");
}

TEST_F(BrokenLauncher, withAFolderAsItsTargetFileStaysAsItIs) {
  scene::makeApp(again);
  fs::remove(launcher + targetFile);
  scene::write(launcher + targetFile + "/mine", "mine");
  const Lines before = scene::tree(launcher);
  EXPECT_TRUE(repair().starts_with("Could not retarget Foo.app: ")) << repair();
  EXPECT_EQ(scene::tree(launcher), before);
  EXPECT_FALSE(scene::exists("/tmp/codesign"));
}

TEST_F(BrokenLauncher, onADiskThatIsFullOrReadOnlyStaysAsItIs) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(again);
  scene::plug("Full", "64k");
  const std::string at = "/Volumes/Full/Foo.app";
  scene::makeLauncher(at, gone);
  scene::shell("cat /dev/zero >/Volumes/Full/fill");
  const Lines before = scene::tree(at);
  const std::string failed =
      "Could not retarget Foo.app: You can’t save the file “ExternalAppTarget.txt” because the volume "
      "“Full” ";
  EXPECT_EQ(repair(at), failed + "is out of space.");
  EXPECT_EQ(scene::tree(at), before);
  ASSERT_EQ(::mount(nullptr, "/Volumes/Full", nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_EQ(repair(at), failed + "is read only.");
  EXPECT_EQ(scene::tree(at), before);
  EXPECT_FALSE(scene::exists("/tmp/codesign"));
  scene::unplug("Full");
}

TEST_F(BrokenLauncher, ofARunThatWasKilledAnywhereIsTheOldOrTheNewOne) {
  scene::makeApp(again);
  Lines operations;
  for (int n = 1; n <= 10; ++n) {
    scene::write(launcher + targetFile, gone + "\n");
    fs::remove("/tmp/operation");
    const pid_t process = ::fork();
    if (process == 0) {
      int count = 0;
      GatedPlatform gated(
          [&](const std::string& operation) {
            if (++count != n) return Result<void>();
            scene::write("/tmp/operation", operation);
            ::kill(::getpid(), SIGKILL);
            return Result<void>();
          },
          platform());
      BrokenLauncherRepairService::repair(gated.platform(), Path(launcher));
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    if (!WIFSIGNALED(status)) break;
    const std::string operation = scene::read("/tmp/operation");
    SCOPED_TRACE(operation);
    operations.push_back(operation.substr(0, operation.find(' ')));
    EXPECT_EQ(scene::read(launcher + targetFile), operations.size() == 1 ? gone + "\n" : again);
    EXPECT_EQ(repair(), retargeted);
    EXPECT_EQ(scene::read(launcher + targetFile), again);
  }
  EXPECT_EQ(operations, (Lines{"writeAtomically", "start", "start"}));
}

/// The other run moves the application while it has the turn.
TEST_F(BrokenLauncher, isLookedAtAfterARunThatHasTheTurn) {
  scene::makeApp(again);
  const scene::Background other(
      {"/bin/sh", "-c",
       "exec flock /Users/me sh -c 'touch /tmp/held; sleep 0.5; mv \"/Applications/Foo 2.app\" " + ofUser +
           "'"});
  ASSERT_TRUE(scene::appears("/tmp/held"));
  EXPECT_EQ(repair(), "Retargeted Foo.app to " + ofUser + ".");
  EXPECT_EQ(scene::read(launcher + targetFile), ofUser);
}

}  // namespace
}  // namespace quarn
