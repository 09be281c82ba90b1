#include <gtest/gtest.h>

#include "tests/installer/Installing.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Packages.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;

const std::string blockedPackage = "Untrusted package blocked.";

void orders(const std::string& tool, const std::string& text) {
  scene::write("/var/db/quarn-room-tools/" + tool, text);
}

Texts install(Request& request, const std::string& source, Platform& platform = hostPlatform()) {
  return SourceInstaller::install(platform, Path(source), request.request);
}

PlatformError errorOf(Request& request, const std::string& source, Platform& platform = hostPlatform()) {
  try {
    install(request, source, platform);
  } catch (const PlatformError& error) {
    return error;
  }
  return {"none", 0, "nothing"};
}

class Sources : public testing::Test {
 protected:
  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
    scene::makeFolder("/Users/me/tmp");
    ::setenv("TMPDIR", "/Users/me/tmp", 1);
    scene::write("/Users/me/payload/Library/x", "x");
  }
  static std::string archive(const std::string& format, const std::string& name) {
    const std::string file = "/Users/me/" + name;
    const auto made =
        scene::run({"/usr/bin/bsdtar", "--format", format, "-cf", file, "-C", "/Users/me/content", "."});
    if (made.status != 0) scene::fail("can't make an archive: " + made.err);
    return file;
  }
  static std::string image() { return archive("iso9660", "Image.dmg"); }
  static std::string zip() { return archive("zip", "Archive.zip"); }
};

TEST_F(Sources, anUnknownKindIsAnError) {
  Request request;
  const auto error = errorOf(request, "/Users/me/a.txt");
  EXPECT_EQ(error.domain, "install");
  EXPECT_EQ(error.code, 1);
  EXPECT_EQ(error.localizedDescription(), "Unsupported source type.");
}

TEST_F(Sources, aNameThatIsNoTextIsAnErrorBeforeAnythingIsDone) {
  scene::makeApp("/Users/me/F\xFF.app");
  Request request;
  EXPECT_EQ(errorOf(request, "/Users/me/F\xFF.app").code, CocoaErrorCode::fileReadInvalidFileName);
  EXPECT_EQ(namesIn(apps), Texts{});
}

TEST_F(Sources, anApplicationIsInstalled) {
  scene::makeApp("/Users/me/Foo.app");
  Request request;
  EXPECT_EQ(install(request, "/Users/me/Foo.app"),
            Texts{"installed-app\t/Applications/Foo.app\t" + apps + "/Foo.app"});
  EXPECT_EQ(request.lines[0], "source\tapp\t/Users/me/Foo.app");
}

TEST_F(Sources, everythingInAnImageIsInstalledInTheOrderOfItsPaths) {
  scene::makeApp("/Users/me/content/B.app");
  packages::component("/Users/me/content/A.pkg", {.payload = "/Users/me/payload"});
  Request request(lenient());
  const Texts actions = install(request, image());
  ASSERT_EQ(actions.size(), 2u);
  EXPECT_TRUE(actions[0].starts_with("installed-pkg\t/Volumes/")) << actions[0];
  EXPECT_EQ(actions[1], "installed-app\t/Applications/B.app\t" + apps + "/B.app");
  EXPECT_EQ(request.lines[0], "source\tdmg\t/Users/me/Image.dmg");
  EXPECT_EQ(request.lines[1], "dmg-mounted\t1");
  EXPECT_EQ(namesIn("/Volumes"), Texts{"X9"}) << "detached";
  EXPECT_TRUE(scene::exists("/Library/x"));
}

TEST_F(Sources, aBlockedPackageInAnImageStopsWhatComesBehindIt) {
  scene::makeApp("/Users/me/content/B.app");
  packages::component("/Users/me/content/A.pkg", {.payload = "/Users/me/payload"});
  Request request;
  const auto error = errorOf(request, image());
  EXPECT_EQ(error.domain, "pkg-install");
  EXPECT_EQ(error.code, 10);
  EXPECT_EQ(error.localizedDescription(), blockedPackage);
  EXPECT_EQ(namesIn(apps), Texts{});
  EXPECT_EQ(namesIn("/Volumes"), Texts{"X9"}) << "detached";
}

