#include <gtest/gtest.h>

#include "QuarnCore/installer/PackageInstaller.h"
#include "tests/installer/Installing.h"
#include "tests/support/FakeTools.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Packages.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;

Texts targetsIn(const std::string& description) {
  Texts texts;
  for (const Path& target : PackageInstaller::targetsNamedIn(description)) texts.push_back(target.text());
  return texts;
}

TEST(TargetsOfAPackage, areTheApplicationsThatItsLinesName) {
  EXPECT_EQ(targetsIn("path=\"/Applications/Foo.app/Contents/Info.plist\""), Texts{"/Applications/Foo.app"});
  EXPECT_EQ(targetsIn("/Applications/Foo.app"), Texts{"/Applications/Foo.app"});
  EXPECT_EQ(targetsIn("/Applications/Utilities/Foo.app"), Texts{}) << "not directly there";
  EXPECT_EQ(targetsIn("/Applications/.app"), Texts{});
  EXPECT_EQ(targetsIn("/Applications/x.app.app.bak"), Texts{"/Applications/x.app.app"}) << "the longest";
  EXPECT_EQ(targetsIn("/Applications/Foo.apps"), Texts{"/Applications/Foo.app"});
  EXPECT_EQ(targetsIn("/Applications/Foo Bar.app"), Texts{}) << "a name ends at a space";
  for (const char* space : {"\u00A0", "\u2003", "\u3000", "\t", "\"", "<"})
    EXPECT_EQ(targetsIn("/Applications/Foo" + std::string(space) + "Bar.app"), Texts{}) << space;
  EXPECT_EQ(targetsIn("/Applications/Caf\u00E9.app"), Texts{"/Applications/Caf\u00E9.app"});
  EXPECT_EQ(targetsIn("x/Applications/Foo.app"), Texts{"/Applications/Foo.app"});
  EXPECT_EQ(targetsIn("/applications/Foo.app /Applications/Foo.APP"), Texts{});
}

TEST(TargetsOfAPackage, ofEachLineOnlyTheFirstCounts) {
  EXPECT_EQ(targetsIn("/Applications/A.app /Applications/B.app\n/Applications/C.app"),
            (Texts{"/Applications/A.app", "/Applications/C.app"}));
  EXPECT_EQ(targetsIn("/Applications/x /Applications/B.app"), Texts{"/Applications/B.app"})
      << "the first that is one";
  for (const char* end : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"}) {
    EXPECT_EQ(targetsIn("/Applications/A.app" + std::string(end) + "/Applications/B.app"),
              (Texts{"/Applications/A.app", "/Applications/B.app"}))
        << end;
  }
  EXPECT_EQ(targetsIn("/Applications/A.app\n/Applications/A.app"), Texts{"/Applications/A.app"});
  EXPECT_EQ(targetsIn(""), Texts{});
}

const std::string package = "/Users/me/Foo.pkg";
const std::string link = "/Applications/Foo.app";
const std::string copy = apps + "/Foo.app";

class InstallingAPackage : public testing::Test {
 protected:
  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
    scene::write("/Users/me/payload/Applications/Foo.app/Contents/Info.plist", "new");
    makePackage("<bundle path=\"./Applications/Foo.app/Contents/Info.plist\"/>");
  }
  void makePackage(const std::string& extra) {
    packages::component(package, {.payload = "/Users/me/payload", .packageInfoExtra = extra});
  }
  std::string install(bool useGantrix = false) {
    return PackageInstaller::install(hostPlatform(), Path(package), useGantrix,
                                     {.sink = [this](const std::string& line) { lines.push_back(line); }});
  }
  static void orders(const std::string& tool, const std::string& text) {
    scene::write("/var/db/quarn-room-tools/" + tool, text);
  }
  Texts lines;
};

const Texts installed = {"run-pkg\t/usr/sbin/installer\t" + package, "installed-pkg\t" + package};

TEST_F(InstallingAPackage, unpacksItOntoTheStartupVolume) {
  EXPECT_EQ(install(), "installed-pkg\t" + package);
  EXPECT_EQ(lines, installed);
  EXPECT_EQ(scene::read(link + "/Contents/Info.plist"), "new");
}

