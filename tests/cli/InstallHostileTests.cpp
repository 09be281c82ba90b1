#include <sys/stat.h>

#include "tests/cli/InstallScenes.h"

/// `install` with sources, bundles, drives and names that nobody would wish for. Whatever is refused is told
/// in words, recorded as a failed session, changes nothing, and doesn't stand in the way of the next attempt.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::Words;

namespace {

namespace fs = std::filesystem;

const std::string app = "/Users/me/Foo.app";
const std::string moved = installs::apps + "/Foo.app";

class InstallHostile : public installs::WithArchives {
 protected:
  void SetUp() override {
    WithArchives::SetUp();
    scene::makeFolder(installs::apps);
    scene::makeApp(app);
  }
};

/// Expects a run to be refused so, to have changed nothing, and to be recorded as failed.
void expectRefused(const std::string& source, const std::string& message, const std::string& option = {}) {
  SCOPED_TRACE(source);
  const auto before = installs::wholeTree();
  EXPECT_EQ(shown(installs::run(source, {}, option.empty() ? "tracked-script-external" : option)),
            failed(message));
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
  installs::expectOneFailedSession(source);
}

/// Expects that an application can be installed as ever.
void expectGoodRun() {
  const auto run = installs::run(app, {"--format", "tsv"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(scene::tree(moved), scene::tree(app));
  EXPECT_EQ(installs::launcherTarget("/Applications/Foo.app"), moved);
}

TEST_F(InstallHostile, aMissingSource) {
  expectRefused("/Users/me/None.app", "The file “None.app” doesn’t exist.");
  expectRefused("/Users/me/None.dmg", "hdiutil: attach failed - No such file or directory\n");
  expectRefused("/Users/me/None.zip", "ditto: Cannot get the real path for source '/Users/me/None.zip'\n");
  expectRefused("/Users/me/None.pkg",
                "installer: Error - the package path specified was invalid: '/Users/me/None.pkg'.\n");
  expectRefused("/Users/me/None.pkg", "Untrusted package blocked.", "trusted-external");
  expectRefused("/Users/me/None.sh", "/bin/bash: /Users/me/None.sh: No such file or directory\n");
  expectRefused("/Users/me/None", "Unsupported source type.");
  scene::link("/Users/me/Dangling.zip", "/Users/me/None.zip");
  expectRefused("/Users/me/Dangling.zip",
                "ditto: Cannot get the real path for source '/Users/me/Dangling.zip'\n");
  expectGoodRun();
}

TEST_F(InstallHostile, aFolderInPlaceOfAFile) {
  for (const char* name : {"folder", "folder.dmg", "folder.zip", "folder.pkg", "folder.sh"})
    scene::write("/Users/me/" + std::string(name) + "/precious", "precious");
  expectRefused("/Users/me/folder", "Unsupported source type.");
  expectRefused("/Users/me/folder.dmg", "hdiutil: attach failed - image not recognized\n");
  expectRefused("/Users/me/folder.zip", "ditto: Couldn't read PKZip signature\n");
  expectRefused("/Users/me/folder.sh", "/Users/me/folder.sh: /Users/me/folder.sh: Is a directory\n");
  expectGoodRun();
}

TEST_F(InstallHostile, aPipeIsNotWaitedAt) {
  for (const std::string name : {"p.app", "p.dmg", "p.zip", "p.pkg", "p.mpkg", "p.sh", "p"}) {
    const std::string pipe = "/Users/me/" + name;
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0644), 0);
    scene::link("/Users/me/link to " + name, pipe);
    for (const std::string& source : {pipe, "/Users/me/link to " + name}) {
      const auto begin = std::time(nullptr);
      const auto inspection = scene::run({"timeout", "20", "quarn", "install", "inspect", source});
      ASSERT_EQ(inspection.status, 0) << source;
      EXPECT_TRUE(inspection.out.ends_with("\t" + source + "\nwarning\tUnsupported source type.\n"))
          << inspection.out;
      const auto run = scene::run({"timeout", "20", "quarn", "install", "run", source, "--option",
                                   "tracked-script-external", "--target-drive", "/Volumes/X9"});
      ASSERT_EQ(shown(run), failed("Unsupported source type.")) << source;
      EXPECT_LT(std::time(nullptr) - begin, 20) << source;
      installs::expectOneFailedSession(source);
    }
  }
  EXPECT_EQ(installs::namesIn(installs::apps), Words{});
  expectGoodRun();
}

TEST_F(InstallHostile, aTruncatedArchive) {
  scene::makeApp("/Users/me/content/Foo.app");
  const std::string whole = scene::read(installs::zip("/Users/me/content"));
  for (const std::size_t bytes : {whole.size() - 30, whole.size() / 2, std::size_t{3}, std::size_t{0}}) {
    SCOPED_TRACE(bytes);
    scene::write("/Users/me/cut.zip", whole.substr(0, bytes));
    const auto before = installs::wholeTree();
    const auto run = installs::run("/Users/me/cut.zip");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("error\tditto: ")) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(installs::wholeTree(), before);
    EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
    installs::expectOneFailedSession("/Users/me/cut.zip");
  }
  EXPECT_EQ(installs::run("/Users/me/Archive.zip").status, 0);
}

