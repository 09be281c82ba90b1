#include <filesystem>
#include <sys/xattr.h>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/plugins/PluginCLIShared.h"
#include "tests/cli/InstallScenes.h"
#include "tests/cli/PluginScenes.h"
#include "tests/support/Replacing.h"

using expected::failed;
using expected::printed;
using expected::shown;
using plugins::Lines;
using plugins::makeBundle;
using plugins::onDrive;
using plugins::size;
using plugins::source;

namespace {

namespace fs = std::filesystem;

const std::string lib = plugins::system;
const std::string inspectUsage =
    "Usage: install plugins inspect <source> [--formats au,vst3,...] [--format human|tsv]";
const std::string installUsage =
    "Usage: install plugins install <source> --target-drive <path> [--formats au,vst3,vst,clap,aax] "
    "[--dry-run] [--yes] [--no-overwrite]";

scene::Run inspect(Lines words) {
  words.insert(words.begin(), "inspect");
  return plugins::quarn(words);
}

/// A volume for each image that is attached.
Lines volumes() {
  Lines names = installs::namesIn("/Volumes");
  std::erase(names, "X9");
  return names;
}

void setScene() {
  makeBundle(source + "/A.vst3");
  makeBundle(source + "/B.vst");
  makeBundle(source + "/deep/C.component");
}

std::string planOf(const std::string& bundle, const std::string& label, const std::string& folder) {
  const std::string name = fs::path(bundle).filename();
  return "  [" + label + "] " + name + size(bundle) + "\n    -> " + onDrive + "/" + label + "/" + name +
         "\n    -> symlink " + lib + "/" + folder + "/" + name + "\n";
}

std::string plan() {
  return "Plan: install 3 plugin bundle(s) to /Volumes/X9:\n" +
         planOf(source + "/deep/C.component", "AU", "Components") + planOf(source + "/B.vst", "VST2", "VST") +
         planOf(source + "/A.vst3", "VST3", "VST3");
}

std::string stepsOf(const std::string& label, const std::string& folder, const std::string& name) {
  const std::string copy = onDrive + "/" + label + "/" + name;
  return "  plan\t" + label + "\t" + name + "\t-> " + copy + "\n  copied\t" + copy + "\n  symlinked\t" + lib +
         "/" + folder + "/" + name + "\t-> " + copy + "\n";
}

Lines formats(const std::optional<std::string>& value) {
  Lines words;
  for (const quarn::PluginFormat format : quarn::PluginCLIShared::parseFormats(value))
    words.emplace_back(rawValue(format));
  return words;
}

std::string refusal(const std::string& value) {
  return quarn::thrown([&] { quarn::PluginCLIShared::parseFormats(value); });
}

// --formats.

const Lines all = {"au", "vst3", "vst2", "clap", "aax"};

TEST(PluginFormatsFlag, absentOrEmptyTakesAll) {
  EXPECT_EQ(formats(std::nullopt), all);
  EXPECT_EQ(formats(""), all);
}

TEST(PluginFormatsFlag, knowsEachWord) {
  const std::pair<std::string, std::string> rows[] = {
      {"au", "au"},       {"component", "au"}, {"vst3", "vst3"},     {"vst", "vst2"},
      {"vst2", "vst2"},   {"clap", "clap"},    {"aax", "aax"},       {"aaxplugin", "aax"},
      {" VST3 ", "vst3"}, {"\tAu", "au"},      {"AAXPlugin", "aax"},
  };
  for (const auto& [word, format] : rows) EXPECT_EQ(formats(word), Lines{format}) << word;
  EXPECT_EQ(formats("clap,,vst , au,au,"), (Lines{"au", "vst2", "clap"}));
}

TEST(PluginFormatsFlag, withoutAWordTakesNone) {
  EXPECT_EQ(formats(","), Lines{});
  EXPECT_EQ(formats(",,,"), Lines{});
}

TEST(PluginFormatsFlag, allEndsTheList) {
  EXPECT_EQ(formats("vst3,all"), all);
  EXPECT_EQ(formats("ALL,foo"), all);
  EXPECT_EQ(refusal("foo,all"), "Unknown plugin format: foo");
}

TEST(PluginFormatsFlag, anUnknownWordIsNamed) {
  EXPECT_EQ(refusal("au, FOO "), "Unknown plugin format: foo");
  EXPECT_EQ(refusal("au, ,vst"), "Unknown plugin format: ");
  EXPECT_EQ(refusal("--yes"), "Unknown plugin format: --yes");
}

// inspect.

TEST(PluginsInspect, listsForPeople) {
  setScene();
  makeBundle(source + "/D.aaxplugin");
  makeBundle(source + "/E.clap");
  EXPECT_EQ(
      shown(inspect({source})),
      printed("Scanned: " + source + "\nFound 5 plugin bundle(s):\n  [AAX ] D.aaxplugin" +
              size(source + "/D.aaxplugin") + "\n  [AU  ] C.component" + size(source + "/deep/C.component") +
              "\n  [CLAP] E.clap" + size(source + "/E.clap") + "\n  [VST2] B.vst" + size(source + "/B.vst") +
              "\n  [VST3] A.vst3" + size(source + "/A.vst3") + "\n"));
  EXPECT_EQ(shown(inspect({source, "--formats", "clap", "--format", "human"})),
            printed("Scanned: " + source + "\nFound 1 plugin bundle(s):\n  [CLAP] E.clap" +
                    size(source + "/E.clap") + "\n"));
}

TEST(PluginsInspect, listsAsTabSeparatedLines) {
  setScene();
  makeBundle(source + "/x\ty\nz.clap");
  const auto row = [](const std::string& label, const std::string& path) {
    return label + "\t" + fs::path(path).filename().string() + "\t" +
           std::to_string(expected::allocated(path)) + "\t" + path + "\n";
  };
  EXPECT_EQ(shown(inspect({source, "--format", "tsv"})),
            printed("format\tname\tsize\tpath\n" + row("AU", source + "/deep/C.component") +
                    row("CLAP", source + "/x\ty\nz.clap") + row("VST2", source + "/B.vst") +
                    row("VST3", source + "/A.vst3")));
  EXPECT_EQ(shown(inspect({source, "--formats", ",", "--format", "tsv"})),
            printed("format\tname\tsize\tpath\n"));
}

TEST(PluginsInspect, findsNothingInASourceThatHasNone) {
  scene::write("/Users/me/file", "");
  scene::makeFolder("/Users/me/empty");
  for (const std::string none : {"/Users/me/file", "/Users/me/empty", "/nowhere", "/Users/me/locked"}) {
    EXPECT_EQ(shown(inspect({none})), printed("Scanned: " + none + "\nNo plugin bundles found.\n"));
  }
}

TEST(PluginsInspect, passesOverFoldersThatCannotBeRead) {
  setScene();
  fs::permissions(source + "/deep", fs::perms::none);
  const auto run = inspect({source});
  fs::permissions(source + "/deep", fs::perms::owner_all);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("Found 2 plugin bundle(s):"), std::string::npos) << run.out;
}

