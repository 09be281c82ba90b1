#include <filesystem>
#include <fstream>
#include <sys/mount.h>
#include <sys/stat.h>

#include "QuarnCore/plugins/PluginGuard.h"
#include "QuarnCore/plugins/PluginSourceScanner.h"
#include "tests/plugins/Installing.h"
#include "tests/support/SpecialFiles.h"

/// What an installation must never do: remove the only copy of anything, or what nobody asked it to remove.

using namespace quarn::installing;

namespace quarn {
namespace {

namespace fs = std::filesystem;

std::string lies(const std::string& inner, const std::string& outer) {
  return "“" + inner + "” lies in “" + outer + "”.";
}

class PluginGuarding : public Installing {};

TEST_F(PluginGuarding, aPluginThatIsOnTheDriveAlreadyStays) {
  makeBundle(external, "the only one");
  expectRefused("The plug-in is on the drive already: " + external, bundleAt(external));
  scene::link("/Users/me/other way", plugins);
  expectRefused("The plug-in is on the drive already: " + external,
                bundleAt("/Users/me/other way/VST3/A.vst3"));
}

TEST_F(PluginGuarding, aLinkOfTheSystemToTheDriveIsNoOtherCopy) {
  makeBundle(external, "the only one");
  scene::link(systemLink, external);
  expectRefused("The plug-in is on the drive already: " + external, bundleAt(systemLink));
  scene::makeFolder("/Users/me/chain");
  scene::link("/Users/me/chain/A.vst3", systemLink);
  expectRefused("The plug-in is on the drive already: " + external, bundleAt("/Users/me/chain/A.vst3"));
}

TEST_F(PluginGuarding, twoMountsOfOneDriveAreOneDrive) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  makeBundle(external, "the only one");
  scene::makeFolder("/Volumes/Same");
  ASSERT_EQ(::mount("/Volumes/X9", "/Volumes/Same", nullptr, MS_BIND, nullptr), 0);
  const std::string again = "/Volumes/Same/ExternalQuarn/Plugins/VST3/A.vst3";
  expectRefused("The plug-in is on the drive already: " + external, bundleAt(again));
  ::umount2("/Volumes/Same", MNT_DETACH);
}

TEST_F(PluginGuarding, aPluginInsideItsOwnDestinationStays) {
  const std::string inner = external + "/Contents/Resources/A.vst3";
  makeBundle(inner);
  expectRefused(lies(inner, external), bundleAt(inner));
}

TEST_F(PluginGuarding, aDestinationInsideThePluginIsRefused) {
  const std::string around = "/Volumes/X9/ExternalQuarn.vst3";
  makeBundle(around);
  drive_ = Path(around);
  const std::string inside = around + "/ExternalQuarn/Plugins/VST3/ExternalQuarn.vst3";
  expectRefused(lies(inside, around), bundleAt(around));
}

TEST_F(PluginGuarding, aLinkThatLiesInTheDestinationIsNoSource) {
  makeBundle(external);
  scene::link(external + "/Contents/A.vst3", source);
  expectRefused(lies(external + "/Contents/A.vst3", external), bundleAt(external + "/Contents/A.vst3"));
  scene::link("/Users/me/way", external + "/Contents");
  expectRefused(lies("/Users/me/way/A.vst3", external), bundleAt("/Users/me/way/A.vst3"));
}

TEST_F(PluginGuarding, aFolderOfTheSystemThatLiesOnTheDriveIsRefused) {
  scene::makeFolder(plugins + "/VST3");
  scene::link(folder, plugins + "/VST3");
  expectRefused("“" + external + "” and “" + systemLink + "” are the same place.");
}

TEST_F(PluginGuarding, placesInsideOneAnotherAreRefused) {
  scene::makeFolder(external + "/Contents");
  scene::link(folder, external + "/Contents");
  expectRefused(lies(systemLink, external));
}

TEST_F(PluginGuarding, aPluginInsideABundleThatWouldGoIsRefused) {
  const std::string inner = systemLink + "/Contents/Resources/A.vst3";
  makeBundle(systemLink, "outer");
  makeBundle(inner, "inner");
  expectRefused(lies(inner, systemLink), bundleAt(inner));
}

TEST_F(PluginGuarding, aPluginAroundTheLinkIsRefused) {
  const std::string around = "/Library/Audio/Plug-Ins.vst3";
  fs::remove_all("/Library/Audio/Plug-Ins");
  scene::makeFolder(around + "/VST3");
  scene::link("/Library/Audio/Plug-Ins", "Plug-Ins.vst3");
  PluginBundle bundle = bundleAt(around);
  bundle.name = "A.vst3";
  expectRefused(lies(systemLink, around), bundle);
}

TEST_F(PluginGuarding, aFolderForPluginsThatLeadsOffTheDriveIsRefused) {
  scene::makeFolder("/Users/me/elsewhere");
  scene::link("/Volumes/X9/ExternalQuarn", "/Users/me/elsewhere");
  expectRefused("The folder for plug-ins isn’t on the drive: /Users/me/elsewhere/Plugins/VST3");
}

TEST_F(PluginGuarding, aPluginThatIsGoneBeforeItsTurnReplacesNothing) {
  makeBundle(external, "old");
  makeBundle(systemLink, "native");
  fs::remove_all(source);
  expectRefused("The plug-in is no longer there: " + source);
  scene::write(source, "a file by now");
  expectRefused("The plug-in is no longer there: " + source);
}

TEST_F(PluginGuarding, aDriveThatIsNotMountedIsRefused) {
  drive_ = Path("/Volumes/None");
  expectRefused("No drive is mounted there: /Volumes/None");
  scene::makeFolder("/Volumes/None");
  expectRefused("No drive is mounted there: /Volumes/None");
  scene::write("/Users/me/file", "");
  drive_ = Path("/Users/me/file");
  expectRefused("No drive is mounted there: /Users/me/file");
}

TEST_F(PluginGuarding, aFolderThatIsNoVolumeServesAsADrive) {
  scene::makeFolder("/Users/me/disk");
  drive_ = Path("/Users/me/disk");
  EXPECT_EQ(told(install()), "installed: ok");
  EXPECT_EQ(scene::target(systemLink), "/Users/me/disk/ExternalQuarn/Plugins/VST3/A.vst3");
}

TEST_F(PluginGuarding, aVolumeMountedInsideIsNeitherCopiedNorEmptied) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  makeBundle(external, "old");
  makeBundle(systemLink, "native");
  for (const std::string& item : {source, external, systemLink}) {
    const std::string inside = item + "/Contents/volume";
    scene::makeFolder(inside);
    ASSERT_EQ(::mount("tmpfs", inside.c_str(), "tmpfs", 0, ""), 0);
    scene::write(inside + "/file", "of another volume");
    expectRefused("A volume is mounted inside A.vst3: " + inside + ". Eject it first.");
    ::umount2(inside.c_str(), MNT_DETACH);
    fs::remove_all(inside);
  }
}

