#include <filesystem>

#include "tests/plugins/MovingPlugins.h"
#include "tests/support/Child.h"
#include "tests/support/FileSystemDecorator.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;

/// The changing operations, without the counting of a comparison, which is in no order.
class Watched {
 public:
  Platform& platform() { return gated_.platform(); }
  Lines operations;

 private:
  GatedPlatform gated_{[this](const std::string& operation) -> Result<void> {
    if (!operation.starts_with("start /usr/bin/find ")) operations.push_back(operation);
    return {};
  }};
};

TEST_F(MovingPlugins, movesANativePluginToTheDriveAndLeavesALink) {
  makeNative();
  const Lines bundle = scene::tree(place);
  const InstalledPlugin before = plugin();
  Watched watched;
  const auto reports = PluginMover::moveToExternal(watched.platform(), {before}, drive_, log());
  EXPECT_EQ(reports,
            (std::vector<MoveReport>{
                {.plugin = before, .outcome = MoveReport::Outcome::moved, .message = "ok → " + copy}}));
  EXPECT_EQ(log_, Lines{"move A.vst3 → " + copy});
  EXPECT_EQ(scene::tree(copy), bundle);
  EXPECT_EQ(scene::target(place), copy);
  EXPECT_EQ(watched.operations,
            (Lines{"createFolder " + onDrive + "/VST3", "start /usr/bin/ditto --rsrc " + place + " " + copy,
                   "flush " + copy, "start " + gantrix + " rm -rf " + place,
                   "start " + gantrix + " ln -s " + copy + " " + place, "flush " + vst3}));
  EXPECT_EQ(plugin().status, (PluginInstallStatus{Kind::externalised, copy}));
}

TEST_F(MovingPlugins, skipsWhatIsNotNative) {
  makeExternalised();
  scene::link(vst3 + "/B.vst3", "/nowhere");
  const Lines before = everything();
  EXPECT_EQ(told(PluginMover::moveToExternal(hostPlatform(), scanned(), drive_, log())),
            "skipped: not native\nskipped: not native");
  EXPECT_EQ(log_, Lines{});
  EXPECT_EQ(everything(), before);
}

