#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "tests/plugins/InstalledPlugins.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

using namespace installed;
using Kind = PluginInstallStatus::Kind;

std::int64_t sizeOf(const std::string& path) {
  return SizeCalculator::size(hostPlatform(), Path(path));
}

std::string word(Kind kind) {
  return kind == Kind::native ? "native" : kind == Kind::externalised ? "externalised" : "broken";
}

/// A line for each plug-in: format, name, status, target.
Lines told(const std::vector<InstalledPlugin>& plugins) {
  Lines lines;
  for (const InstalledPlugin& plugin : plugins) {
    lines.push_back(std::string(rawValue(plugin.format)) + " " + plugin.name + " " +
                    word(plugin.status.kind) + " " + plugin.status.target);
  }
  return lines;
}

TEST(PluginCatalogScanner, tellsRealBundlesFromLinksAndBrokenLinks) {
  makeBundle(vst3 + "/Native.vst3");
  scene::writeBytes(onDrive + "/AU/Out.component/Contents/code", 50'000);
  scene::link(components + "/Out.component", onDrive + "/AU/Out.component");
  scene::link(aax + "/Broken.aaxplugin", "/Volumes/None/Broken.aaxplugin");
  const auto found = scanned();
  EXPECT_EQ(found, (std::vector<InstalledPlugin>{
                       {.format = PluginFormat::aax,
                        .name = "Broken.aaxplugin",
                        .systemPath = aax + "/Broken.aaxplugin",
                        .sizeBytes = 0,
                        .status = {Kind::brokenSymlink, "/Volumes/None/Broken.aaxplugin"}},
                       {.format = PluginFormat::au,
                        .name = "Out.component",
                        .systemPath = components + "/Out.component",
                        .sizeBytes = sizeOf(onDrive + "/AU/Out.component"),
                        .status = {Kind::externalised, onDrive + "/AU/Out.component"}},
                       {.format = PluginFormat::vst3,
                        .name = "Native.vst3",
                        .systemPath = vst3 + "/Native.vst3",
                        .sizeBytes = sizeOf(vst3 + "/Native.vst3"),
                        .status = {Kind::native, ""}},
                   }));
  EXPECT_GE(sizeOf(onDrive + "/AU/Out.component"), 50'000);
  EXPECT_GT(sizeOf(vst3 + "/Native.vst3"), 0);
}

TEST(PluginCatalogScanner, listsTheFoldersOfTheFormatsAskedForAlone) {
  makeBundle(vst3 + "/A.vst3");
  makeBundle(components + "/A.component");
  EXPECT_EQ(told(scanned({PluginFormat::au})), Lines{"au A.component native "});
  EXPECT_EQ(told(scanned({})), Lines{});
}

TEST(PluginCatalogScanner, sortsByTheTextOfTheFormatAndByName) {
  for (const std::string name : {"b.vst3", "B.vst3", "a.vst3"}) makeBundle(vst3 + "/" + name);
  makeBundle(vst2 + "/z.vst");
  EXPECT_EQ(told(scanned()), (Lines{"vst2 z.vst native ", "vst3 B.vst3 native ", "vst3 a.vst3 native ",
                                    "vst3 b.vst3 native "}));
}

TEST(PluginCatalogScanner, goesByTheExtensionWhicheverOfTheFoldersAPluginStandsIn) {
  makeBundle(components + "/A.VST3");
  makeBundle(components + "/Readme");
  scene::write(components + "/a.txt", "");
  scene::write(components + "/A.component", "a file");
  EXPECT_EQ(told(scanned({PluginFormat::au})), (Lines{"au A.component native ", "vst3 A.VST3 native "}));
}

TEST(PluginCatalogScanner, passesOverAFolderThatCannotBeListed) {
  makeBundle(vst3 + "/A.vst3");
  std::filesystem::remove_all(components);
  scene::write(components, "a file");
  EXPECT_EQ(told(scanned()), Lines{"vst3 A.vst3 native "});
}

TEST(PluginCatalogScanner, listsASystemFolderThatIsALink) {
  makeBundle("/Users/me/Mine/A.vst3");
  std::filesystem::remove_all(vst3);
  scene::link(vst3, "/Users/me/Mine");
  EXPECT_EQ(told(scanned()), Lines{"vst3 A.vst3 native "});
}

TEST(PluginCatalogScanner, looksUpARelativeTargetFromTheCurrentFolder) {
  makeBundle(vst3 + "/real/A.vst3");
  scene::link(vst3 + "/A.vst3", "real/A.vst3");
  ASSERT_EQ(::chdir("/"), 0);
  EXPECT_EQ(told(scanned()), Lines{"vst3 A.vst3 broken real/A.vst3"});
  EXPECT_EQ(scanned().at(0).sizeBytes, 0);
  ASSERT_EQ(::chdir(vst3.c_str()), 0);
  EXPECT_EQ(told(scanned()), Lines{"vst3 A.vst3 externalised real/A.vst3"});
  EXPECT_EQ(scanned().at(0).sizeBytes, sizeOf(vst3 + "/real/A.vst3"));
}

TEST(PluginCatalogScanner, findsHiddenAndOddNamesAndChangesNoByteOfThem) {
  const Lines names = {".hidden.vst3",   "a \"b\" 'c'.vst3",
                       "l\nf.vst3",      "Cafe\u0301.vst3",
                       "Caf\u00E9.vst3", std::string(scene::longestName() - 5, 'x') + ".vst3"};
  for (const std::string& name : names) makeBundle(vst3 + "/" + name);
  std::set<std::string> found;
  for (const InstalledPlugin& plugin : scanned()) {
    EXPECT_EQ(plugin.systemPath, vst3 + "/" + plugin.name);
    found.insert(plugin.name);
  }
  EXPECT_EQ(found, std::set<std::string>(names.begin(), names.end()));
}

/// Neither the kind of an item nor the text of a link can be read.
class Unreadable : public FileSystemDecorator {
 public:
  Unreadable(bool ofKinds) : FileSystemDecorator(hostPlatform().files), ofKinds_(ofKinds) {}
  Result<FileAttributes> attributes(const Path& path) const override {
    if (ofKinds_) return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "It broke.");
    return FileSystemDecorator::attributes(path);
  }
  Result<std::string> readSymbolicLink(const Path&) const override {
    return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "It broke.");
  }

 private:
  bool ofKinds_;
};