TEST(PluginsInspect, takesAHomeAndARelativePathAndAnyOtherFormForPeople) {
  setScene();
  const std::string told = shown(inspect({source}));
  EXPECT_EQ(shown(inspect({"~/plug-ins/"})), told);
  EXPECT_EQ(shown(inspect({"plug-ins"})), told);
  EXPECT_EQ(shown(inspect({source, "--format", "TSV"})), told);
  EXPECT_EQ(shown(inspect({source, "--format"})), told);
  EXPECT_EQ(shown(inspect({source, "--formats", ""})), told);
}

TEST(PluginsInspect, needsASourceAndKnownFormats) {
  EXPECT_EQ(shown(inspect({})), failed(inspectUsage));
  EXPECT_EQ(shown(inspect({"--formats"})), failed(inspectUsage));
  EXPECT_EQ(shown(inspect({"--formats", "vst3", source})), failed(inspectUsage));
  EXPECT_EQ(shown(inspect({"--format", "tsv", source})), failed(inspectUsage));
  EXPECT_EQ(shown(inspect({""})), failed(inspectUsage));
  EXPECT_EQ(shown(inspect({source, "--formats", "foo"})), failed("Unknown plugin format: foo"));
}

// install.

TEST(PluginsInstall, showsThePlanAndWritesNothingWithoutYes) {
  setScene();
  const auto before = installs::wholeTree();
  EXPECT_EQ(shown(plugins::install(source, {})),
            printed(plan() + "Proceed? Re-run with --yes to install.\n"));
  EXPECT_EQ(shown(plugins::install(source, {"--dry-run"})),
            printed(plan() + "--dry-run: nothing written.\n"));
  EXPECT_EQ(shown(plugins::install(source, {"--yes", "--dry-run"})),
            printed(plan() + "--dry-run: nothing written.\n"));
  EXPECT_EQ(installs::wholeTree(), before);
}