TEST_F(PluginGuarding, aVolumeMountedMeanwhileIsNotEmptied) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  makeBundle(systemLink, "native");
  const std::string inside = systemLink + "/Contents/volume";
  scene::makeFolder(inside);
  options_.adhocCodesign = true;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (!operation.starts_with("start /usr/bin/codesign")) return {};
    EXPECT_EQ(::mount("tmpfs", inside.c_str(), "tmpfs", 0, ""), 0);
    scene::write(inside + "/file", "of another volume");
    return {};
  });
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())),
            "failed: A volume is mounted inside A.vst3: " + inside + ". Eject it first.");
  EXPECT_EQ(scene::read(inside + "/file"), "of another volume");
  ::umount2(inside.c_str(), MNT_DETACH);
}

TEST_F(PluginGuarding, aPluginWithASocketOrAFifoReplacesNothing) {
  makeBundle(external, "old");
  makeBundle(systemLink, "native");
  scene::link("/Users/me/way/A.vst3", source);
  const auto expectEitherRefused = [&](const std::string& message) {
    expectRefused(message);
    expectRefused(message, bundleAt("/Users/me/way/A.vst3"));
  };
  ASSERT_TRUE(makeSocket(source + "/Contents/socket"));
  expectEitherRefused("“Contents/socket” is a socket or a device, which can't be copied. Remove it first.");
  fs::remove(source + "/Contents/socket");
  ASSERT_EQ(::mkfifo((source + "/Contents/.pipe").c_str(), 0600), 0);
  expectEitherRefused(
      "“Contents/.pipe” is no file, folder or symbolic link, and can’t be copied. Remove it first.");
}

