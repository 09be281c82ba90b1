#include "tests/cli/InstallScenes.h"
#include "tests/support/Patterns.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"

/// `install inspect` and `install plan`: what they print of each kind of source, in each form.

using expected::allocated;
using expected::printed;
using expected::shown;
using installs::Words;

namespace {

std::string bytesOf(const std::string& path) {
  return std::to_string(allocated(path));
}

/// Expects the same inspection in its three forms, and that it has left nothing behind but what was expanded.
void expectInspection(const std::string& source, const std::string& tsv, const std::string& human,
                      const std::string& toml) {
  const auto before = installs::wholeTree();
  for (const Words& flags :
       {Words{}, Words{"--format", "tsv"}, Words{"--format", "bogus"}, Words{"--format"}}) {
    Words words = {"inspect", source};
    words.insert(words.end(), flags.begin(), flags.end());
    EXPECT_EQ(shown(installs::quarn(words)), printed(tsv));
  }
  EXPECT_EQ(shown(installs::quarn({"inspect", source, "--format", "human"})), printed(human));
  EXPECT_EQ(shown(installs::quarn({"inspect", source, "--format", "toml"})), printed(toml));
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
  EXPECT_FALSE(scene::exists(installs::sessionsRoot));
}

std::string trust(const std::string& status, bool hasScripts = false, bool hasPrivilegedPayload = false) {
  return "[trust]\nstatus = \"" + status + "\"\nhasScripts = " + (hasScripts ? "true" : "false") +
         "\nhasPrivilegedPayload = " + (hasPrivilegedPayload ? "true" : "false") + "\n";
}

std::string itemTable(const std::string& kind, const std::string& path, const std::string& bytes) {
  return "[[items]]\nkind = \"" + kind + "\"\npath = \"" + path + "\"\nlabel = \"" +
         std::filesystem::path(path).filename().string() + "\"\nsizeBytes = " + bytes + "\n";
}

class InstallInspect : public installs::WithArchives {};

TEST_F(InstallInspect, anApplication) {
  const std::string app = "/Users/me/Foo.app";
  scene::makeApp(app);
  const std::string bytes = bytesOf(app);
  expectInspection(app, "inspection\tapp\t" + app + "\nitem\tapp\t" + bytes + "\t" + app + "\n",
                   "app: " + app + "\n- app\t" + app + "\n",
                   "source = \"" + app + "\"\nkind = \"app\"\nwarnings = []\n" + trust("app-bundle") +
                       itemTable("app", app, bytes));
}

TEST_F(InstallInspect, anApplicationWithASystemExtensionIsWarnedAbout) {
  const std::string app = "/Users/me/Foo.app";
  const std::string warning = "App has system extensions; externalizing may break it.";
  scene::makeApp(app);
  scene::write(app + "/Contents/Library/SystemExtensions/com.example.systemextension/x", "x");
  const std::string bytes = bytesOf(app);
  expectInspection(
      app, "inspection\tapp\t" + app + "\nwarning\t" + warning + "\nitem\tapp\t" + bytes + "\t" + app + "\n",
      "app: " + app + "\n- app\t" + app + "\nwarning: " + warning + "\n",
      "source = \"" + app + "\"\nkind = \"app\"\nwarnings = [\"" + warning + "\"]\n" + trust("app-bundle") +
          itemTable("app", app, bytes));
}

TEST_F(InstallInspect, aMissingApplicationHasNoSize) {
  const std::string app = "/Users/me/None.app";
  expectInspection(app, "inspection\tapp\t" + app + "\nitem\tapp\t0\t" + app + "\n",
                   "app: " + app + "\n- app\t" + app + "\n",
                   "source = \"" + app + "\"\nkind = \"app\"\nwarnings = []\n" + trust("app-bundle") +
                       itemTable("app", app, "0"));
}

TEST_F(InstallInspect, anImage) {
  installs::package("A");
  scene::makeFolder("/Users/me/content");
  std::filesystem::copy_file("/Users/me/A.pkg", "/Users/me/content/A.pkg");
  scene::makeApp("/Users/me/content/B.app");
  scene::makeApp("/Users/me/content/B.app/Contents/Inner.app");
  scene::makeApp("/Users/me/content/.hidden/Hidden.app");
  scene::write("/Users/me/content/x.sh", "#!/bin/sh\n");
  const std::string image = installs::image("/Users/me/content");
  installs::orders("hdiutil", "name V\n");
  const std::string package = bytesOf("/Users/me/content/A.pkg"), app = bytesOf("/Users/me/content/B.app");
  expectInspection(image,
                   "inspection\tdmg\t" + image + "\nitem\tpkg\t" + package +
                       "\t/Volumes/V/A.pkg\nitem\tapp\t" + app + "\t/Volumes/V/B.app\n",
                   "dmg: " + image + "\n- pkg\t/Volumes/V/A.pkg\n- app\t/Volumes/V/B.app\n",
                   "source = \"" + image + "\"\nkind = \"dmg\"\nwarnings = []\n" + trust("disk-image") +
                       itemTable("pkg", "/Volumes/V/A.pkg", package) +
                       itemTable("app", "/Volumes/V/B.app", app));
}

TEST_F(InstallInspect, anImageWithNothingToInstall) {
  scene::write("/Users/me/content/inner.dmg", "x");
  scene::write("/Users/me/content/inner.zip", "x");
  scene::write("/Users/me/content/inner.sh", "x");
  const std::string image = installs::image("/Users/me/content");
  const std::string warning = "No .app or .pkg found.";
  expectInspection(
      image, "inspection\tdmg\t" + image + "\nwarning\t" + warning + "\n",
      "dmg: " + image + "\nwarning: " + warning + "\n",
      "source = \"" + image + "\"\nkind = \"dmg\"\nwarnings = [\"" + warning + "\"]\n" + trust("disk-image"));
}

TEST_F(InstallInspect, anImageThatCannotBeAttached) {
  const std::string image = "/Users/me/None.dmg";
  const std::string warning = "hdiutil: attach failed - No such file or directory\n";
  expectInspection(image, "inspection\tdmg\t" + image + "\nwarning\t" + warning + "\n",
                   "dmg: " + image + "\nwarning: " + warning + "\n",
                   "source = \"" + image + "\"\nkind = \"dmg\"\nwarnings = [\"" + warning + "\"]\n" +
                       trust("inspect-failed"));
}

/// What is expanded lies in a folder with a new name each time.
std::string named(const scene::Run& run) {
  return patterns::replace(shown(run), "/QuarnZip-[0-9A-F-]{36}/", "/FOLDER/");
}

TEST_F(InstallInspect, anArchive) {
  scene::makeApp("/Users/me/content/Foo.app");
  const std::string archive = installs::zip("/Users/me/content");
  const std::string bytes = bytesOf("/Users/me/content/Foo.app");
  const std::string app = installs::temporary + "/FOLDER/Foo.app";
  EXPECT_EQ(named(installs::quarn({"inspect", archive})),
            printed("inspection\tzip\t" + archive + "\nitem\tapp\t" + bytes + "\t" + app + "\n"));
  EXPECT_EQ(named(installs::quarn({"inspect", archive, "--format", "human"})),
            printed("zip: " + archive + "\n- app\t" + app + "\n"));
  EXPECT_EQ(named(installs::quarn({"inspect", archive, "--format", "toml"})),
            printed("source = \"" + archive + "\"\nkind = \"zip\"\nwarnings = []\n" + trust("zip-archive") +
                    itemTable("app", app, bytes)));
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
  EXPECT_EQ(installs::namesIn(scene::home + "/.Trash").size(), 3U);
}

TEST_F(InstallInspect, aPackage) {
  const std::string file = installs::package();
  const std::string bytes = bytesOf(file);
  expectInspection(file, "inspection\tpkg\t" + file + "\nitem\tpkg\t" + bytes + "\t" + file + "\n",
                   "pkg: " + file + "\n- pkg\t" + file + "\n",
                   "source = \"" + file + "\"\nkind = \"pkg\"\nwarnings = []\n" + trust("trusted") +
                       itemTable("pkg", file, bytes));
}

TEST_F(InstallInspect, aPackageWithEverythingToBeWarnedAbout) {
  const std::string file = "/Users/me/Any.MPKG";
  scene::write("/Users/me/scripts/postinstall", "#!/bin/sh\n");
  scene::write("/Users/me/payload/Library/LaunchDaemons/x.plist", "x");
  packages::component(file, {.payload = "/Users/me/payload", .scripts = "/Users/me/scripts"});
  const auto run = installs::quarn({"inspect", file});
  const std::string first = "inspection\tmpkg\t" + file +
                            "\nwarning\tPackage signature is not trusted.\nwarning\t"
                            "Package contains install scripts.\n";
  EXPECT_TRUE(run.out.starts_with(first)) << run.out;
  EXPECT_TRUE(run.out.ends_with("\nitem\tmpkg\t" + bytesOf(file) + "\t" + file + "\n")) << run.out;
  const auto toml = installs::quarn({"inspect", file, "--format", "toml"});
  EXPECT_NE(toml.out.find("status = \"untrusted\"\nhasScripts = true\n"), std::string::npos) << toml.out;
  EXPECT_NE(toml.out.find("[[items]]\nkind = \"mpkg\"\n"), std::string::npos) << toml.out;
}

TEST_F(InstallInspect, aScript) {
  const std::string script = "/Users/me/install";
  const std::string first = "Shell script — runs arbitrary code with sudo.";
  const std::string second = "Script references system paths (/Applications, /Library, ~).";
  scene::write(script, "#!/usr/bin/python3\ncp x /Library/y\n");
  const std::string bytes = bytesOf(script);
  expectInspection(
      script,
      "inspection\tscript\t" + script + "\nwarning\t" + first + "\nwarning\t" + second + "\nitem\tscript\t" +
          bytes + "\t" + script + "\n",
      "script: " + script + "\n- script\t" + script + "\nwarning: " + first + "\nwarning: " + second + "\n",
      "source = \"" + script + "\"\nkind = \"script\"\nwarnings = [\"" + first + "\", \"" + second + "\"]\n" +
          trust("untrusted-script", true, true) + itemTable("script", script, bytes));
}

TEST_F(InstallInspect, somethingElse) {
  const std::string warning = "Unsupported source type.";
  scene::write("/Users/me/x.txt", "text");
  scene::write("/Users/me/empty", "");
  for (const std::string source : {"/Users/me/x.txt", "/Users/me/empty", "/Users/me/none", "/Users/me"})
    expectInspection(source, "inspection\tunknown\t" + source + "\nwarning\t" + warning + "\n",
                     "unknown: " + source + "\nwarning: " + warning + "\n",
                     "source = \"" + source + "\"\nkind = \"unknown\"\nwarnings = [\"" + warning + "\"]\n" +
                         trust("unsupported"));
}

TEST_F(InstallInspect, repeatsTheSourceAsItWasGiven) {
  scene::makeApp("/Users/me/Foo.app");
  const auto run = installs::quarn({"inspect", "Foo.app"});
  EXPECT_EQ(shown(run), printed("inspection\tapp\tFoo.app\nitem\tapp\t" + bytesOf("/Users/me/Foo.app") +
                                "\t/Users/me/Foo.app\n"));
}

/// The files below a folder that a command opens, each once. Folders have to be opened to be listed.
Words filesOpened(const Words& command, const std::string& below) {
  scene::TracedProgram program(command);
  Words files;
  while (const auto stop = program.next()) {
    const std::string call = scene::lookEntered(program, *stop).value_or("");
    const std::string path = call.starts_with("openat ") ? call.substr(7) : "";
    if (path.starts_with(below + "/") && !std::filesystem::is_directory(path)) files.push_back(path);
  }
  EXPECT_EQ(program.status(), 0) << program.said();
  std::sort(files.begin(), files.end());
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

TEST_F(InstallInspect, opensNoFileOfAnImage) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const std::string volume = "/Volumes/Image";
  scene::makeApp(volume + "/Foo.app");
  scene::write(volume + "/Setup.pkg", "no package");
  for (int number = 0; number < 100; ++number)
    scene::write(volume + "/folder/" + std::to_string(number) + "/README", "#!/bin/sh");
  scene::replaceTool("/usr/bin/hdiutil",
                     "#!/bin/sh\necho '<plist version=\"1.0\"><dict><key>system-entities</key><array><dict>"
                     "<key>mount-point</key><string>" +
                         volume + "</string></dict></array></dict></plist>'\n");
  const auto inspection = installs::quarn({"inspect", "/Users/me/Image.dmg"});
  EXPECT_NE(inspection.out.find("\t" + volume + "/Setup.pkg\n"), std::string::npos) << inspection.out;
  EXPECT_EQ(filesOpened({"/bin/cat", volume + "/Setup.pkg"}, volume), Words{volume + "/Setup.pkg"})
      << "what is opened is seen";
  EXPECT_EQ(filesOpened({"/usr/local/libexec/quarn", "install", "inspect", "/Users/me/Image.dmg"}, volume),
            Words{});
}

class InstallPlan : public installs::WithArchives {};

scene::Run plan(const std::string& source, const Words& flags = {},
                const std::string& drive = "/Volumes/X9") {
  Words words = {"plan", source, "--option", "trusted-external", "--target-drive", drive};
  words.insert(words.end(), flags.begin(), flags.end());
  return installs::quarn(words);
}

TEST_F(InstallPlan, ofAnApplicationInThreeForms) {
  const std::string app = "/Users/me/Foo.app";
  scene::makeApp(app);
  const std::string bytes = bytesOf(app);
  const std::string copy = "copy-app\t" + app + "\t" + installs::apps + "/Foo.app";
  const std::string launcher = "launcher-app\t/Applications/Foo.app\t" + installs::apps + "/Foo.app";
  const std::string toml =
      "source = \"" + app +
      "\"\noption = \"trusted-external\"\ntargetDrive = \"/Volumes/X9\"\nneededBytes = " + bytes +
      "\nwarnings = []\nactions = [\"" + copy + "\", \"" + launcher + "\"]\n";
  const auto before = installs::wholeTree();
  for (const Words& flags :
       {Words{}, Words{"--format", "toml"}, Words{"--format", "bogus"}, Words{"--format"}})
    EXPECT_EQ(shown(plan(app, flags)), printed(toml));
  EXPECT_EQ(shown(plan(app, {"--format", "tsv"})),
            printed("plan\ttrusted-external\t" + bytes + "\t" + app + "\naction\t" + copy + "\naction\t" +
                    launcher + "\n"));
  EXPECT_EQ(shown(plan(app, {"--format", "human"})), printed(copy + "\n" + launcher + "\n"));
  EXPECT_EQ(installs::wholeTree(), before);
}

TEST_F(InstallPlan, ofABlockedPackageHasItsWarningsInOrderAndFiveActions) {
  const std::string file = "/Users/me/a.pkg";
  packages::component(file);
  installs::orders("mdutil", "state Indexing disabled.\n");
  EXPECT_EQ(
      shown(plan(file, {"--format", "human"})),
      printed(
          "snapshot-before\ninstall-pkg\t" + file +
          "\t/\nsnapshot-after\nreceipt-diff\nexternalize-safe-new-apps\n"
          "warning: Package signature is not trusted.\nwarning: Untrusted packages are blocked.\n"
          "warning: Spotlight indexing is disabled for /System/Volumes/Data. Launchpad search may not show "
          "new apps. Run: sudo mdutil -i on /System/Volumes/Data\n"));
}

TEST_F(InstallPlan, ofAScriptOrOfSomethingElse) {
  scene::write("/Users/me/a.sh", "true\n");
  EXPECT_EQ(
      shown(plan("/Users/me/a.sh", {"--format", "human"})),
      printed("inspect-contained\t/Users/me/a.sh\nwarning: Shell script — runs arbitrary code with sudo.\n"));
  EXPECT_EQ(shown(plan("/Users/me/none", {"--format", "tsv"})),
            printed("plan\ttrusted-external\t0\t/Users/me/none\nwarning\tUnsupported source type.\n"));
}

TEST_F(InstallPlan, ofAnImageNamesItsItemsByTheirOwnKinds) {
  scene::makeApp("/Users/me/content/B.app");
  packages::component("/Users/me/content/A.pkg");
  installs::orders("hdiutil", "name V\n");
  const auto run = plan(installs::image("/Users/me/content"), {"--format", "human"});
  EXPECT_EQ(
      shown(run),
      printed("snapshot-before\ninstall-pkg\t/Volumes/V/A.pkg\t/\nsnapshot-after\nreceipt-diff\n"
              "externalize-safe-new-apps\ncopy-app\t/Volumes/V/B.app\t" +
              installs::apps + "/B.app\nlauncher-app\t/Applications/B.app\t" + installs::apps + "/B.app\n"));
}

TEST_F(InstallPlan, takesTheDriveAndTheFolderOfLaunchersAsTheyAreGiven) {
  scene::makeApp("/Users/me/Foo.app");
  const auto run = plan("/Users/me/Foo.app",
                        {"--format", "human", "--application-link-root", "/Users/me/Mine"}, "/Volumes/None");
  EXPECT_EQ(shown(run), printed("copy-app\t/Users/me/Foo.app\t/Volumes/None/ExternalQuarn/Apps/Foo.app\n"
                                "launcher-app\t/Users/me/Mine/Foo.app\t"
                                "/Volumes/None/ExternalQuarn/Apps/Foo.app\n"));
}

}  // namespace
