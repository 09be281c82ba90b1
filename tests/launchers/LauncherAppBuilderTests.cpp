#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Platform/PropertyList.h"
#include "tests/launchers/Building.h"
#include "tests/support/Child.h"
#include "tests/support/GatedPlatform.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;
using Texts = std::map<std::string, std::string>;

class LauncherBuilder : public testing::Test, protected building::Scene {
 protected:
  Lines install(const std::string& at = launcher, const std::string& target = app,
                const std::string& source = {}) {
    return building::install(platform(), at, target, source);
  }
};

Lines builtLines(const std::string& at = launcher, const std::string& target = app) {
  return {"launcher-app\t" + at + "\t" + target, "signed-launcher\t" + at, "registered-launcher\t" + at};
}

Lines replacedLines() {
  Lines lines = builtLines();
  lines.insert(lines.begin(), "stash-existing-launcher\t" + launcher);
  return lines;
}

const Lines reusedLines = {"reuse-launcher\t" + launcher, "registered-launcher\t" + launcher};

Texts info(const std::string& at = launcher) {
  return PropertyList::texts(scene::read(at + "/Contents/Info.plist")).value_or(Texts{{"no", "list"}});
}

void writeInfo(const Texts& texts) {
  scene::write(app + "/Contents/Info.plist", PropertyList::xml(texts));
}

std::string kept(const std::string& tool) {
  return scene::exists("/tmp/" + tool) ? scene::read("/tmp/" + tool) : "";
}