TEST_F(Sources, anImageWithoutItemsIsNoError) {
  scene::write("/Users/me/content/Read me.txt", "x");
  Request request;
  EXPECT_EQ(install(request, image()), Texts{});
  EXPECT_EQ(namesIn("/Volumes"), Texts{"X9"});
}

TEST_F(Sources, anImageWithoutAMountPointIsDetachedByItsDevice) {
  orders("hdiutil", "mounts-nothing\nrecord /Users/me/told\n");
  scene::makeApp("/Users/me/content/B.app");
  Request request;
  EXPECT_EQ(install(request, image()), Texts{});
  EXPECT_EQ(request.lines, (Texts{"source\tdmg\t/Users/me/Image.dmg", "dmg-mounted\t0"}));
  EXPECT_NE(scene::read("/Users/me/told").find("hdiutil\tdetach\t/dev/disk"), std::string::npos);
}

TEST_F(Sources, anImageThatIsDetachedBeforeItIsLookedIntoIsNoEmptyOne) {
  scene::makeApp("/Users/me/content/B.app");
  scene::replaceTool("/usr/bin/hdiutil",
                     "#!/bin/sh\n/usr/libexec/quarn-room/hdiutil \"$@\"\n"
                     "[ $1 != attach ] || /usr/libexec/quarn-room/hdiutil detach /Volumes/CDROM -quiet\n");
  Request request;
  EXPECT_EQ(errorOf(request, image()).localizedDescription(), "The folder “CDROM” doesn’t exist.");
  EXPECT_EQ(namesIn(apps), Texts{});
}

TEST_F(Sources, anImageThatCannotBeAttachedIsAnError) {
  orders("hdiutil", "fail 1 hdiutil: attach failed - image not recognized\n");
  Request request;
  const auto error = errorOf(request, "/Users/me/Image.dmg");
  EXPECT_EQ(error.domain, "hdiutil");
  EXPECT_EQ(error.localizedDescription(), "hdiutil: attach failed - image not recognized\n");
}

TEST_F(Sources, theFolderOfAnArchiveIsSetAsideHoweverItEnds) {
  scene::makeApp("/Users/me/content/Foo.app");
  Request good;
  EXPECT_EQ(install(good, zip()).size(), 1u);
  EXPECT_EQ(good.lines[0], "source\tzip\t/Users/me/Archive.zip");
  EXPECT_EQ(namesIn("/Users/me/tmp"), Texts{});
  Request bad;
  bad.request.targetDrive = Path("/Volumes/None");
  EXPECT_NE(thrown([&] { install(bad, zip()); }), "nothing");
  EXPECT_EQ(namesIn("/Users/me/tmp"), Texts{});
  EXPECT_EQ(namesIn("/Users/me/.Trash").size(), 2u);
}

TEST_F(Sources, anArchiveWithTheFindersAdditionsHoldsOneApplication) {
  scene::makeApp("/Users/me/content/Foo.app");
  scene::write("/Users/me/content/__MACOSX/Foo.app/Contents/._Info.plist", "x");
  Request request;
  EXPECT_EQ(install(request, zip()).size(), 1u);
}

TEST_F(Sources, aPackageNeedsATrustedSignatureUnlessTheOptionAllowsIt) {
  const std::string package = "/Users/me/A.pkg";
  packages::component(package, {.payload = "/Users/me/payload"});
  Request strict, allowing(lenient()), again;
  EXPECT_EQ(errorOf(strict, package).localizedDescription(), blockedPackage);
  EXPECT_FALSE(scene::exists("/Library/x"));
  EXPECT_EQ(strict.lines, Texts{"source\tpkg\t" + package});
  EXPECT_EQ(install(allowing, package), Texts{"installed-pkg\t" + package});
  packages::sign(package);
  EXPECT_EQ(install(again, package), Texts{"installed-pkg\t" + package});
}

TEST_F(Sources, aPackageThatWasChangedAfterItWasSignedIsBlocked) {
  const std::string package = "/Users/me/A.pkg";
  packages::component(package, {.payload = "/Users/me/payload"});
  packages::sign(package);
  std::string bytes = scene::read(package);
  bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
  scene::write(package, bytes);
  Request request;
  EXPECT_EQ(errorOf(request, package).localizedDescription(), blockedPackage);
}