TEST_F(MovingPlugins, replacesACopyThatIsOnTheDriveWithoutAQuestion) {
  makeNative();
  scene::write(copy + "/Contents/MacOS/code", "another, older and longer");
  const Lines bundle = scene::tree(place);
  Watched watched;
  EXPECT_EQ(move(plugin(), watched.platform()), movedOut);
  EXPECT_EQ(watched.operations.at(1), "remove " + copy);
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(MovingPlugins, replacesALinkWhereTheCopyComesAsALink) {
  for (const std::string target : {"/Users/me/mine.vst3", "/nowhere"}) {
    fs::remove_all(place);
    fs::remove_all(copy);
    makeNative();
    scene::write("/Users/me/mine.vst3/Contents/mine", "mine");
    scene::link(copy, target);
    const Lines bundle = scene::tree(place), mine = scene::tree("/Users/me/mine.vst3");
    EXPECT_EQ(move(), movedOut) << target;
    EXPECT_EQ(scene::tree(copy), bundle);
    EXPECT_EQ(scene::tree("/Users/me/mine.vst3"), mine);
  }
}

TEST_F(MovingPlugins, namesTheFolderOnTheDriveByTheLabelOfTheFormat) {
  installed::makeBundle(vst2 + "/A.vst");
  EXPECT_EQ(move(plugin("A.vst")), "moved: ok → " + onDrive + "/VST2/A.vst");
  EXPECT_EQ(scene::target(vst2 + "/A.vst"), onDrive + "/VST2/A.vst");
}

TEST_F(MovingPlugins, goesOnWithTheNextPluginAfterAFailure) {
  for (const std::string name : {"A", "B", "C"}) installed::makeBundle(vst3 + "/" + name + ".vst3");
  order("ditto", "on */B.vst3 fail 1 no room");
  EXPECT_EQ(told(PluginMover::moveToExternal(hostPlatform(), scanned(), drive_, log())),
            movedOut + "\nfailed: ditto: no room\n\nmoved: ok → " + onDrive + "/VST3/C.vst3");
  EXPECT_EQ(log_.size(), 3u);
  EXPECT_TRUE(scene::exists(vst3 + "/B.vst3/Contents/MacOS/code"));
}

TEST_F(MovingPlugins, passesNamesOfEveryKindOnUnharmed) {
  const Lines names = {
      "a \"b\" 'c' $x `y`.vst3", "-rf.vst3",       "l\nf.vst3",
      "Cafe\u0301.vst3",         "Caf\u00E9.vst3", std::string(scene::longestName() - 5, 'x') + ".vst3"};
  for (const std::string& name : names) {
    installed::makeBundle(vst3 + "/" + name, name);
    const Lines bundle = scene::tree(vst3 + "/" + name);
    const std::string to = onDrive + "/VST3/" + name;
    EXPECT_EQ(move(plugin(name)), "moved: ok → " + to);
    EXPECT_EQ(scene::target(vst3 + "/" + name), to);
    EXPECT_EQ(scene::tree(to), bundle);
    EXPECT_EQ(restore(plugin(name)), "restored: ok") << name;
    EXPECT_EQ(scene::read(vst3 + "/" + name + "/Contents/MacOS/code"), name);
    EXPECT_FALSE(scene::exists(onDrive + "/VST3/" + name));
    EXPECT_EQ(remove(false, plugin(name)), "removed: ok");
    EXPECT_FALSE(scene::exists(vst3 + "/" + name));
  }
}

// Bringing back.

TEST_F(MovingPlugins, bringsAPluginBackAndRemovesTheCopyOnTheDrive) {
  makeExternalised();
  const Lines bundle = scene::tree(copy);
  const InstalledPlugin before = plugin();
  Watched watched;
  const auto reports = PluginMover::restoreToSystem(watched.platform(), {before}, log());
  EXPECT_EQ(reports, (std::vector<MoveReport>{
                         {.plugin = before, .outcome = MoveReport::Outcome::restored, .message = "ok"}}));
  EXPECT_EQ(log_, Lines{"restore A.vst3 from " + copy});
  EXPECT_EQ(watched.operations,
            (Lines{"start " + gantrix + " rm -f " + place,
                   "start /usr/bin/ditto --rsrc " + copy + " " + place, "flush " + place, "remove " + copy}));
  EXPECT_EQ(scene::tree(place), bundle);
  EXPECT_FALSE(scene::exists(copy));
}

TEST_F(MovingPlugins, restoresNeitherANativePluginNorABrokenLink) {
  makeNative();
  scene::link(vst3 + "/B.vst3", "/Volumes/None/B.vst3");
  const Lines before = everything();
  EXPECT_EQ(told(PluginMover::restoreToSystem(hostPlatform(), scanned(), log())),
            "skipped: not externalised\nskipped: not externalised");
  EXPECT_EQ(log_, Lines{});
  EXPECT_EQ(everything(), before);
}

/// Everywhere but where quarn itself puts a plug-in of this name.
TEST_F(MovingPlugins, leavesWhatAPersonLinkedByHimselfWhereItIs) {
  for (const std::string& target :
       {std::string("/Users/me/A.vst3"), std::string("/Volumes/X9/A.vst3"), onDrive + "/VST3/B.vst3",
        onDrive + "/AU/A.vst3", std::string("/Users/me/ExternalQuarn/Plugins/VST3/A.vst3")}) {
    fs::remove_all(place);
    makeExternalised(target);
    const Lines bundle = scene::tree(target);
    EXPECT_EQ(restore(), "restored: ok");
    EXPECT_EQ(scene::tree(target), bundle) << target;
    EXPECT_EQ(scene::tree(place), bundle);
    fs::remove_all(place);
    scene::link(place, target);
    EXPECT_EQ(remove(true), "removed: ok");
    EXPECT_EQ(scene::tree(target), bundle) << target;
    EXPECT_FALSE(scene::exists(place));
  }
}

TEST_F(MovingPlugins, leavesACopyThatAnotherLinkLeadsTo) {
  makeExternalised();
  scene::link(components + "/Other.vst3", copy);
  const Lines bundle = scene::tree(copy);
  EXPECT_EQ(restore(), "restored: ok");
  EXPECT_EQ(scene::tree(copy), bundle);
  fs::remove_all(place);
  scene::link(place, copy);
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(MovingPlugins, leavesACopyThatIsReachedThroughASecondLink) {
  makeExternalised("/Volumes/X9/Elsewhere/VST3/A.vst3");
  scene::makeFolder("/Volumes/X9/ExternalQuarn");
  scene::link(onDrive, "/Volumes/X9/Elsewhere");
  fs::remove(place);
  scene::link(place, copy);
  EXPECT_EQ(restore(), "restored: ok");
  EXPECT_TRUE(scene::exists("/Volumes/X9/Elsewhere/VST3/A.vst3/Contents/Info.plist"));
  fs::remove_all(place);
  scene::link(place, copy);
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_TRUE(scene::exists("/Volumes/X9/Elsewhere/VST3/A.vst3/Contents/Info.plist"));
}

TEST_F(MovingPlugins, leavesACopyIfItCannotBeToldWhetherAnotherLinkLeadsThere) {
  makeExternalised();
  fs::remove_all(components);
  scene::write(components, "no folder");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_TRUE(scene::exists(copy));
}

/// The disk, but one item can't be looked at.
class Unlookable : public FileSystemDecorator {
 public:
  explicit Unlookable(std::string item) : FileSystemDecorator(hostPlatform().files), item_(std::move(item)) {}
  Result<FileAttributes> attributes(const Path& item) const override {
    if (item.text() == item_) return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "?");
    return FileSystemDecorator::attributes(item);
  }

 private:
  const std::string item_;
};

TEST_F(MovingPlugins, leavesACopyIfAnItemThatMayBeALinkThereCannotBeLookedAt) {
  const std::string other = components + "/Other.component";
  for (const bool isRestored : {true, false}) {
    fs::remove_all(place);
    makeExternalised();
    fs::remove_all(other);
    scene::link(other, copy);
    const InstalledPlugin before = plugin();
    Unlookable files(other);
    Platform platform = replacing({.files = &files});
    EXPECT_EQ(isRestored ? restore(before, platform) : remove(true, before, platform),
              isRestored ? "restored: ok" : "removed: ok");
    EXPECT_TRUE(scene::exists(other + "/Contents/Info.plist"));
  }
}

TEST_F(MovingPlugins, leavesItsOwnCopyIfALinkElsewhereIsOnTheWayThere) {
  makeExternalised();
  scene::link("/Users/me/shortcut", onDrive + "/VST3");
  const Lines bundle = scene::tree(copy);
  for (const bool isRestored : {true, false}) {
    fs::remove_all(place);
    scene::link(place, "/Users/me/shortcut/A.vst3");
    EXPECT_EQ(isRestored ? restore() : remove(true), isRestored ? "restored: ok" : "removed: ok");
    EXPECT_EQ(scene::tree(copy), bundle);
  }
}

TEST_F(MovingPlugins, isBackEvenIfTheCopyOnTheDriveCannotBeRemoved) {
  makeExternalised();
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("remove ")) return PlatformError("test", 1, "It broke.");
    return {};
  });
  EXPECT_EQ(restore(plugin(), gated.platform()), "restored: ok");
  EXPECT_EQ(scene::tree(place), scene::tree(copy));
}