TEST_F(LauncherBuilder, aLauncherIsExactlyWhatItsFormatSays) {
  scene::write(app + "/Contents/Resources/Foo.icns", "an icon");
  writeInfo({{"CFBundleIdentifier", "com.example.foo"},
             {"CFBundleDisplayName", "Foo & Co"},
             {"CFBundleName", "FooName"},
             {"CFBundleShortVersionString", "2.5"},
             {"CFBundleVersion", "250"},
             {"CFBundleIconFile", "Foo"}});
  EXPECT_EQ(install(), builtLines());
  Lines items = scene::tree(launcher);
  EXPECT_EQ(items.size(), 9u) << "four folders and five files";
  EXPECT_EQ(scene::read(launcher + "/Contents/PkgInfo"), "APPL????");
  EXPECT_EQ(scene::read(launcher + targetFile), app);
  EXPECT_EQ(scene::read(launcher + executable), "#!/bin/sh\necho opened\n");
  EXPECT_EQ(scene::read(launcher + "/Contents/Resources/Foo.icns"), "an icon");
  EXPECT_EQ(scene::read(launcher + "/Contents/Info.plist"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">\n<dict>\n"
            "\t<key>CFBundleDisplayName</key>\n\t<string>Foo &amp; Co</string>\n"
            "\t<key>CFBundleExecutable</key>\n\t<string>ExternalAppLauncher</string>\n"
            "\t<key>CFBundleIconFile</key>\n\t<string>Foo.icns</string>\n"
            "\t<key>CFBundleIdentifier</key>\n\t<string>com.example.foo.externallauncher</string>\n"
            "\t<key>CFBundleInfoDictionaryVersion</key>\n\t<string>6.0</string>\n"
            "\t<key>CFBundleName</key>\n\t<string>Foo &amp; Co</string>\n"
            "\t<key>CFBundlePackageType</key>\n\t<string>APPL</string>\n"
            "\t<key>CFBundleShortVersionString</key>\n\t<string>2.5</string>\n"
            "\t<key>CFBundleVersion</key>\n\t<string>250</string>\n"
            "\t<key>LSMinimumSystemVersion</key>\n\t<string>10.13</string>\n"
            "</dict>\n</plist>\n");
}

TEST_F(LauncherBuilder, theProgramAndTheFoldersMayBeUsedByEverybody) {
  fs::permissions(program, fs::perms::owner_all);
  install();
  EXPECT_EQ(fs::status(launcher + executable).permissions(), fs::perms(0755));
  EXPECT_EQ(fs::status(launcher).permissions(), fs::perms(0755));
}

TEST_F(LauncherBuilder, aSourceWithoutAPropertyListGivesTheFixedValues) {
  for (const bool isFolder : {true, false}) {
    fs::remove_all(app);
    if (isFolder) scene::makeFolder(app);
    fs::remove_all(launcher);
    EXPECT_EQ(install(), builtLines());
    EXPECT_EQ(info(), (Texts{{"CFBundleExecutable", "ExternalAppLauncher"},
                             {"CFBundleIdentifier", "app.external.launcher.externallauncher"},
                             {"CFBundleInfoDictionaryVersion", "6.0"},
                             {"CFBundleName", "Foo"},
                             {"CFBundleDisplayName", "Foo"},
                             {"CFBundlePackageType", "APPL"},
                             {"CFBundleShortVersionString", "1.0"},
                             {"CFBundleVersion", "1"},
                             {"LSMinimumSystemVersion", "10.13"}}));
  }
}

TEST_F(LauncherBuilder, valuesThatAreNoTextsCountAsMissing) {
  scene::write(app + "/Contents/Info.plist",
               "<plist><dict><key>CFBundleVersion</key><integer>7</integer>"
               "<key>CFBundleDisplayName</key><true/><key>CFBundleName</key><string>Named</string>"
               "<key>CFBundleIdentifier</key><array/><key>CFBundleIconFile</key><dict/></dict></plist>");
  install();
  EXPECT_EQ(info()["CFBundleVersion"], "1");
  EXPECT_EQ(info()["CFBundleDisplayName"], "Named");
  EXPECT_EQ(info()["CFBundleName"], "Named");
  EXPECT_EQ(info()["CFBundleIdentifier"], "app.external.launcher.externallauncher");
  EXPECT_FALSE(info().contains("CFBundleIconFile"));
}

TEST_F(LauncherBuilder, aTextThatAListCantHoldCountsAsMissing) {
  // A binary list: {CFBundleName: "a\0b"}.
  std::string list = "bplist00";
  list += std::string("\xD1\x01\x02\x5C", 4) + "CFBundleName" + std::string("\x53\x61\x00\x62", 4);
  const std::string table("\x08\x0B\x18", 3);
  list += table + std::string("\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\3\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x1C", 32);
  scene::write(app + "/Contents/Info.plist", list);
  ASSERT_EQ(PropertyList::texts(list), (Texts{{"CFBundleName", std::string("a\0b", 3)}}));
  install();
  EXPECT_EQ(info()["CFBundleName"], "Foo");
}

TEST_F(LauncherBuilder, anEmptyDisplayNameIsAText) {
  writeInfo({{"CFBundleDisplayName", ""}, {"CFBundleName", "Foo"}});
  install();
  EXPECT_EQ(info()["CFBundleName"], "");
}

// The icon.

struct IconCase {
  std::string recorded;
  std::string expected;  ///< empty: there is no icon
};

TEST_F(LauncherBuilder, anIconIsLookedForAndRecordedWithItsSuffix) {
  scene::write(app + "/Contents/Resources/Foo.icns", "a");
  scene::write(app + "/Contents/Resources/Foo.png.icns", "b");
  scene::write(app + "/Contents/Resources/Foo", "no icon");
  scene::write(app + "/Contents/outside.icns", "outside");
  scene::makeFolder(app + "/Contents/Resources/Folder.icns");
  scene::write(app + "/Contents/Resources/.icns", "c");
  const std::vector<IconCase> cases = {{"Foo", "Foo.icns"},
                                       {"Foo.icns", "Foo.icns"},
                                       {"Foo.png", "Foo.png.icns"},
                                       {"", ".icns"},
                                       {"Missing", ""},
                                       {"Foo.ICNS", ""},
                                       {"Folder", ""},
                                       {"../outside", ""},
                                       {"/etc/passwd", ""},
                                       {"../Resources/Foo", ""},
                                       {"..", ""},
                                       {".", ""}};
  for (const IconCase& each : cases) {
    SCOPED_TRACE(each.recorded);
    fs::remove_all(launcher);
    writeInfo({{"CFBundleIconFile", each.recorded}});
    EXPECT_EQ(install(), builtLines());
    EXPECT_EQ(info()["CFBundleIconFile"], each.expected);
    Lines expected = {"ExternalAppTarget.txt"};
    if (!each.expected.empty()) expected.push_back(each.expected);
    Lines found = namesIn(launcher + "/Contents/Resources");
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected);
    EXPECT_FALSE(scene::exists(launcher + "/Contents/outside.icns"));
  }
}

TEST_F(LauncherBuilder, anIconBehindALinkIsCopiedAsAFile) {
  scene::write(app + "/Contents/Resources/Real.icns", "an icon");
  scene::link(app + "/Contents/Resources/Foo.icns", "Real.icns");
  writeInfo({{"CFBundleIconFile", "Foo"}});
  install();
  EXPECT_FALSE(scene::isLink(launcher + "/Contents/Resources/Foo.icns"));
  EXPECT_EQ(scene::read(launcher + "/Contents/Resources/Foo.icns"), "an icon");
}