TEST(MetaPackages, areInstalledAsPackages) {
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil --check-signature"] = {.output = "   Status: signed Apple Software\n"};
  tools.answers["/usr/sbin/installer"] = {};
  Request request;
  EXPECT_EQ(install(request, "/Users/me/a.mpkg", tools.platform()), Texts{"installed-pkg\t/Users/me/a.mpkg"});
  EXPECT_EQ(request.lines[0], "source\tpkg\t/Users/me/a.mpkg");
}

const std::string script = "/Users/me/a.sh";

void writeScript(const std::string& text, int mode = 0644) {
  scene::write(script, text);
  std::filesystem::permissions(script, static_cast<std::filesystem::perms>(mode));
}

int modeOf(const std::string& file) {
  return static_cast<int>(std::filesystem::status(file).permissions());
}

TEST_F(Sources, aScriptIsBlockedBeforeItIsTouched) {
  writeScript("#!/bin/sh\ntouch /Users/me/ran\n");
  Request request;
  const auto error = errorOf(request, script);
  EXPECT_EQ(error.domain, "script-install");
  EXPECT_EQ(error.code, 20);
  EXPECT_EQ(
      error.localizedDescription(),
      "Shell scripts are blocked by this install option. Use an option with allowUntrustedScripts = true "
      "(e.g. tracked-script-external).");
  EXPECT_EQ(request.lines, Texts{"source\tscript\t" + script});
  EXPECT_EQ(modeOf(script), 0644);
  EXPECT_FALSE(scene::exists("/Users/me/ran"));
}

TEST_F(Sources, aScriptIsMadeExecutableAndRun) {
  writeScript("touch /Users/me/ran\n", 0640);
  Request request(lenient());
  EXPECT_EQ(install(request, script), Texts{"ran-script\t" + script});
  EXPECT_EQ(request.lines, (Texts{"source\tscript\t" + script, "run-script\t/bin/bash\t" + script,
                                  "ran-script\t" + script}));
  EXPECT_EQ(modeOf(script), 0751);
  EXPECT_TRUE(scene::exists("/Users/me/ran"));
}

TEST_F(Sources, aScriptThatSomebodyMayExecuteKeepsItsPermissions) {
  for (const int mode : {0744, 0654, 0645}) {
    writeScript("true\n", mode);
    Request request(lenient());
    install(request, script);
    EXPECT_EQ(modeOf(script), mode);
  }
}

TEST_F(Sources, aScriptThatFailsTellsWhatItWroteErrorsFirst) {
  writeScript("echo out; echo oops >&2; exit 3\n");
  Request request(lenient());
  const auto error = errorOf(request, script);
  EXPECT_EQ(error.domain, "script-install");
  EXPECT_EQ(error.code, 3);
  EXPECT_EQ(error.localizedDescription(), "oops\nout\n");
  EXPECT_EQ(request.lines.back(), "run-script\t/bin/bash\t" + script);
}

TEST_F(Sources, aScriptRunsThroughGantrix) {
  writeScript("touch /Users/me/ran\n");
  orders("gantrix", "record /Users/me/told\n");
  Request request(lenient());
  request.request.useGantrix = true;
  EXPECT_EQ(install(request, script), Texts{"ran-script\t" + script});
  EXPECT_EQ(scene::read("/Users/me/told"), "gantrix\tbash\t" + script + "\n");
  EXPECT_EQ(request.lines[1], "run-script\t/usr/local/bin/gantrix\t" + script);
  EXPECT_TRUE(scene::exists("/Users/me/ran"));
}

TEST_F(Sources, aScriptThatIsNoTextIsRunToo) {
  writeScript("#!/bin/bash\n: \xFF\xFE\ntouch /Users/me/ran\n");
  Request request(lenient());
  EXPECT_EQ(install(request, script), Texts{"ran-script\t" + script});
  EXPECT_TRUE(scene::exists("/Users/me/ran"));
}

TEST_F(Sources, aScriptThatIsKilledFails) {
  writeScript("kill -9 $$\n");
  Request request(lenient());
  EXPECT_NE(thrown([&] { install(request, script); }), "nothing");
}

}  // namespace
}  // namespace quarn