// Bringing plug-ins out of the system.

TEST_F(PluginGuarding, aBundleOfTheSystemIsItsOwnSource) {
  makeBundle(systemLink, "native");
  const auto whole = scene::tree(systemLink);
  EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok");
  EXPECT_EQ(scene::tree(external), whole);
  EXPECT_EQ(scene::target(systemLink), external);
}

TEST_F(PluginGuarding, aBundleOfTheSystemIsFoundByAnySpelling) {
  makeBundle(systemLink, "native");
  scene::link("/Users/me/system", "/Library/Audio/Plug-Ins");
  const auto whole = scene::tree(systemLink);
  EXPECT_EQ(told(install(bundleAt("/Users/me/system/VST3/A.vst3"))), "installed: ok");
  EXPECT_EQ(scene::tree(external), whole);
}

TEST_F(PluginGuarding, aBundleOfTheSystemStaysWithoutAWholeCopy) {
  makeBundle(systemLink, "native");
  const auto whole = scene::tree(systemLink);
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\n/usr/libexec/quarn-room/ditto \"$@\"\nrm \"$3/Contents/Resources/sound\"\n");
  const std::string message = told(install(bundleAt(systemLink)));
  EXPECT_TRUE(message.starts_with("failed: Verification failed: ")) << message;
  EXPECT_EQ(scene::tree(systemLink), whole);
}

TEST_F(PluginGuarding, aBundleOfTheSystemStaysWhereSigningSpoiltTheCopy) {
  makeBundle(systemLink, "native");
  const auto whole = scene::tree(systemLink);
  options_.adhocCodesign = true;
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\nrm \"$5/Contents/Resources/sound\"\nexit 1\n");
  EXPECT_EQ(told(install(bundleAt(systemLink))),
            "failed: “" + external + "” lacks what “" + systemLink + "” has: Contents/Resources/sound");
  EXPECT_EQ(scene::tree(systemLink), whole);
}

TEST_F(PluginGuarding, aBundleOfTheSystemStaysWhereSigningSpoiltAFile) {
  options_.adhocCodesign = true;
  const std::string code = "\"$5/Contents/MacOS/code\"";
  const Lines spoiling = {": > " + code,
                          ": > " + code + "; exit 1",
                          "printf nat > " + code + "; exit 1",
                          "printf more >> " + code + "; exit 1",
                          "rm " + code + "; mkdir " + code,
                          "rm " + code + "; ln -s /nowhere " + code};
  for (const std::string& act : spoiling) {
    fs::remove_all(external);
    makeBundle(systemLink, "native");
    const auto whole = scene::tree(systemLink);
    scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\n" + act + "\n");
    EXPECT_EQ(told(install(bundleAt(systemLink))),
              "failed: “" + external + "” no longer holds what “" + systemLink + "” has: Contents/MacOS/code")
        << act;
    EXPECT_EQ(scene::tree(systemLink), whole) << act;
  }
}