TEST_F(InstallingAPackage, aLinkToAnotherVolumeMakesRoomForIt) {
  scene::makeApp(copy);
  const Texts before = scene::tree(copy);
  scene::link(link, copy);
  // Gone before the installer starts.
  orders("installer", "record /Users/me/told\n");
  scene::write("/Users/me/scripts/preinstall",
               "#!/bin/sh\nls -d " + link + " " + copy + " >/Users/me/seen 2>/dev/null\nexit 0\n");
  std::filesystem::permissions("/Users/me/scripts/preinstall", std::filesystem::perms(0755));
  packages::component(package, {.payload = "/Users/me/payload",
                                .scripts = "/Users/me/scripts",
                                .packageInfoExtra = "<x>/Applications/Foo.app</x>"});
  install();
  EXPECT_EQ(lines[0], "pre-install-clear-symlink\t" + link + "\t-> " + copy);
  EXPECT_EQ(Texts(lines.begin() + 1, lines.end()), installed);
  EXPECT_EQ(scene::read("/Users/me/seen"), "");
  EXPECT_FALSE(scene::isLink(link));
  EXPECT_EQ(scene::read(link + "/Contents/Info.plist"), "new");
  EXPECT_FALSE(scene::exists(copy));
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), before) << "the copy can still be had";
  EXPECT_EQ(scene::read("/Users/me/told"), "installer\t-pkg\t" + package + "\t-target\t/\n");
}

TEST_F(InstallingAPackage, ifItFailsTheLinkAndTheCopyArePutBack) {
  scene::makeApp(copy);
  scene::link(link, copy);
  const Texts before = scene::tree("/Volumes/X9");
  orders("installer", "not-root\n");
  EXPECT_EQ(thrown([&] { install(); }), "installer: Must be run as root to install this package.\n");
  EXPECT_EQ(lines[0], "pre-install-clear-symlink\t" + link + "\t-> " + copy);
  EXPECT_EQ(scene::target(link), copy);
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

TEST_F(InstallingAPackage, ifItFailsHalfwayWhatItBroughtIsNotReplacedByTheLink) {
  scene::makeApp(copy);
  const Texts before = scene::tree(copy);
  scene::link(link, copy);
  scene::write("/Users/me/scripts/postinstall", "#!/bin/sh\nexit 1\n");
  std::filesystem::permissions("/Users/me/scripts/postinstall", std::filesystem::perms(0755));
  packages::component(package, {.payload = "/Users/me/payload",
                                .scripts = "/Users/me/scripts",
                                .packageInfoExtra = "<x>/Applications/Foo.app</x>"});
  EXPECT_NE(thrown([&] { install(); }), "nothing");
  EXPECT_EQ(scene::read(link + "/Contents/Info.plist"), "new");
  EXPECT_EQ(scene::tree(copy), before);
}

TEST_F(InstallingAPackage, aLinkOrACopyThatCannotBeMovedMakesNoRoom) {
  scene::makeApp(copy);
  scene::link(link, copy);
  const Texts before = scene::tree("/Volumes/X9");
  for (const std::string& refused : {std::string("removeSymbolicLink "), "rename " + copy + " "}) {
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (operation.starts_with(refused)) return PlatformError("test", 1, "It broke.");
      return {};
    });
    lines.clear();
    orders("installer", "fail 1\n");
    EXPECT_NE(thrown([&] {
                PackageInstaller::install(
                    gated.platform(), Path(package), false,
                    {.sink = [this](const std::string& line) { lines.push_back(line); }});
              }),
              "nothing");
    EXPECT_EQ(lines[0], "pre-install-keep-symlink\t" + link + "\t-> " + copy) << refused;
    EXPECT_EQ(scene::target(link), copy);
    EXPECT_EQ(scene::tree("/Volumes/X9"), before);
  }
}

TEST_F(InstallingAPackage, aLinkOfADriveThatIsAwayIsRemovedToo) {
  scene::link(link, "/Volumes/Away/ExternalQuarn/Apps/Foo.app");
  install();
  EXPECT_EQ(lines[0], "pre-install-clear-symlink\t" + link + "\t-> /Volumes/Away/ExternalQuarn/Apps/Foo.app");
  EXPECT_EQ(scene::read(link + "/Contents/Info.plist"), "new");
}