/// As on a drive that fails.
class Unreachable : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  bool exists(const Path& path) const override {
    return !path.text().starts_with("/Users/me/") && FileSystemDecorator::exists(path);
  }
};

TEST(PluginCatalogScanner, measuresNothingBehindABrokenLink) {
  makeBundle("/Users/me/A.vst3");
  scene::link(vst3 + "/A.vst3", "/Users/me/A.vst3");
  Unreachable files(hostPlatform().files);
  const auto found = PluginCatalogScanner::scan(replacing({.files = &files}), everyFormat);
  EXPECT_EQ(told(found), Lines{"vst3 A.vst3 broken /Users/me/A.vst3"});
  EXPECT_EQ(found.at(0).sizeBytes, 0);
}

TEST(PluginCatalogScanner, takesWhatCannotBeLookedAtForABundleAndAnUnreadableLinkForABrokenOne) {
  makeBundle("/Users/me/A.vst3");
  scene::link(vst3 + "/A.vst3", "/Users/me/A.vst3");
  Unreadable texts(false), kinds(true);
  EXPECT_EQ(told(PluginCatalogScanner::scan(replacing({.files = &texts}), everyFormat)),
            Lines{"vst3 A.vst3 broken "});
  EXPECT_EQ(told(PluginCatalogScanner::scan(replacing({.files = &kinds}), everyFormat)),
            Lines{"vst3 A.vst3 native "});
}

}  // namespace
}  // namespace quarn