TEST(PluginsInstall, installsAndTellsEachStep) {
  setScene();
  EXPECT_EQ(shown(plugins::install()),
            printed(plan() + stepsOf("AU", "Components", "C.component") + stepsOf("VST2", "VST", "B.vst") +
                    stepsOf("VST3", "VST3", "A.vst3") + "\nInstalled: 3   Skipped: 0   Failed: 0\n"));
  EXPECT_EQ(scene::target(lib + "/VST/B.vst"), onDrive + "/VST2/B.vst");
  EXPECT_EQ(plugins::unsignedTree(onDrive + "/VST2/B.vst"), scene::tree(source + "/B.vst"));
  EXPECT_EQ(scene::run({"/usr/bin/codesign", "--verify", onDrive + "/VST2/B.vst"}).status, 0)
      << "and it is signed anew";
  EXPECT_EQ(shown(plugins::install()).substr(0, 8), "status 0") << "a second time, too";
}

TEST(PluginsInstall, passesOverWhatIsThereWhenToldTo) {
  setScene();
  makeBundle(onDrive + "/VST2/B.vst", "old");
  const auto run = plugins::install(source, {"--yes", "--no-overwrite"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(
      run.out.ends_with("\nInstalled: 2   Skipped: 1   Failed: 0\n"
                        "  [skipped] B.vst: destination exists, overwrite disabled\n"))
      << run.out;
  EXPECT_FALSE(scene::exists(lib + "/VST/B.vst"));
}

TEST(PluginsInstall, tellsWhatFailedAndEndsWithOne) {
  setScene();
  scene::write(plugins::tools + "ditto", "on */B.vst fail 1 ditto: B: No space left on device\n");
  const auto run = plugins::install();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error\tSome plugin installs failed (1).\n");
  EXPECT_TRUE(
      run.out.ends_with("\nInstalled: 2   Skipped: 0   Failed: 1\n"
                        "  [failed] B.vst: ditto failed: ditto: B: No space left on device\n\n"))
      << run.out;
}

TEST(PluginsInstall, needsItsWords) {
  const Lines to = {"install", source, "--target-drive"};
  EXPECT_EQ(shown(plugins::quarn({"install"})), failed(installUsage));
  EXPECT_EQ(shown(plugins::quarn({"install", "", "--target-drive", "/Volumes/X9"})), failed(installUsage));
  EXPECT_EQ(shown(plugins::quarn({"install", source})), failed("--target-drive <path> is required."));
  EXPECT_EQ(shown(plugins::quarn(to)), failed("--target-drive <path> is required."));
  EXPECT_EQ(shown(plugins::quarn({"install", source, "--target-drive", ""})),
            failed("--target-drive <path> is required."));
  EXPECT_EQ(shown(plugins::install(source, {"--formats", "foo"})), failed("Unknown plugin format: foo"));
  EXPECT_EQ(shown(plugins::quarn({"install", source, "--target-drive", "~/none"})),
            failed("Target drive not found: /Users/me/none"));
}

TEST(PluginsInstall, takesTheValueOfAFlagForNoSource) {
  setScene();
  makeBundle("/Volumes/X9/Backups/A.vst3", "old");
  const auto before = installs::wholeTree();
  EXPECT_EQ(shown(plugins::quarn({"install", "--target-drive", scene::drive, source, "--yes"})),
            failed(installUsage));
  EXPECT_EQ(shown(plugins::quarn({"install", "--formats", "vst3", source, "--target-drive", scene::drive})),
            failed(installUsage));
  EXPECT_EQ(shown(plugins::quarn({"install", "--yes", "--target-drive", scene::drive})),
            failed(installUsage));
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(shown(plugins::quarn({"install", "--dry-run", source, "--target-drive", scene::drive})),
            printed(plan() + "--dry-run: nothing written.\n"))
      << "a flag without a value may come first";
}

TEST(PluginsInstall, saysWhereNothingWasFound) {
  scene::makeFolder(source);
  EXPECT_EQ(shown(plugins::install()), printed("No plugin bundles found at " + source + ".\n"));
  EXPECT_EQ(shown(plugins::install("~/plug-ins", {"--yes", "--formats", ","})),
            printed("No plugin bundles found at " + source + ".\n"));
}

TEST(PluginsInstall, aDriveThatIsNotMountedGetsNothing) {
  setScene();
  scene::makeFolder("/Volumes/None");
  const auto run = plugins::quarn({"install", source, "--target-drive", "/Volumes/None", "--yes"});
  EXPECT_EQ(run.err, "error\tSome plugin installs failed (3).\n");
  EXPECT_NE(run.out.find("  [failed] A.vst3: No drive is mounted there: /Volumes/None\n"), std::string::npos)
      << run.out;
  EXPECT_TRUE(fs::is_empty("/Volumes/None"));
}

TEST(PluginsInstall, clearsAttributesAlsoOfWhatALinkInAPluginLeadsTo) {
  const std::string letter = "/Users/me/letter", name = "user.com.apple.quarantine";
  makeBundle(source + "/A.vst3");
  const std::string code = source + "/A.vst3/Contents/MacOS/code";
  scene::write(letter, "a letter");
  scene::link(source + "/A.vst3/Contents/letter", letter);
  scene::link(source + "/A.vst3/Contents/nothing", "/nowhere");
  for (const std::string& file : {letter, code}) {
    if (::setxattr(file.c_str(), name.c_str(), "q", 1, 0) != 0)
      GTEST_SKIP() << "this volume keeps no extended attributes";
  }
  const auto marked = [&](const std::string& file) {
    return ::getxattr(file.c_str(), name.c_str(), nullptr, 0) >= 0;
  };
  EXPECT_EQ(plugins::install().status, 0);
  EXPECT_FALSE(marked(onDrive + "/VST3/A.vst3/Contents/MacOS/code"));
  EXPECT_FALSE(marked(letter)) << "the tool follows links";
  EXPECT_TRUE(marked(code)) << "nothing in the source is cleared";
  EXPECT_EQ(scene::read(letter), "a letter");
}

// Images.

class PluginImages : public testing::Test {
 protected:
  void SetUp() override {
    if (::access("/usr/bin/bsdtar", X_OK) != 0) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
    makeBundle("/Users/me/content/A.vst3");
    image_ = installs::image("/Users/me/content", "/Users/me/Plug \"ins\".DMG");
  }
  std::string image_;
};

TEST_F(PluginImages, areAttachedAndDetached) {
  const auto run = inspect({image_});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.out.starts_with("Scanned: /Volumes/")) << run.out;
  EXPECT_NE(run.out.find("\nFound 1 plugin bundle(s):\n  [VST3] A.vst3  ("), std::string::npos) << run.out;
  EXPECT_EQ(volumes(), Lines{});
}

TEST_F(PluginImages, areInstalledFromAndDetached) {
  const auto run = plugins::install(image_);
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(scene::target(lib + "/VST3/A.vst3"), onDrive + "/VST3/A.vst3");
  EXPECT_EQ(scene::read(onDrive + "/VST3/A.vst3/Contents/Resources/a sound"), "sound of code");
  EXPECT_EQ(volumes(), Lines{});
}

TEST_F(PluginImages, areDetachedOnEveryRoadOut) {
  for (const Lines& more : {Lines{}, Lines{"--dry-run"}, Lines{"--formats", "au"}, Lines{"--yes"}}) {
    scene::write(plugins::tools + "ditto", "fail 1\n");
    plugins::install(image_, more);
    EXPECT_EQ(volumes(), Lines{});
  }
  EXPECT_EQ(plugins::install(image_).status, 1);
}

TEST_F(PluginImages, withoutAMountPointAreDetachedAndRefused) {
  scene::write(plugins::tools + "hdiutil", "record /tmp/calls\nmounts-nothing\n");
  EXPECT_EQ(shown(inspect({image_})), failed("DMG produced no mount points"));
  EXPECT_EQ(shown(plugins::install(image_)), failed("DMG produced no mount points"));
  const std::string calls = scene::read("/tmp/calls");
  EXPECT_EQ(std::count(calls.begin(), calls.end(), '\n'), 4) << calls;
  EXPECT_NE(calls.find("hdiutil\tdetach\t/dev/disk"), std::string::npos) << calls;
}

TEST_F(PluginImages, thatCannotBeAttachedAreErrors) {
  scene::write("/Users/me/no image.dmg", "text");
  scene::makeFolder("/Users/me/folder.dmg");
  for (const std::string path : {"/Users/me/no image.dmg", "/Users/me/folder.dmg", "/nowhere.dmg"}) {
    const auto run = inspect({path});
    EXPECT_EQ(run.status, 1) << path;
    EXPECT_TRUE(run.err.starts_with("error\thdiutil: attach failed - ")) << run.err;
  }
}

}  // namespace