TEST_F(InstallingAPackage, aLinkElsewhereAndARealBundleAreLeftAlone) {
  doubles::FakeTools tools;
  for (const char* target : {"/opt/Foo.app", "../opt/Foo.app", "Volumes/X9/Foo.app", "/Volumes"}) {
    std::filesystem::remove_all(link);
    scene::link(link, target);
    orders("installer", "fail 1\n");
    EXPECT_NE(thrown([&] { install(); }), "nothing");
    EXPECT_EQ(scene::target(link), target);
  }
  std::filesystem::remove_all(link);
  scene::makeLauncher(link, copy);
  scene::makeApp(copy);
  EXPECT_NE(thrown([&] { install(); }), "nothing");
  EXPECT_TRUE(scene::exists(link) && !scene::isLink(link));
  EXPECT_TRUE(scene::exists(copy));
  for (const std::string& line : lines) EXPECT_FALSE(line.starts_with("pre-install")) << line;
}

TEST_F(InstallingAPackage, whatALinkLeadsToIsLeftAloneUnlessItIsAnApplicationOfItsOwn) {
  scene::write("/Volumes/X9/Documents/precious", "precious");
  scene::write("/Users/me/Foo.app/precious", "precious");
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps");
  scene::link("/Volumes/Inside", "/Users/me");
  const auto before = scene::tree("/Volumes/X9");
  for (const std::string target :
       {"/Volumes/X9", "/Volumes/X9/", "/Volumes/X9/Documents", "/Volumes/../Users/me/Foo.app",
        "/Volumes/Inside/Foo.app", "/Volumes/X9/ExternalQuarn", "/Volumes/X9/ExternalQuarn/Apps", "/Volumes/",
        "/Volumes/X9/../../Users/me/Foo.app"}) {
    std::filesystem::remove_all(link);
    scene::link(link, target);
    lines.clear();
    orders("installer", "fail 1\n");
    for (const bool useGantrix : {false, true}) EXPECT_NE(thrown([&] { install(useGantrix); }), "nothing");
    EXPECT_EQ(lines[0], "pre-install-keep-symlink\t" + link + "\t-> " + target);
    EXPECT_EQ(scene::target(link), target);
    EXPECT_EQ(scene::tree("/Volumes/X9"), before) << target;
    EXPECT_EQ(scene::read("/Users/me/Foo.app/precious"), "precious") << target;
  }
}

TEST_F(InstallingAPackage, aVolumeMountedInTheCopyIsNotTakenAlong) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::makeApp(copy);
  scene::makeFolder(copy + "/mounted");
  scene::plug("Inner", "1m");
  ASSERT_EQ(::system(("mount --bind /Volumes/Inner " + copy + "/mounted").c_str()), 0);
  scene::link(link, copy);
  orders("installer", "fail 1\n");
  EXPECT_NE(thrown([&] { install(); }), "nothing");
  EXPECT_EQ(scene::target(link), copy);
  EXPECT_TRUE(scene::exists(copy + "/Contents/Info.plist"));
}

TEST_F(InstallingAPackage, theDescriptionsOfTheComponentsCountToo) {
  scene::makeApp(copy);
  scene::link(link, copy);
  packages::product(package,
                    {{.payload = "/Users/me/payload", .packageInfoExtra = "<x>/Applications/Foo.app</x>"}});
  install();
  EXPECT_EQ(lines[0], "pre-install-clear-symlink\t" + link + "\t-> " + copy);
}

TEST_F(InstallingAPackage, withoutADescriptionTheInstallerRunsAtOnce) {
  scene::makeApp(copy);
  scene::link(link, copy);
  scene::write(package, "no archive");
  EXPECT_NE(thrown([&] { install(); }), "nothing");
  EXPECT_EQ(lines, Texts{installed[0]});
  EXPECT_EQ(scene::target(link), copy);
}

TEST_F(InstallingAPackage, aDescriptionThatIsNoTextIsSkipped) {
  scene::makeApp(copy);
  scene::link(link, copy);
  makePackage("\xFF/Applications/Foo.app");
  thrown([&] { install(); });
  EXPECT_EQ(lines.at(0), installed[0]);
  EXPECT_EQ(scene::target(link), copy);
}

