#include <filesystem>
#include <functional>
#include <sys/mount.h>
#include <sys/stat.h>

#include "tests/plugins/MovingPlugins.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/SpecialFiles.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;

class RefusedPlugins : public MovingPlugins {
 protected:
  void expectUnchanged(const std::string& message, const std::function<std::string()>& act) {
    const Lines before = everything();
    EXPECT_EQ(act(), "failed: " + message);
    EXPECT_EQ(everything(), before);
  }
  void expectNotMoved(const std::string& message, const InstalledPlugin& item = plugin()) {
    expectUnchanged(message, [&] { return move(item); });
  }
  void expectNotRestored(const std::string& message, const InstalledPlugin& item = plugin()) {
    expectUnchanged(message, [&] { return restore(item); });
  }
  void expectNotRemoved(const std::string& message, const InstalledPlugin& item = plugin()) {
    expectUnchanged(message, [&] { return remove(true, item); });
  }
  /// By all three.
  void expectRefused(const std::string& message, const InstalledPlugin& item) {
    expectNotRemoved(message, item);
    item.status.kind == Kind::native ? expectNotMoved(message, item) : expectNotRestored(message, item);
  }
  /// Points the link elsewhere.
  void relink(const std::string& target) {
    fs::remove_all(place);
    scene::link(place, target);
  }
};

TEST_F(RefusedPlugins, areThoseThatAreInNoFolderOfPlugins) {
  installed::makeBundle("/Users/me/A.vst3");
  makeNative();
  for (const std::string path :
       {"/Users/me/A.vst3", "/", "", "/Library/Audio/Plug-Ins/VST3", "/Library/Audio/Plug-Ins/VST3/..",
        "/Library/Audio/Plug-Ins/VST3/A.vst3/Contents", "Library/Audio/Plug-Ins/VST3/A.vst3"}) {
    InstalledPlugin hostile = plugin();
    hostile.systemPath = path;
    hostile.name = Path(path).lastComponent();
    expectRefused("“" + path + "” isn’t in a folder of plug-ins.", hostile);
  }
  InstalledPlugin hostile = plugin();
  hostile.name = "../../../Apps";
  expectRefused("“" + place + "” isn’t in a folder of plug-ins.", hostile);
}

TEST_F(RefusedPlugins, areThoseThatWereReplacedMeanwhile) {
  makeNative();
  const InstalledPlugin native = plugin();
  installed::makeBundle(copy);
  relink(copy);
  const InstalledPlugin externalised = plugin();
  expectRefused("“" + place + "” was replaced meanwhile.", native);
  relink("/Users/me/Other.vst3");
  expectRefused("“" + place + "” was replaced meanwhile.", externalised);
  const InstalledPlugin broken = plugin();
  fs::remove(place);
  makeNative();
  expectRefused("“" + place + "” was replaced meanwhile.", externalised);
  expectNotRemoved("“" + place + "” was replaced meanwhile.", broken);
  fs::remove_all(place);
  expectRefused("The file “A.vst3” couldn’t be opened because there is no such file.", native);
}

TEST_F(RefusedPlugins, areThoseThatGoWhereNoDriveIsMounted) {
  makeNative();
  scene::makeFolder("/Volumes/Left");
  for (const std::string drive : {"/Volumes/None", "/Volumes/Left"}) {
    drive_ = Path(drive);
    expectNotMoved("No drive is mounted there: " + drive);
  }
  ASSERT_EQ(::chdir("/"), 0);
  drive_ = Path("Volumes/X9");
  expectNotMoved("The path of the drive isn’t absolute: Volumes/X9");
}

TEST_F(RefusedPlugins, areThoseInASystemFolderThatIsALinkToTheDrive) {
  fs::remove_all(vst3);
  installed::makeBundle(copy);
  scene::link(vst3, onDrive + "/VST3");
  expectNotMoved("“" + copy + "” and “" + place + "” are the same place.");
  expectNotRemoved("“" + place + "” is the copy on the drive: " + copy);
  installed::makeBundle("/Users/me/A.vst3");
  relink("/Users/me/A.vst3");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_TRUE(scene::exists("/Users/me/A.vst3/Contents/Info.plist"));
}