TEST_F(InstallHostile, anEncryptedArchive) {
  scene::makeApp("/Users/me/content/Foo.app");
  const std::string archive =
      installs::archive("zip", "/Users/me/content", "/Users/me/secret.zip",
                        {"--options", "zip:encryption=traditional", "--passphrase", "secret"});
  const auto before = installs::wholeTree();
  const auto run = installs::run(archive);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("Foo.app/Contents/Info.plist: Operation not permitted\n"), std::string::npos)
      << run.err;
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
  installs::expectOneFailedSession(archive);
  expectGoodRun();
}

TEST_F(InstallHostile, whatIsNoImageAndNoPackage) {
  scene::write("/Users/me/bad.dmg", "no image");
  scene::write("/Users/me/bad.pkg", "no package");
  expectRefused("/Users/me/bad.dmg", "hdiutil: attach failed - image not recognized\n");
  expectRefused("/Users/me/bad.pkg", "Untrusted package blocked.", "trusted-external");
  expectRefused("/Users/me/bad.pkg",
                "installer: Error - the package path specified was invalid: '/Users/me/bad.pkg'.\n");
  expectGoodRun();
}

TEST_F(InstallHostile, aScriptThatIsNoText) {
  scene::write("/Users/me/odd", "#!/bin/sh\n\xFF\xFE\n");
  expectRefused("/Users/me/odd", "Unsupported source type.");
  scene::write("/Users/me/odd.sh", "# \xFF\xFE\ntouch /Users/me/ran\necho $'\\xFF'\n");
  const auto inspection = installs::quarn({"inspect", "/Users/me/odd.sh"});
  EXPECT_TRUE(inspection.out.starts_with("inspection\tscript\t/Users/me/odd.sh\nwarning\tShell script"))
      << inspection.out;
  EXPECT_EQ(installs::runLenient("/Users/me/odd.sh", {"--format", "tsv"}).status, 0);
  EXPECT_TRUE(scene::exists("/Users/me/ran"));
  scene::write("/Users/me/odd.sh", "echo $'oops \\xFF'\nexit 1\n");
  EXPECT_EQ(shown(installs::runLenient("/Users/me/odd.sh")),
            failed("The operation couldn’t be completed. (script-install error 1.)"))
      << "what it wrote isn't text";
}

TEST_F(InstallHostile, anArchiveWhoseEntriesLeadOut) {
  scene::write("/Users/me/content/Foo.app/Contents/Info.plist", "x");
  const std::string archive = installs::zip("/Users/me/content");
  std::string bytes = scene::read(archive);
  // The names keep their length, so that the archive stays whole.
  const std::string inside = "./Foo.app/Contents/Info.plist", outside = "../oo.app/Contents/Info.plist";
  for (auto at = bytes.find(inside); at != std::string::npos; at = bytes.find(inside))
    bytes.replace(at, inside.size(), outside);
  scene::write(archive, bytes);
  const auto before = installs::wholeTree();
  installs::quarn({"inspect", archive});
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
}

TEST_F(InstallHostile, aBundleWhoseLinksLeaveIt) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::link(app + "/Contents/out", "/Users/me/Documents");
  scene::link(app + "/Contents/up", "../../Documents/precious");
  scene::link(app + "/Contents/dangling", "nothing");
  const auto documents = scene::tree("/Users/me/Documents");
  expectGoodRun();
  EXPECT_EQ(scene::target(moved + "/Contents/out"), "/Users/me/Documents");
  EXPECT_EQ(scene::tree("/Users/me/Documents"), documents);
  const std::string id = installs::namesIn(installs::sessionsRoot).at(0);
  EXPECT_EQ(shown(installs::quarn({"uninstall", id})), printed(""));
  EXPECT_EQ(scene::tree("/Users/me/Documents"), documents);
}