TEST_F(PluginGuarding, whatSigningChangesIsNoLoss) {
  options_.adhocCodesign = true;
  for (const std::string& act :
       Lines{"printf more >> \"$5/Contents/MacOS/code\"", "mkdir \"$5/Contents/_CodeSignature\"; exit 1"}) {
    fs::remove_all(external);
    fs::remove_all(systemLink);
    makeBundle(systemLink, "native");
    scene::write(systemLink + "/Contents/empty", "");
    scene::write(systemLink + "/Contents/_CodeSignature/CodeResources", "seal");
    scene::replaceTool("/usr/bin/codesign",
                       "#!/bin/sh\n: > \"$5/Contents/_CodeSignature/CodeResources\"\n" + act + "\n");
    EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok") << act;
  }
}

TEST_F(PluginGuarding, whatIsLeftOfABundleOfTheSystemDoesNotReplaceItsCopy) {
  makeBundle(systemLink, "native");
  EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok");
  // As a run leaves it that was killed while the bundle was being removed.
  fs::remove(systemLink);
  scene::write(systemLink + "/Contents/MacOS/code", "native");
  expectRefused("“" + systemLink + "” lacks what “" + external + "” has: Contents/Resources",
                bundleAt(systemLink));
  // What signing adds to a copy isn't missed.
  makeBundle(systemLink, "native");
  scene::write(external + "/Contents/_CodeSignature/CodeResources", "seal");
  scene::write(external + "/Contents/._MacOS", "");
  // Nor what a window or a signing that was killed left there.
  scene::write(external + "/.DS_Store", "window");
  scene::write(external + "/Contents/MacOS/code.cstemp", "half");
  EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok");
}

TEST_F(PluginGuarding, aBundleOfTheSystemThatWasCutShortDoesNotReplaceItsCopy) {
  makeBundle(external, "whole");
  for (const std::string& start : Lines{"", "who"}) {
    makeBundle(systemLink, "whole");
    scene::write(systemLink + "/Contents/MacOS/code", start);
    expectRefused("“" + systemLink + "” is an unfinished copy of “" + external + "”.", bundleAt(systemLink));
  }
  scene::write(systemLink + "/Contents/MacOS/code", "new");
  EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok") << "a shorter one is another version";
}

// Another version that lies beside.

std::string onlyCopy(const std::string& kept, const std::string& other) {
  return "failed: “" + kept + "” may be the only copy of what it holds, and isn’t replaced by “" + other +
         "”.";
}

TEST_F(PluginGuarding, anOlderVersionReplacesNoBundleOfTheSystemInTheSameRun) {
  for (const std::string& beside : Lines{folder + "/A old", folder + "/old versions", "/Users/me/old"}) {
    fs::remove_all(systemLink);
    fs::remove_all(external);
    makeBundle(systemLink, "current");
    const std::string older = beside + "/A.vst3";
    makeBundle(older, "older");
    for (const bool comesFirst : {false, true}) {
      std::vector<PluginBundle> bundles = {bundleAt(systemLink), bundleAt(older)};
      if (comesFirst) std::swap(bundles[0], bundles[1]);
      const auto batch = installAll(bundles);
      EXPECT_EQ(told(batch.reports[comesFirst ? 1 : 0]), "installed: ok");
      EXPECT_EQ(told(batch.reports[comesFirst ? 0 : 1]), onlyCopy(systemLink, older));
      EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "current");
      EXPECT_EQ(scene::target(systemLink), external);
      fs::remove_all(systemLink);
      makeBundle(systemLink, "current");
    }
    fs::remove_all(older);
  }
}

TEST_F(PluginGuarding, anOlderVersionReplacesNoBundleOfTheSystemThatFailed) {
  makeBundle(systemLink, "current");
  const std::string older = folder + "/old versions/A.vst3";
  makeBundle(older, "older");
  order("ditto", "on " + systemLink + " fail 1 no");
  const auto batch = installAll({bundleAt(systemLink), bundleAt(older)});
  EXPECT_EQ(batch.failed(), 2u);
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "current");
}