TEST_F(RefusedPlugins, areThoseThatHoldASocket) {
  makeNative();
  ASSERT_TRUE(makeSocket(place + "/Contents/socket"));
  const std::string message =
      "“Contents/socket” is a socket or a device, which can't be copied. Remove it first.";
  // Where only root may remove a plug-in, too.
  ASSERT_EQ(::chmod(vst3.c_str(), 0555), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] { expectNotMoved(message); }), "");
  ASSERT_EQ(::chmod(vst3.c_str(), 0755), 0);
  fs::remove_all(place);
  makeExternalised();
  ASSERT_TRUE(makeSocket(copy + "/Contents/socket"));
  expectNotRestored(message);
}

TEST_F(RefusedPlugins, areThoseThatHoldAFifo) {
  const std::string message =
      "“Contents/pipe” is no file, folder or symbolic link, and can’t be copied. Remove it first.";
  makeNative();
  ASSERT_EQ(::mkfifo((place + "/Contents/pipe").c_str(), 0600), 0);
  expectNotMoved(message);
  fs::remove_all(place);
  makeExternalised();
  ASSERT_EQ(::mkfifo((copy + "/Contents/pipe").c_str(), 0600), 0);
  expectNotRestored(message);
}

TEST_F(RefusedPlugins, areThoseWithAVolumeMountedInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const auto mountIn = [](const std::string& bundle) {
    const std::string inside = bundle + "/Contents/volume";
    scene::makeFolder(inside);
    EXPECT_EQ(::mount("tmpfs", inside.c_str(), "tmpfs", 0, ""), 0);
    scene::write(inside + "/mine", "mine");
    scene::write(bundle + "/Contents/later", "beside it");
    return inside;
  };
  makeNative();
  const std::string inside = mountIn(place);
  expectRefused("A volume is mounted inside A.vst3: " + inside + ". Eject it first.", plugin());
  ::umount2(inside.c_str(), MNT_DETACH);
  const std::string insideCopy = mountIn(copy);
  expectNotMoved("A volume is mounted inside A.vst3: " + insideCopy + ". Eject it first.");
  relink(copy);
  expectNotRestored("A volume is mounted inside A.vst3: " + insideCopy + ". Eject it first.");
  const Lines onTheDrive = scene::tree(copy);
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_EQ(scene::tree(copy), onTheDrive) << "the link alone went";
}

// Moving out.

TEST_F(RefusedPlugins, areThoseWhoseCopyIsAlsoThatOfAnotherLink) {
  installed::makeBundle(components + "/A.vst3", "the one");
  const InstalledPlugin one = plugin();
  ASSERT_EQ(move(one), movedOut);
  installed::makeBundle(place, "the other");
  expectNotMoved("Another link leads to the copy on the drive: " + copy, scanned({PluginFormat::vst3}).at(0));
  EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "the one");
}

TEST_F(RefusedPlugins, areThoseThatSomebodyBeganToRemove) {
  makeNative();
  ASSERT_EQ(move(), movedOut);
  fs::remove(place);
  scene::write(place + "/Contents/Info.plist", "plist");
  const Lines whole = scene::tree(copy);
  EXPECT_TRUE(move().starts_with("failed: “" + place + "” lacks what “" + copy + "” has: "));
  EXPECT_EQ(scene::tree(copy), whole);
}

/// Every name is there, but one file ends too soon.
TEST_F(RefusedPlugins, areThoseThatAreUnfinishedCopiesOfTheOneOnTheDrive) {
  for (const std::string cut : {"", "co"}) {
    fs::remove_all(place);
    installed::makeBundle(copy);
    installed::makeBundle(place, cut);
    expectNotMoved("“" + place + "” is an unfinished copy of “" + copy + "”.");
  }
  installed::makeBundle(place, "new");
  EXPECT_EQ(move(), movedOut) << "a smaller one of another content is a new version";
}