TEST_F(InstallHostile, aBundleThatIsALink) {
  fs::rename(app, "/Users/me/Real.app");
  scene::link(app, "/Users/me/Real.app");
  const auto real = scene::tree("/Users/me/Real.app");
  const auto run = installs::run(app);
  EXPECT_EQ(scene::tree("/Users/me/Real.app"), real);
  EXPECT_EQ(scene::target(app), "/Users/me/Real.app");
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST_F(InstallHostile, aBundleWithAPipeInIt) {
  ASSERT_EQ(::mkfifo((app + "/Contents/pipe").c_str(), 0644), 0);
  const auto run = scene::run({"timeout", "20", "quarn", "install", "run", app, "--option",
                               "trusted-external", "--target-drive", "/Volumes/X9", "--format", "human"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(scene::tree(moved), scene::tree(app));
}

TEST_F(InstallHostile, aBundleWithAVolumeMountedInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::plug("Inner", "1m");
  scene::write("/Volumes/Inner/precious", "precious");
  scene::makeFolder(app + "/Contents/mounted");
  ASSERT_EQ(::system("mount --bind /Volumes/Inner /Users/me/Foo.app/Contents/mounted"), 0);
  const auto before = installs::wholeTree();
  const auto run = installs::run(app);
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("error\t")) << run.err;
  EXPECT_NE(run.err.find("/Users/me/Foo.app/Contents/mounted"), std::string::npos) << run.err;
  EXPECT_EQ(installs::wholeTree(), before);
  installs::expectOneFailedSession(app);
  ASSERT_EQ(::system("umount /Users/me/Foo.app/Contents/mounted"), 0);
  expectGoodRun();
}

/// Makes a drive that takes no heed of letter case. Returns why there can't be one, nothing if there is.
std::string plugDriveWithoutLetterCase() {
  if (!scene::hasMounts()) return "this room has no mounts";
  scene::makeFolder("/Volumes/Caseless");
  for (const char* command : {"mount -t tmpfs -o casefold,strict_encoding none /Volumes/Caseless",
                              "truncate -s 16m /tmp/image && mkfs.vfat /tmp/image && "
                              "mount -o loop /tmp/image /Volumes/Caseless",
                              "truncate -s 32m /tmp/image && mkfs.ext4 -q -O casefold /tmp/image && "
                              "mount -o loop /tmp/image /Volumes/Caseless && chattr +F /Volumes/Caseless"}) {
    if (::system(("(" + std::string(command) + ") >/dev/null 2>&1").c_str()) != 0) continue;
    scene::write("/Volumes/Caseless/probe", "");
    const bool isCaseless = scene::exists("/Volumes/Caseless/PROBE");
    fs::remove("/Volumes/Caseless/probe");
    if (isCaseless) return {};
    if (::system("umount /Volumes/Caseless") != 0) return "can't unmount";
  }
  return "this kernel can't mount a volume that takes no heed of letter case";
}

TEST_F(InstallHostile, namesThatDifferInLetterCaseAloneOntoADriveThatTakesNoHeedOfIt) {
  const std::string reason = plugDriveWithoutLetterCase();
  if (!reason.empty()) GTEST_SKIP() << reason;
  scene::write(app + "/Contents/name", "one");
  scene::write(app + "/Contents/NAME", "other");
  const auto before = scene::tree(app);
  const auto run =
      installs::quarn({"run", app, "--option", "trusted-external", "--target-drive", "/Volumes/Caseless"});
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists("/Applications/Foo.app"));
  installs::expectOneFailedSession(app);
}

TEST_F(InstallHostile, aDriveThatIsFull) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::makeApp("/Users/me/Big.app", {}, 2'000'000);
  scene::plug("Tiny", "1m");
  const auto before = scene::tree("/Users/me/Big.app");
  const auto run = installs::quarn(
      {"run", "/Users/me/Big.app", "--option", "trusted-external", "--target-drive", "/Volumes/Tiny"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error\tYou can’t save the file “Big.app” because the volume “Tiny” is out of space.\n");
  EXPECT_EQ(installs::namesIn("/Volumes/Tiny/ExternalQuarn/Apps"), Words{}) << "nothing remains of the copy";
  EXPECT_FALSE(scene::exists("/Applications/Big.app"));
  EXPECT_EQ(scene::tree("/Users/me/Big.app"), before);
  installs::expectOneFailedSession("/Users/me/Big.app");
  const auto good =
      installs::quarn({"run", app, "--option", "trusted-external", "--target-drive", "/Volumes/Tiny"});
  EXPECT_EQ(good.status, 0) << good.err;
}

TEST_F(InstallHostile, aDriveThatIsReadOnlyOrMissing) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::plug("Locked", "1m", true);
  for (const std::string drive : {"/Volumes/Locked", "/Volumes/None"}) {
    SCOPED_TRACE(drive);
    const auto before = installs::wholeTree();
    const auto run = installs::quarn({"run", app, "--option", "trusted-external", "--target-drive", drive});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    const std::string reason = drive == "/Volumes/None" ? "No drive is mounted there: /Volumes/None" : "";
    EXPECT_TRUE(run.err.starts_with("error\t" + reason)) << run.err;
    EXPECT_EQ(installs::wholeTree(), before);
    installs::expectOneFailedSession(app);
  }
  expectGoodRun();
}

TEST_F(InstallHostile, twoRunsInOneSecondLeaveTheLaterSession) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    fs::remove_all(installs::sessionsRoot);
    installs::nextSecond();
    installs::run("/Users/me/None");
    ASSERT_EQ(installs::run(app).status, 0);
    const Words sessions = installs::savedSessions();
    if (sessions.size() == 2) continue;
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_NE(sessions[0].find("\"status\":\"done\""), std::string::npos) << sessions[0];
    EXPECT_NE(sessions[0].find("Foo.app"), std::string::npos) << sessions[0];
    return;
  }
  FAIL() << "no two runs in one second";
}

