#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/launchers/Building.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;

/// A launcher with the program that is built beside the tests.
class LauncherProgram : public testing::Test {
 protected:
  LauncherProgram() {
    scene::makeApp(app);
    scene::removeTool("/usr/bin/codesign");
    const Lines lines = build(launcher, app);
    EXPECT_EQ(lines.front(), "launcher-app\t" + launcher + "\t" + app);
  }
  static Lines build(const std::string& at, const std::string& target) {
    return install(hostPlatform(), at, target);
  }
  static void record(const std::string& text, const std::string& at = launcher) {
    scene::write(at + targetFile, text);
  }
};

scene::Run open(const Lines& arguments = {}, const std::string& at = launcher) {
  Lines command = {"timeout", "20", at + executable};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return scene::run(command);
}

/// What a launcher says that opens nothing.
std::string complaint(const std::string& at = launcher) {
  const auto run = open({}, at);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(run.out, "");
  return run.err;
}

std::string opened(const std::string& application, const std::string& name = "Foo") {
  return "running from " + application + "/Contents/MacOS/" + name + "\n";
}

TEST_F(LauncherProgram, opensTheApplication) {
  const auto run = open();
  EXPECT_EQ(run.out, opened(app));
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);
}

TEST_F(LauncherProgram, handsTheArgumentsAndTheStatusOn) {
  scene::write(app + "/Contents/MacOS/Foo", "#!/bin/sh\nprintf '<%s>' \"$@\"; exit 7\n");
  const auto run = open({"a b", "", "-x", "\t\n"});
  EXPECT_EQ(run.out, "<a b><><-x><\t\n>");
  EXPECT_EQ(run.status, 7);
}

TEST_F(LauncherProgram, opensItAlsoThroughALinkToTheLauncher) {
  scene::link("/Users/me/Desktop/Other.app", launcher);
  EXPECT_EQ(open({}, "/Users/me/Desktop/Other.app").out, opened(app));
}

TEST_F(LauncherProgram, trimsWhatTheTargetFileSays) {
  for (const std::string& text : {" \t\r\n" + app + "\n\n", "\xEF\xBB\xBF" + app, app + "\u2028"}) {
    record(text);
    EXPECT_EQ(open().out, opened(app));
  }
}

TEST_F(LauncherProgram, opensHostileNames) {
  const std::string longest = std::string(scene::longestName() - 4, 'x') + ".app";
  for (const std::string& name : {std::string("A b\tc\n'\"$(x)`y`\\ &<>.app"), std::string("Caf\u00E9.app"),
                                  std::string("Cafe\u0301.app"), std::string("-rf.app"), longest}) {
    scene::makeApp("/Volumes/X9/" + name);
    build("/Applications/" + name, "/Volumes/X9/" + name);
    EXPECT_EQ(open({}, "/Applications/" + name).out, opened("/Volumes/X9/" + name));
  }
}

TEST_F(LauncherProgram, takesTheProgramThatThePropertyListNamesAndElseTheOnlyOne) {
  const auto other = [](const std::string& name) {
    scene::write(app + "/Contents/MacOS/" + name, "#!/bin/sh\necho other\n");
    ::chmod((app + "/Contents/MacOS/" + name).c_str(), 0755);
  };
  other("Bar");
  EXPECT_EQ(open().out, opened(app)) << "the one that is named";
  fs::remove(app + "/Contents/MacOS/Bar");
  other(".hidden");
  other("../outside");
  for (const std::string name : {"Missing", "../outside", "..", "."}) {
    scene::write(app + "/Contents/Info.plist",
                 "<plist><dict><key>CFBundleExecutable</key><string>" + name + "</string></dict></plist>");
    EXPECT_EQ(open().out, opened(app)) << name;
  }
  for (const std::string content : {"garbage", "", "<plist><string>Foo</string></plist>"}) {
    scene::write(app + "/Contents/Info.plist", content);
    EXPECT_EQ(open().out, opened(app)) << content;
  }
  fs::remove(app + "/Contents/Info.plist");
  EXPECT_EQ(open().out, opened(app));
  other("Bar");
  EXPECT_EQ(complaint(), "“Foo” can’t be opened: " + app + ": there is no program in it.\n");
}

TEST_F(LauncherProgram, tellsWhyAProgramCantBeStarted) {
  ::chmod((app + "/Contents/MacOS/Foo").c_str(), 0644);
  EXPECT_EQ(complaint(), "“Foo” can’t be opened: " + app + ": Permission denied.\n");
}

// The application isn't there.

TEST_F(LauncherProgram, tellsThatTheApplicationIsMissing) {
  const std::string gone = "/Users/me/Gone.app";
  for (const std::string& target : {gone, app + "/Contents/Info.plist/x.app"}) {
    record(target);
    EXPECT_EQ(complaint(),
              "“Foo” can’t be opened: its application is missing. It should be at " + target + ".\n");
  }
}

TEST_F(LauncherProgram, tellsThatTheApplicationIsMissingOnADriveThatIsThere) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  fs::remove_all(app);
  EXPECT_EQ(complaint(), "“Foo” can’t be opened: its application is missing. It should be at " + app + ".\n");
}