TEST_F(RefusedPlugins, areThoseWhoseSourceCannotBeReadWhereACopyWouldGo) {
  makeNative();
  installed::makeBundle(copy, "old");
  ASSERT_EQ(::chmod((place + "/Contents/Info.plist").c_str(), 0), 0);
  const Lines before = everything();
  EXPECT_EQ(child::failuresWithoutRights([this] {
              EXPECT_TRUE(move().starts_with("failed: The file “Info.plist” couldn’t be opened")) << move();
            }),
            "");
  EXPECT_EQ(everything(), before);
}

// Bringing back.

TEST_F(RefusedPlugins, areThoseThatLeadToNoPlugin) {
  scene::write("/Users/me/file.vst3", "a file");
  scene::makeFolder("/Users/me/folder");
  for (const std::string target : {"/", "/Users/me", "/Users", "/Volumes/X9", "/Users/me/folder",
                                   "/Users/me/file.vst3", "/Library/Audio/Plug-Ins"}) {
    relink(target);
    expectNotRestored("“A.vst3” doesn’t lead to a plug-in: " + target);
  }
}

TEST_F(RefusedPlugins, areThoseThatLeadToAFolderAroundThemOrTheHomeFolder) {
  doubles::FakePlaces places(Path("/Users/me/home.vst3/me"));
  scene::makeFolder("/Users/me/home.vst3/me");
  Platform platform = replacing({.places = &places});
  relink("/Users/me/home.vst3");
  const InstalledPlugin home = plugin();
  expectUnchanged("“A.vst3” leads to a folder that belongs where it is: /Users/me/home.vst3",
                  [&] { return restore(home, platform); });
}

TEST_F(RefusedPlugins, areThoseThatLeadToAnotherLink) {
  makeExternalised();
  scene::link("/Users/me/A.vst3", copy);
  relink("/Users/me/A.vst3");
  expectNotRestored("“A.vst3” leads to another link: /Users/me/A.vst3");
}

TEST_F(RefusedPlugins, areThoseWithARelativePathInTheLink) {
  installed::makeBundle("/Users/me/A.vst3");
  ASSERT_EQ(::chdir("/Users/me"), 0);
  relink("A.vst3");
  expectNotRestored("“A.vst3” is a link with a relative path: A.vst3");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_TRUE(scene::exists("/Users/me/A.vst3/Contents/Info.plist"));
}

TEST_F(RefusedPlugins, areThoseOnADriveThatLeftAFolderOfItsName) {
  makeExternalised("/Volumes/Left/ExternalQuarn/Plugins/VST3/A.vst3");
  expectNotRestored("The drive is no longer mounted: /Volumes/Left");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_TRUE(scene::exists("/Volumes/Left/ExternalQuarn/Plugins/VST3/A.vst3/Contents/Info.plist"));
}

TEST_F(RefusedPlugins, areThoseThatCannotBeReadOnTheDrive) {
  makeExternalised();
  ASSERT_EQ(::chmod((copy + "/Contents/MacOS").c_str(), 0), 0);
  const Lines before = everything();
  EXPECT_EQ(child::failuresWithoutRights([this] { EXPECT_TRUE(restore().starts_with("failed: ")); }), "");
  EXPECT_EQ(everything(), before);
}

TEST_F(RefusedPlugins, areThoseThatAnotherRunChangedWhileThisOneWaited) {
  makeExternalised();
  const InstalledPlugin seen = plugin();
  struct Waiting : Locks {
    Result<std::shared_ptr<Lock>> lock(const Path& item, const std::function<void()>& waiting) override {
      waiting();
      fs::remove_all(place);
      installed::makeBundle(place, "newer");
      return hostPlatform().locks.lock(item, waiting);
    }
  } locks;
  Platform platform = replacing({.locks = &locks});
  EXPECT_EQ(remove(true, seen, platform), "failed: “" + place + "” was replaced meanwhile.");
  EXPECT_EQ(scene::read(place + "/Contents/MacOS/code"), "newer");
  EXPECT_EQ(restore(seen, platform), "failed: “" + place + "” was replaced meanwhile.");
  EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "code");
}

}  // namespace
}  // namespace quarn