TEST_F(MovingPlugins, copiesBackWithTheRightsOfTheUserAlone) {
  makeExternalised();
  ASSERT_EQ(::chmod(vst3.c_str(), 0555), 0);
  const Lines before = everything();
  EXPECT_EQ(child::failuresWithoutRights([this] {
              EXPECT_EQ(restore(),
                        "failed: You may not change “" + vst3 + "”, where “A.vst3” would be copied to.");
            }),
            "");
  EXPECT_EQ(everything(), before);
}

// Removing.

TEST_F(MovingPlugins, removesANativePlugin) {
  makeNative();
  const InstalledPlugin before = plugin();
  Watched watched;
  const auto reports = PluginMover::remove(watched.platform(), {before}, true, log());
  EXPECT_EQ(reports, (std::vector<MoveReport>{
                         {.plugin = before, .outcome = MoveReport::Outcome::removed, .message = "ok"}}));
  EXPECT_EQ(log_, Lines{"remove A.vst3"});
  EXPECT_EQ(watched.operations, Lines{"start " + gantrix + " rm -rf " + place});
  EXPECT_FALSE(scene::exists(place));
}

TEST_F(MovingPlugins, removesALinkAndLeavesTheCopyOnTheDrive) {
  makeExternalised();
  const Lines bundle = scene::tree(copy);
  EXPECT_EQ(remove(false), "removed: ok");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(MovingPlugins, removesTheCopyOnTheDriveWhereThatIsAskedFor) {
  makeExternalised();
  installed::makeBundle(onDrive + "/VST3/B.vst3");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_FALSE(scene::exists(copy));
  EXPECT_TRUE(scene::exists(onDrive + "/VST3/B.vst3/Contents"));
}

TEST_F(MovingPlugins, canOnlyRemoveABrokenLink) {
  scene::link(place, "/Volumes/None/A.vst3");
  EXPECT_EQ(plugin().sizeBytes, 0);
  EXPECT_EQ(move(), "skipped: not native");
  EXPECT_EQ(restore(), "skipped: not externalised");
  EXPECT_EQ(remove(true), "removed: ok");
  EXPECT_FALSE(scene::exists(place));
  makeExternalised();
  InstalledPlugin late = plugin();
  late.status.kind = Kind::brokenSymlink;
  EXPECT_EQ(remove(true, late), "removed: ok");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_TRUE(scene::exists(copy)) << "it wasn't there when somebody chose to remove the link";
}

TEST(PluginMover, hasTheseOutcomes) {
  Lines texts;
  for (const auto outcome : allCases<MoveReport::Outcome>()) texts.emplace_back(rawValue(outcome));
  EXPECT_EQ(texts, (Lines{"moved", "restored", "removed", "skipped", "failed"}));
}

}  // namespace
}  // namespace quarn