TEST_F(PluginGuarding, anOlderVersionInTheSystemReplacesNoCopyOfALaterRun) {
  makeBundle(systemLink, "current");
  EXPECT_EQ(told(install(bundleAt(systemLink))), "installed: ok");
  const std::string older = folder + "/old versions/A.vst3";
  makeBundle(older, "older");
  scene::link("/Users/me/way/A.vst3", older);
  for (const std::string& from : Lines{older, "/Users/me/way/A.vst3"}) {
    expectRefused(onlyCopy(external, from).substr(8), bundleAt(from));
  }
  // As a run leaves it that was killed before it made the link.
  fs::remove(systemLink);
  expectRefused(onlyCopy(external, older).substr(8), bundleAt(older));
  // Hosts have another copy then.
  scene::link(systemLink, source);
  EXPECT_EQ(told(install(bundleAt(older))), "installed: ok");
}

TEST_F(PluginGuarding, aPluginInAFolderBelowTheSystemsIsInstalled) {
  const std::string maker = folder + "/Maker/A.vst3";
  makeBundle(maker);
  EXPECT_EQ(told(install(bundleAt(maker))), "installed: ok");
  EXPECT_EQ(scene::target(systemLink), external);
}

// Before a copy goes.

TEST_F(PluginGuarding, aCopyStaysWhereThereIsNoRoomForANewOne) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  drive_ = Path("/Volumes/Tiny");
  makeBundle("/Volumes/Tiny/ExternalQuarn/Plugins/VST3/A.vst3", "old");
  scene::writeBytes(source + "/Contents/.large", 3'000'000);
  const Lines before = everything();
  const std::string message = told(install());
  EXPECT_TRUE(message.starts_with("failed: Not enough space. Need 3 MB, have 1")) << message;
  EXPECT_EQ(everything(), before);
}

TEST_F(PluginGuarding, aCopyStaysOnADriveWithoutAnyFreeByte) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  drive_ = Path("/Volumes/Tiny");
  makeBundle("/Volumes/Tiny/ExternalQuarn/Plugins/VST3/A.vst3", "old");
  std::ofstream full("/Volumes/Tiny/full");
  while (full.put('x')) continue;
  full.close();
  ASSERT_EQ(fs::space("/Volumes/Tiny").available, 0u);
  scene::writeBytes(source + "/Contents/large", 800'000);
  const Lines before = everything();
  const std::string message = told(install());
  EXPECT_TRUE(message.starts_with("failed: Not enough space. Need 8")) << message;
  EXPECT_EQ(everything(), before);
}

/// Reports other figures than the volumes do.
class Reporting : public Volumes {
 public:
  using Figure = std::optional<std::int64_t>;
  Reporting(Figure plain, Figure important) : plain_(plain), important_(important) {}

  Result<std::vector<Path>> mounted() const override { return hostPlatform().volumes.mounted(); }
  Result<std::vector<Path>> mountPoints() const override { return hostPlatform().volumes.mountPoints(); }
  Result<VolumeProperties> properties(const Path& item) const override {
    VolumeProperties found = hostPlatform().volumes.properties(item).orThrow();
    found.availableCapacity = plain_;
    found.availableCapacityForImportantUsage = important_;
    return found;
  }

 private:
  const Figure plain_, important_;
};