TEST_F(LauncherBuilder, anIconThatCantBeCopiedIsNamedAllTheSame) {
  const std::string icon = app + "/Contents/Resources/Foo.icns";
  scene::write(icon, "an icon");
  writeInfo({{"CFBundleIconFile", "Foo"}});
  fs::permissions(icon, fs::perms::none);
  EXPECT_EQ(child::failuresWithoutRights([&] { EXPECT_EQ(install(), builtLines()); }), "");
  EXPECT_EQ(info()["CFBundleIconFile"], "Foo.icns");
  EXPECT_FALSE(scene::exists(launcher + "/Contents/Resources/Foo.icns"));
}

// What stands there already.

TEST_F(LauncherBuilder, aSecondTimeTheLauncherIsReusedUntouchedAndRegisteredAgain) {
  install();
  const Lines before = scene::tree(launcher);
  const auto time = fs::last_write_time(launcher + targetFile);
  fs::remove("/tmp/codesign");
  fs::remove("/tmp/lsregister");
  EXPECT_EQ(install(), reusedLines);
  EXPECT_EQ(scene::tree(launcher), before);
  EXPECT_EQ(fs::last_write_time(launcher + targetFile), time);
  EXPECT_EQ(kept("codesign"), "");
  EXPECT_EQ(kept("lsregister"), "-f\n" + launcher + "\n");
  EXPECT_FALSE(scene::exists("/Users/me/.Trash"));
}

TEST_F(LauncherBuilder, aLauncherThatIsNotTheSameIsMovedAsideAndReplaced) {
  const std::vector<std::string> contents = {
      app + "\n", " " + app, app + "/", "/elsewhere", "", "\xFF", std::string(1'000'000, 'x'), "/"};
  for (const std::string& content : contents) {
    SCOPED_TRACE(content.substr(0, 60));
    fs::remove_all(launcher);
    fs::remove_all("/Users/me/.Trash");
    scene::makeLauncher(launcher, app);
    scene::write(launcher + targetFile, content);
    const Lines old = scene::tree(launcher);
    EXPECT_EQ(install(), replacedLines());
    EXPECT_EQ(scene::read(launcher + targetFile), app);
    EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), old);
  }
}

TEST_F(LauncherBuilder, aLauncherWithoutItsProgramIsReplaced) {
  install();
  fs::remove(launcher + executable);
  EXPECT_EQ(install(), replacedLines());
  EXPECT_TRUE(scene::exists(launcher + executable));
}

TEST_F(LauncherBuilder, equalUnicodeFormsAreOneTarget) {
  const std::string composed = "/Volumes/X9/Caf\u00E9.app";
  scene::makeApp(composed);
  install(launcher, composed);
  EXPECT_EQ(install(launcher, "/Volumes/X9/Cafe\u0301.app"), reusedLines);
}

TEST_F(LauncherBuilder, aRealApplicationAtThePathIsMovedAsideWhole) {
  scene::makeApp(launcher);
  const Lines old = scene::tree(launcher);
  EXPECT_EQ(install(), replacedLines());
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), old);
  EXPECT_EQ(scene::read(launcher + targetFile), app);
}

TEST_F(LauncherBuilder, aLinkAtThePathIsMovedAsideAndNeverWrittenThrough) {
  for (const std::string target : {"/nowhere", app.c_str(), "/Users/me/Documents"}) {
    SCOPED_TRACE(target);
    fs::remove_all(launcher);
    fs::remove_all("/Users/me/.Trash");
    scene::link(launcher, target);
    const Lines behind = scene::exists(target) ? scene::tree(target) : Lines();
    EXPECT_EQ(install(), replacedLines());
    EXPECT_EQ(scene::target("/Users/me/.Trash/Foo.app"), target);
    EXPECT_FALSE(scene::isLink(launcher));
    EXPECT_EQ(scene::exists(target) ? scene::tree(target) : Lines(), behind);
  }
}

TEST_F(LauncherBuilder, anItemThatCantBeMovedAsideIsLeftAlone) {
  scene::makeApp(launcher);
  const Lines old = scene::tree(launcher);
  GatedPlatform gated(
      [](const std::string& operation) {
        const bool isOfTheOld =
            operation.starts_with("trash " + launcher) || operation.starts_with("rename " + launcher + " ");
        return isOfTheOld ? Result<void>(PlatformError("test", 1, "It broke.")) : Result<void>();
      },
      platform());
  EXPECT_EQ(building::install(gated.platform()),
            (Lines{"stash-existing-launcher\t" + launcher,
                   "error: The file “Foo.app” couldn’t be saved in the folder “Applications” because a file "
                   "with the same name already exists."}));
  EXPECT_EQ(scene::tree(launcher), old);
  for (const std::string& name : namesIn("/Applications")) EXPECT_FALSE(name.starts_with(".quarn-new"));
}