/// Names that a bundle may well have. None holds a slash.
const Words odd = {"My App",
                   " leading and trailing ",
                   "It's \"quoted\" `here` $HOME",
                   "back\\slash",
                   "tab\there",
                   "two\t\ttabs",
                   "line\nfeed",
                   "carriage\rreturn",
                   "--option",
                   "*?[a]",
                   "a:b;c&d|e>f",
                   "🎛️ Mixer",
                   "Caf\xC3\xA9",
                   "Cafe\xCC\x81",
                   std::string(245, 'n')};

TEST_F(InstallHostile, anApplicationOfAnyNameGoesTheWholeWay) {
  for (const std::string& name : odd) {
    SCOPED_TRACE(name);
    const std::string source = "/Users/me/" + name + ".app", launcher = "/Applications/" + name + ".app";
    const std::string copy = installs::apps + "/" + name + ".app";
    scene::makeApp(source);
    const auto before = scene::tree(source);
    const auto run = installs::run(source, {"--format", "human"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(scene::tree(copy), before);
    EXPECT_EQ(scene::tree(source), before);
    EXPECT_EQ(installs::launcherTarget(launcher), copy);
    const std::string id = installs::namesIn(installs::sessionsRoot).at(0);
    EXPECT_EQ(shown(installs::quarn({"sessions", "--format", "human"})), printed(id + "\t" + source + "\n"));
    // An action has its fields separated by tabs, and so nothing is recorded of such a name.
    const bool isRecorded = name.find('\t') == std::string::npos;
    EXPECT_EQ(shown(installs::quarn({"uninstall-plan", id})),
              printed(isRecorded ? "trash\t" + copy + "\ntrash\t" + launcher + "\n" : ""));
    EXPECT_EQ(shown(installs::quarn({"uninstall", id})), printed(""));
    EXPECT_EQ(scene::exists(copy), !isRecorded);
    EXPECT_EQ(scene::exists(launcher), !isRecorded);
    EXPECT_EQ(scene::tree(source), before);
    for (const std::string& folder :
         {source, installs::sessionsRoot, scene::home + "/.Trash", scene::driveTrash()})
      fs::remove_all(folder);
  }
}

TEST_F(InstallHostile, anApplicationWithTheLongestName) {
  const std::string name = std::string(scene::longestName() - 4, 'n') + ".app";
  const std::string source = "/Users/me/" + name;
  scene::makeApp(source);
  const auto before = scene::tree(source);
  const auto run = installs::run(source, {"--format", "human"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(scene::tree(installs::apps + "/" + name), before);
  const std::string id = installs::namesIn(installs::sessionsRoot).at(0);
  EXPECT_EQ(shown(installs::quarn({"uninstall", id})), printed(""));
  EXPECT_EQ(installs::namesIn(installs::apps), Words{});
  EXPECT_FALSE(scene::exists("/Applications/" + name));
}

TEST_F(InstallHostile, aNameThatIsNoText) {
  const std::string source = "/Users/me/F\xFF.app";
  scene::makeApp(source);
  const auto run = installs::run(source);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(installs::namesIn(installs::apps), Words{});
  EXPECT_EQ(shown(installs::quarn({"sessions"})), printed("\n")) << "which couldn't be recorded";
  expectGoodRun();
}

}  // namespace