TEST_F(LauncherProgram, tellsThatTheDriveIsNotConnected) {
  record("/Volumes/Tape & Loft/ExternalQuarn/Apps/Foo.app");
  const std::string told =
      "“Foo” can’t be opened: the drive Tape & Loft isn’t connected. Connect it and try again.\n";
  EXPECT_EQ(complaint(), told);
  scene::makeFolder("/Volumes/Tape & Loft");
  EXPECT_EQ(complaint(), told) << "a folder that a pulled drive left behind";
}

TEST_F(LauncherProgram, tellsThatADriveWasPulledOutAndOpensWhenItIsBack) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  for (int i = 0; i < 2; ++i) {
    scene::plug("Y", "1m");
    scene::makeApp("/Volumes/Y/Foo.app", {}, 100);
    record("/Volumes/Y/Foo.app");
    EXPECT_EQ(open().out, opened("/Volumes/Y/Foo.app"));
    scene::unplug("Y");
    EXPECT_EQ(complaint(), "“Foo” can’t be opened: the drive Y isn’t connected. Connect it and try again.\n");
  }
}

TEST_F(LauncherProgram, aLinkAmongTheVolumesIsADrive) {
  scene::link("/Volumes/Startup", "/");
  record("/Volumes/Startup/Users/me/Gone.app");
  EXPECT_NE(complaint().find("its application is missing"), std::string::npos);
}

TEST_F(LauncherProgram, tellsWhatMayNotBeLookedAt) {
  scene::makeApp("/Users/me/Closed/Foo.app");
  record("/Users/me/Closed/Foo.app");
  fs::permissions("/Users/me/Closed", fs::perms::none);
  EXPECT_EQ(complaint(), "“Foo” can’t be opened: /Users/me/Closed/Foo.app: Permission denied.\n");
}

// The launcher is damaged.

std::string damaged(const std::string& why) {
  return "The launcher “Foo” is damaged: " + why + ". Move it to the Trash and have quarn make a new one.\n";
}

TEST_F(LauncherProgram, tellsThatTheTargetFileIsEmpty) {
  for (const std::string text : {"", " \t\r\n", "\xEF\xBB\xBF"}) {
    record(text);
    EXPECT_EQ(complaint(), damaged("its target file is empty"));
  }
}

TEST_F(LauncherProgram, tellsThatTheTargetFileHoldsNoPath) {
  const std::string longPath = "/" + std::string(65'536, 'x');
  for (const std::string& text :
       {std::string("Foo.app"), std::string("~/Foo.app"), std::string("\xFF"), app + std::string("\0x", 2),
        longPath, std::string(1'000'000, '/'), std::string("file://") + app, std::string(1, '\0')}) {
    record(text);
    EXPECT_EQ(complaint(), damaged("its target file doesn’t hold a path")) << text.substr(0, 60);
  }
}

TEST_F(LauncherProgram, tellsThatTheTargetFileCantBeRead) {
  const std::string file = launcher + targetFile;
  const std::string start = "its target file can’t be read ";
  fs::permissions(file, fs::perms::none);
  EXPECT_EQ(complaint(), damaged(start + "(Permission denied)"));
  fs::remove(file);
  EXPECT_EQ(complaint(), damaged(start + "(No such file or directory)"));
  scene::makeFolder(file);
  EXPECT_EQ(complaint(), damaged(start + "(Invalid argument)"));
  fs::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0644), 0);
  EXPECT_EQ(complaint(), damaged(start + "(Invalid argument)")) << "and doesn't wait for a writer";
}

TEST_F(LauncherProgram, aStrangersTextCantMoveTheCursor) {
  record("/tmp/\x1B[2J\nGone.app");
  EXPECT_EQ(complaint(),
            "“Foo” can’t be opened: its application is missing. It should be at /tmp/?[2J?Gone.app.\n");
}

TEST_F(LauncherProgram, aTargetThatIsNoApplicationIsNotOpened) {
  scene::write("/tmp/file", "#!/bin/sh\necho no\n");
  for (const std::string target : {"/", "/Volumes", "/tmp/file", "/Users/me"}) {
    record(target);
    EXPECT_EQ(complaint(),
              "“Foo” can’t be opened: " + std::string(target) + ": there is no program in it.\n");
  }
}

// Launchers that lead to launchers.

TEST_F(LauncherProgram, aLauncherOfALauncherOpensTheApplication) {
  for (const std::string name : {"B", "C", "D"}) build("/Applications/" + name + ".app", app);
  record("/Applications/B.app");
  record("/Applications/C.app", "/Applications/B.app");
  record("/Applications/D.app", "/Applications/C.app");
  EXPECT_EQ(open().out, opened(app));
}

TEST_F(LauncherProgram, launchersThatLeadToEachOtherEndAtOnce) {
  build("/Applications/B.app", app);
  scene::link("/Users/me/Link.app", launcher);
  record("/Applications/B.app");
  for (const std::string target : {launcher.c_str(), "/Users/me/Link.app"}) {
    record(target, "/Applications/B.app");
    EXPECT_EQ(complaint(), damaged("it leads back to itself"));
  }
  record(launcher);
  EXPECT_EQ(complaint(), damaged("it leads back to itself"));
}

TEST_F(LauncherProgram, outsideOfALauncherItSaysWhatItIs) {
  const auto run = scene::run({"/usr/local/libexec/external-app-launcher"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "This program opens the application of the launcher that it lies in. It lies in none.\n");
}

}  // namespace
}  // namespace quarn