TEST_F(LauncherBuilder, aLauncherIntoWhichSomethingWasInstalledIsReplaced) {
  install();
  scene::write(launcher + "/Contents/MacOS/Foo", "a new version");
  const Lines mixed = scene::tree(launcher);
  EXPECT_EQ(install(), replacedLines());
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), mixed);
  EXPECT_FALSE(scene::exists(launcher + "/Contents/MacOS/Foo"));
}

/// Ends the run where the old item has been moved aside and the launcher is complete under its hidden name.
TEST_F(LauncherBuilder, aLauncherThatAKilledRunLeftIsUsed) {
  scene::makeApp(launcher);
  EXPECT_FALSE(LauncherAppBuilder::wasBrokenOff(platform(), Path(launcher), Path(app)));
  EXPECT_FALSE(child::succeeds([&] {
    GatedPlatform gated(
        [](const std::string& operation) {
          if (operation.starts_with("rename /Applications/.quarn-new-launcher-")) ::_exit(9);
          return Result<void>();
        },
        platform());
    building::install(gated.platform());
    return true;
  }));
  EXPECT_FALSE(scene::exists(launcher));
  EXPECT_TRUE(LauncherAppBuilder::wasBrokenOff(platform(), Path(launcher), Path(app)));
  EXPECT_FALSE(LauncherAppBuilder::wasBrokenOff(platform(), Path(launcher), Path("/Volumes/X9/Other.app")));
  install();
  EXPECT_EQ(scene::read(launcher + targetFile), app);
  EXPECT_FALSE(LauncherAppBuilder::wasBrokenOff(platform(), Path(launcher), Path(app)));
  for (const std::string& name : namesIn("/Applications")) EXPECT_FALSE(name.starts_with(".quarn-new"));
}

TEST_F(LauncherBuilder, aLauncherThatAKilledRunDidNotCompleteIsNotUsed) {
  const std::string unfinished = "/Applications/.quarn-new-launcher-00000000";
  scene::makeLauncher(unfinished, app);
  scene::write(unfinished + executable, "half");
  fs::permissions(unfinished, fs::perms(0700));
  EXPECT_FALSE(LauncherAppBuilder::wasBrokenOff(platform(), Path(launcher), Path(app)));
  install();
  EXPECT_NE(scene::read(launcher + executable), "half");
}

TEST_F(LauncherBuilder, aReadOnlyFolderIsAnErrorAndNothingChanges) {
  fs::permissions("/Applications", fs::perms(0555));
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const Lines lines = install();
              ASSERT_EQ(lines.size(), 1u);
              EXPECT_TRUE(lines[0].starts_with("error: You don’t have permission to save the file"))
                  << lines[0];
            }),
            "");
  EXPECT_EQ(namesIn("/Applications"), Lines{"Utilities"});
}

TEST_F(LauncherBuilder, theFolderOfTheLauncherIsMade) {
  const std::string at = "/Users/me/New/Folder/Foo.app";
  EXPECT_EQ(install(at), builtLines(at));
  EXPECT_EQ(scene::read(at + targetFile), app);
}

TEST_F(LauncherBuilder, hostileNamesAreWrittenAsTheyAre) {
  const std::string longest = std::string(scene::longestName() - 4, 'x') + ".app";
  for (const std::string& name : {std::string("A b\tc\n'\"$(x)`y`\\ &<>.app"), std::string("Caf\u00E9.app"),
                                  std::string("Cafe\u0301.app"), std::string("-rf.app"), longest}) {
    SCOPED_TRACE(name);
    fs::remove("/tmp/codesign");
    const std::string target = "/Volumes/X9/" + name, at = "/Applications/" + name;
    scene::makeApp(target);
    EXPECT_EQ(install(at, target), builtLines(at, target));
    EXPECT_EQ(scene::read(at + targetFile), target);
    EXPECT_EQ(info(at)["CFBundleName"], name.substr(0, name.size() - 4));
    EXPECT_EQ(kept("codesign"), "--force\n--sign\n-\n--timestamp=none\n" + at + "\n");
  }
}

// The program of the launcher.

TEST_F(LauncherBuilder, theProgramBesideThisOneIsTakenBeforeTheNamedOne) {
  scene::write("/tmp/named", "named");
  places.variables["QUARN_LAUNCHER_BINARY"] = "/tmp/named";
  install();
  EXPECT_EQ(scene::read(launcher + executable), "#!/bin/sh\necho opened\n");
}