TEST_F(PluginGuarding, roomIsUnknownOnlyIfNoFigureTellsIt) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::writeBytes(source + "/Contents/large", 800'000);
  constexpr std::nullopt_t none = std::nullopt;
  const auto toldWith = [&](Reporting::Figure plain, Reporting::Figure important) {
    fs::remove_all(external);
    makeBundle(external, "old");
    Reporting volumes(plain, important);
    Platform platform = replacing({.volumes = &volumes});
    return told(install(bundleAt(source), platform)).substr(0, 24);
  };
  const std::string installed = "installed: ok", refused = "failed: Not enough space";
  EXPECT_EQ(toldWith(none, none), installed);
  EXPECT_EQ(toldWith(none, 0), installed);
  EXPECT_EQ(toldWith(0, 5'000'000), installed) << "the system would make room";
  EXPECT_EQ(toldWith(5'000'000, 0), installed);
  EXPECT_EQ(toldWith(5'000'000, 1'000), installed);
  EXPECT_EQ(toldWith(0, 0), refused);
  EXPECT_EQ(toldWith(0, none), refused);
  EXPECT_EQ(toldWith(1'000, 0), refused);
  EXPECT_EQ(toldWith(none, 1'000), refused);
}

TEST_F(PluginGuarding, whatTheOldCopyTakesIsRoomForTheNewOne) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  drive_ = Path("/Volumes/Tiny");
  scene::writeBytes("/Volumes/Tiny/ExternalQuarn/Plugins/VST3/A.vst3/large", 800'000);
  scene::writeBytes(source + "/Contents/large", 800'000);
  EXPECT_EQ(told(install()), "installed: ok");
}

TEST_F(PluginGuarding, aFileWithHolesNeedsNoRoomForThem) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  drive_ = Path("/Volumes/Tiny");
  makeBundle("/Volumes/Tiny/ExternalQuarn/Plugins/VST3/A.vst3", "old");
  scene::write(source + "/Contents/holes", "");
  fs::resize_file(source + "/Contents/holes", 50'000'000);
  EXPECT_EQ(told(install()), "installed: ok");
}

/// What only a person with fewer rights than the test's meets.
class Unreadable : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<std::string> readStart(const Path& file, std::size_t count) const override {
    if (file.lastComponent() == "sound") return PlatformError("test", 1, "You may not read it.");
    return FileSystemDecorator::readStart(file, count);
  }
};

TEST_F(PluginGuarding, aCopyStaysWhereTheSourceCannotBeRead) {
  makeBundle(external, "old");
  Unreadable files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  const Lines before = everything();
  EXPECT_EQ(told(install(bundleAt(source), platform)), "failed: You may not read it.");
  EXPECT_EQ(everything(), before);
}

// What can't be looked at just now.

/// No link can be resolved, as on a disk that fails for a moment.
class Unresolving : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<Path> realPath(const Path& path) const override { return path; }
};

TEST_F(PluginGuarding, aLinkThatCannotBeResolvedIsNoOtherCopy) {
  makeBundle(external, "the only one");
  const std::string inner = external + "/Contents/Resources/A.vst3";
  makeBundle(inner, "inner");
  scene::makeFolder("/Users/me/chain");
  Unresolving files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  for (const std::string& target : {external, inner}) {
    fs::remove("/Users/me/chain/A.vst3");
    scene::link("/Users/me/chain/A.vst3", target);
    const Lines before = everything();
    EXPECT_EQ(told(install(bundleAt("/Users/me/chain/A.vst3"), platform)),
              "failed: " + lies("/Users/me/chain/A.vst3", external));
    EXPECT_EQ(everything(), before);
  }
}

TEST_F(PluginGuarding, aDriveWhoseLinkCannotBeResolvedGoesWithNoBundle) {
  makeBundle(systemLink, "native");
  scene::makeFolder(systemLink + "/disk");
  scene::link("/Users/me/disk", systemLink + "/disk");
  drive_ = Path("/Users/me/disk");
  Unresolving files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  EXPECT_EQ(told(install(bundleAt(source), platform)),
            "failed: " + lies("/Users/me/disk/ExternalQuarn/Plugins/VST3/A.vst3", systemLink));
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "native");
}

/// One item can't be looked at.
class Blind : public FileSystemDecorator {
 public:
  Blind(FileSystem& inner, std::string item) : FileSystemDecorator(inner), item_(std::move(item)) {}
  bool exists(const Path& path) const override {
    return path.text() != item_ && FileSystemDecorator::exists(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (path.text() == item_)
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "It can’t be looked at.");
    return FileSystemDecorator::attributes(path);
  }

 private:
  const std::string item_;
};

TEST_F(PluginGuarding, whatCannotBeLookedAtIsNotTakenForMissing) {
  makeBundle(external, "old");
  makeBundle(systemLink, "native");
  for (const bool overwrites : {false, true}) {
    options_.overwrite = overwrites;
    Lines items = {external};
    if (overwrites) items.insert(items.end(), {systemLink, source + "/."});
    for (const std::string& item : items) {
      Blind files(hostPlatform().files, item);
      Platform platform = replacing({.files = &files});
      const Lines before = everything();
      EXPECT_EQ(told(install(bundleAt(source), platform)), "failed: It can’t be looked at.") << item;
      EXPECT_EQ(everything(), before) << item;
    }
  }
}

TEST_F(PluginGuarding, anOlderVersionReplacesNoCopyIfALookFails) {
  const std::string older = "/Library/Audio/Plug-Ins/VST3/old/A.vst3";
  makeBundle(external, "the only copy");
  scene::link(systemLink, external);
  makeBundle(older, "older");
  options_.overwrite = true;
  for (const std::string& item : {external, systemLink, systemLink + "/."}) {
    Blind files(hostPlatform().files, item);
    Platform platform = replacing({.files = &files});
    const Lines before = everything();
    EXPECT_TRUE(told(install(bundleAt(older), platform)).starts_with("failed: ")) << item;
    EXPECT_EQ(everything(), before) << item;
  }
}

TEST_F(PluginGuarding, onlyWhatLiesElsewhereOutlivesARemoval) {
  const auto outlives = [](const std::string& kept, const std::string& gone) {
    return thrown([&] { PluginGuard::requireOutlives(hostPlatform(), Path(kept), Path(gone)); });
  };
  const std::string contents = source + "/Contents";
  scene::link("/Users/me/link", contents);
  EXPECT_EQ(outlives(source, source), lies(source, source));
  EXPECT_EQ(outlives(contents, source), lies(contents, source));
  EXPECT_EQ(outlives("/Users/me/link/MacOS", source), lies("/Users/me/link/MacOS", source));
  EXPECT_EQ(outlives(source, "/"), lies(source, "/"));
  EXPECT_EQ(outlives(source, contents), "nothing");
  EXPECT_EQ(outlives(source, "/Users/me/link"), "nothing") << "of a link only the link goes";
  EXPECT_EQ(outlives(source, "/nowhere"), "nothing");
  EXPECT_NE(outlives("/nowhere", source), "nothing") << "what isn't there doesn't outlive anything";
}

// A drive that goes.

class PulledPlugins : public Installing {
 protected:
  void SetUp() override {
    Installing::SetUp();
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  }
  /// Pulls the drive right before an operation, and leaves a folder of its name with what it held.
  std::string toldPulledBefore(const std::string& start) {
    bool isPulled = false;
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (!isPulled && operation.starts_with(start)) {
        isPulled = true;
        scene::unplug("X9");
        makeBundle(external, "code");
      }
      return {};
    });
    return told(install(bundleAt(systemLink), gated.platform()));
  }
};

TEST_F(PulledPlugins, nothingIsRemovedForACopyThatIsOnNoDrive) {
  makeBundle(systemLink, "code");
  options_.adhocCodesign = true;
  EXPECT_EQ(toldPulledBefore("start /usr/bin/codesign"),
            "failed: The drive is no longer mounted: /Volumes/X9");
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "code");
}

TEST_F(PulledPlugins, nothingIsSaidToBeCopiedThatIsOnNoDrive) {
  makeBundle(systemLink, "code");
  EXPECT_EQ(toldPulledBefore("start /usr/bin/ditto"), "failed: The drive is no longer mounted: /Volumes/X9");
  EXPECT_EQ(log_.size(), 1u);
}

TEST_F(PulledPlugins, theWrapperRemovesNothingInTheFolderThatADriveLeaves) {
  makeBundle(external, "old");
  makeBundle(systemLink, "code");
  EXPECT_EQ(toldPulledBefore("remove "), "failed: The drive is no longer mounted: /Volumes/X9");
}

}  // namespace
}  // namespace quarn