TEST_F(InstallingAPackage, leavesNoTemporaryFolder) {
  scene::makeFolder("/Users/me/tmp");
  ::setenv("TMPDIR", "/Users/me/tmp", 1);
  install();
  EXPECT_EQ(namesIn("/Users/me/tmp"), Texts{});
  EXPECT_EQ(namesIn("/Users/me/.Trash"), Texts{});
}

TEST_F(InstallingAPackage, withoutRoomForATemporaryFolderItIsInstalledAnyway) {
  ::setenv("TMPDIR", "/dev/null/none", 1);
  EXPECT_EQ(install(), "installed-pkg\t" + package);
  EXPECT_EQ(lines, installed);
}

TEST_F(InstallingAPackage, throughGantrixEverythingRunsWithRaisedRights) {
  scene::makeApp(copy);
  scene::link(link, copy);
  orders("gantrix", "record /Users/me/told\n");
  makePackage("<x>/Applications/Foo.app</x>");
  EXPECT_EQ(install(true), "installed-pkg\t" + package);
  EXPECT_EQ(scene::read("/Users/me/told"), "gantrix\trm\t-f\t" + link + "\ngantrix\trm\t-rf\t" + copy +
                                               "\ngantrix\tinstaller\t-pkg\t" + package + "\t-target\t/\n");
  EXPECT_EQ(lines, (Texts{"pre-install-clear-symlink\t" + link + "\t-> " + copy,
                          "run-pkg\t/usr/local/bin/gantrix\t" + package, "installed-pkg\t" + package}));
  EXPECT_FALSE(scene::exists(copy));
}

TEST_F(InstallingAPackage, gantrixMayLieInTheHomeFolder) {
  std::filesystem::remove("/usr/local/bin/gantrix");
  const std::string own = "/Users/me/.codex/skills/gantrix/gantrix";
  EXPECT_NE(thrown([&] { install(true); }), "nothing") << "it isn't there either";
  EXPECT_EQ(lines, Texts{"run-pkg\t" + own + "\t" + package});
  scene::write(own, "#!/bin/sh\nexit 0\n");
  std::filesystem::permissions(own, std::filesystem::perms(0755));
  EXPECT_EQ(install(true), "installed-pkg\t" + package);
}

TEST(FailingPackages, tellWhatTheToolWroteErrorsFirst) {
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/installer"] = {.status = 7, .output = "installer: out\n", .error = "err\n"};
  try {
    PackageInstaller::install(tools.platform(), Path("/a.pkg"), false, InstallerRunReporter::silent());
    FAIL() << "it was installed";
  } catch (const PlatformError& error) {
    EXPECT_EQ(error.domain, "pkg-install");
    EXPECT_EQ(error.code, 7);
    EXPECT_EQ(error.localizedDescription(), "err\ninstaller: out\n");
  }
  tools.answers.clear();
  EXPECT_NE(thrown([&] {
              PackageInstaller::install(tools.platform(), Path("/a.pkg"), false,
                                        InstallerRunReporter::silent());
            }),
            "nothing")
      << "a tool that is missing";
}

TEST(FailingPackages, aToolThatHangsOverTheDescriptionIsEnded) {
  doubles::FakeTools tools;
  tools.answers["/usr/bin/xar"] = {.hangs = true};
  tools.answers["/usr/sbin/installer"] = {};
  PackageInstaller::install(tools.platform(), Path("/a.pkg"), false, InstallerRunReporter::silent());
  EXPECT_GE(tools.secondsWaited(), 15);
  EXPECT_LT(tools.secondsWaited(), 20);
}

TEST_F(InstallingAPackage, whatALinkLeadsToStaysWhereItCannotBeResolved) {
  scene::makeApp(copy);
  scene::link(link, copy);
  const Texts before = scene::tree("/Volumes/X9");
  Unresolving files(copy);
  Platform platform = replacing({.files = &files});
  orders("installer", "fail 1\n");
  EXPECT_NE(thrown([&] {
              PackageInstaller::install(platform, Path(package), false,
                                        {.sink = [this](const std::string& line) { lines.push_back(line); }});
            }),
            "nothing");
  EXPECT_EQ(lines[0], "pre-install-keep-symlink\t" + link + "\t-> " + copy);
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

}  // namespace
}  // namespace quarn