TEST_F(LauncherBuilder, theNamedProgramIsTakenIfThereIsNoneBesideThisOne) {
  fs::remove(program);
  scene::write("/tmp/named", "named");
  scene::link("/tmp/link", "/tmp/named");
  for (const std::string named : {"/tmp/named", "/tmp/link", "tmp/named"}) {
    SCOPED_TRACE(named);
    fs::remove_all(launcher);
    places.variables["QUARN_LAUNCHER_BINARY"] = named;
    EXPECT_EQ(install(), builtLines());
    EXPECT_FALSE(scene::isLink(launcher + executable));
    EXPECT_EQ(scene::read(launcher + executable), "named");
    EXPECT_EQ(fs::status(launcher + executable).permissions(), fs::perms(0755));
  }
}

TEST_F(LauncherBuilder, withoutAProgramThereIsNoLauncher) {
  fs::remove(program);
  scene::makeFolder(program);
  const Lines error = {"error: Launcher binary is missing."};
  EXPECT_EQ(install(), error);
  for (const std::string named : {"", "/nowhere", "/tmp", "."}) {
    places.variables["QUARN_LAUNCHER_BINARY"] = named;
    EXPECT_EQ(install(), error) << named;
  }
  EXPECT_EQ(namesIn("/Applications"), Lines{"Utilities"});
}

TEST_F(LauncherBuilder, theErrorWithoutAProgramHasItsDomainAndCode) {
  fs::remove(program);
  Platform mine = platform();
  try {
    LauncherAppBuilder::install(mine, Path(app), Path(launcher), Path(app), InstallerRunReporter::silent());
    FAIL() << "threw nothing";
  } catch (const PlatformError& error) {
    EXPECT_EQ(error.domain, "launcher");
    EXPECT_EQ(error.code, 1);
  }
}

TEST_F(LauncherBuilder, aBareNameIsLookedForInTheCurrentFolder) {
  places.firstArgument = "quarn";
  places.current = Path(programs);
  EXPECT_EQ(install(), builtLines());
}

TEST_F(LauncherBuilder, withoutAFirstArgumentNoFolderIsSearched) {
  places.firstArgument = "";
  places.current = Path(programs + "/below");
  EXPECT_EQ(install(), Lines{"error: Launcher binary is missing."});
}

// The tools.

TEST_F(LauncherBuilder, aLauncherIsSignedAndThenRegistered) {
  install();
  EXPECT_EQ(kept("codesign"), "--force\n--sign\n-\n--timestamp=none\n" + launcher + "\n");
  EXPECT_EQ(kept("lsregister"), "-f\n" + launcher + "\n");
}

TEST_F(LauncherBuilder, aFailureToSignIsAWarning) {
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\necho out; printf 'no\\nidentity\\n' >&2; exit 1\n");
  EXPECT_EQ(install(), (Lines{builtLines()[0], "sign-launcher-warning\tno\nidentity\n", builtLines()[2]}));
  EXPECT_EQ(scene::read(launcher + targetFile), app);
}

TEST_F(LauncherBuilder, aMissingToolToSignIsAWarning) {
  scene::removeTool("/usr/bin/codesign");
  const Lines lines = install();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(lines[1].starts_with("sign-launcher-warning\tThe file “codesign”")) << lines[1];
}

TEST_F(LauncherBuilder, aToolThatFloodsItsOutputsIsReadToTheEnd) {
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\nyes | head -c 3000000; yes | head -c 3000000 >&2\n");
  EXPECT_EQ(install(), builtLines());
}

TEST_F(LauncherBuilder, aSlowToolIsWaitedFor) {
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\nsleep 1; touch /tmp/signed\n");
  scene::replaceTool(lsregister, "#!/bin/sh\n[ -e /tmp/signed ] && touch /tmp/registered\n");
  EXPECT_EQ(install(), builtLines());
  EXPECT_TRUE(scene::exists("/tmp/registered"));
}

TEST_F(LauncherBuilder, theResultOfTheRegistrationIsIgnored) {
  scene::replaceTool(lsregister, "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(install(), builtLines());
}

TEST_F(LauncherBuilder, withoutTheToolNothingIsRegisteredOrReported) {
  scene::removeTool(lsregister);
  EXPECT_EQ(install(), (Lines{builtLines()[0], builtLines()[1]}));
  EXPECT_EQ(install(), Lines{reusedLines[0]});
}

}  // namespace
}  // namespace quarn
