#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/plugins/PluginSourceScanner.h"
#include "tests/support/FakeTools.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;
using PluginSourceScanner::ScanResult;

const std::string source = "/Users/me/plug-ins";
const std::set<PluginFormat> all = {PluginFormat::au, PluginFormat::vst3, PluginFormat::vst2,
                                    PluginFormat::clap, PluginFormat::aax};

void makeBundle(const std::string& path, std::size_t bytes = 5'000) {
  scene::writeBytes(path + "/Contents/MacOS/code", bytes);
}

ScanResult scanned(const std::string& path = source, const std::set<PluginFormat>& formats = all) {
  return PluginSourceScanner::scan(hostPlatform(), Path(path), formats);
}

/// A line for each bundle: its format and its path below the source.
Lines found(const std::string& path = source, const std::set<PluginFormat>& formats = all) {
  Lines lines;
  for (const PluginBundle& bundle : scanned(path, formats).bundles) {
    EXPECT_EQ(Path(bundle.sourcePath).lastComponent(), bundle.name);
    EXPECT_TRUE(bundle.sourcePath.starts_with(path + "/")) << bundle.sourcePath;
    lines.push_back(std::string(rawValue(bundle.format)) + " " + bundle.sourcePath.substr(path.size() + 1));
  }
  return lines;
}

TEST(PluginSourceScanner, findsEachFormatByTheTextOfItsFormatAndByName) {
  for (const std::string name :
       {"X.vst3", "X.vst", "deep/er/A.clap", "B.aaxplugin", "Z.component", "a.component", "Ä.component"})
    makeBundle(source + "/" + name);
  EXPECT_EQ(found(), (Lines{"aax B.aaxplugin", "au Z.component", "au a.component", "au Ä.component",
                            "clap deep/er/A.clap", "vst2 X.vst", "vst3 X.vst3"}));
  EXPECT_EQ(found(source, {PluginFormat::vst3, PluginFormat::clap}),
            (Lines{"clap deep/er/A.clap", "vst3 X.vst3"}));
  EXPECT_EQ(found(source, {}), Lines{});
}

TEST(PluginSourceScanner, tellsWhatABundleIs) {
  makeBundle(source + "/A \"b\".vst3", 30'000);
  scene::writeBytes(source + "/A \"b\".vst3/.hidden", 90'000);
  const ScanResult result = scanned();
  EXPECT_EQ(result.rootPath, source);
  EXPECT_EQ(result.mount, nullptr);
  const Path bundle(source + "/A \"b\".vst3");
  const std::int64_t size = SizeCalculator::size(hostPlatform(), bundle);
  EXPECT_GT(size, 0);
  EXPECT_LT(size, 90'000);
  EXPECT_EQ(result.bundles,
            (std::vector<PluginBundle>{{PluginFormat::vst3, bundle.lastComponent(), bundle.text(), size}}));
}

TEST(PluginSourceScanner, knowsAnExtensionInCapitals) {
  makeBundle(source + "/Foo.VST3");
  EXPECT_EQ(found(), Lines{"vst3 Foo.VST3"});
}

TEST(PluginSourceScanner, skipsWhatIsHiddenWithAllThatIsInIt) {
  makeBundle(source + "/.hidden.component");
  makeBundle(source + "/.hidden/A.component");
  EXPECT_EQ(found(), Lines{});
}

TEST(PluginSourceScanner, takesNothingForABundleThatIsNoFolder) {
  scene::write(source + "/A.component", "a file");
  scene::write("/Users/me/file", "a file");
  scene::link(source + "/B.component", "/Users/me/file");
  scene::link(source + "/C.component", "/nowhere");
  ASSERT_EQ(::mkfifo((source + "/D.component").c_str(), 0600), 0);
  makeBundle(source + "/Z.component");
  EXPECT_EQ(found(), Lines{"au Z.component"});
}

TEST(PluginSourceScanner, takesAnEndingWithASpaceForNoExtension) {
  makeBundle(source + "/A.vst3 Beta");
  makeBundle(source + "/A.vst 3/B.vst3");
  EXPECT_EQ(found(), Lines{"vst3 A.vst 3/B.vst3"});
}

TEST(PluginSourceScanner, findsNoPluginInAPlugin) {
  makeBundle(source + "/A.vst3/Contents/Resources/B.vst3");
  EXPECT_EQ(found(), Lines{"vst3 A.vst3"});
  EXPECT_EQ(found(source, {PluginFormat::vst2}), Lines{});
}

TEST(PluginSourceScanner, looksIntoABundleOfAnotherFormatThanThoseAskedFor) {
  makeBundle(source + "/A.vst3/Contents/Resources/B.clap");
  EXPECT_EQ(found(source, {PluginFormat::clap}), Lines{"clap A.vst3/Contents/Resources/B.clap"});
}

TEST(PluginSourceScanner, takesALinkToAFolderForABundleAndFollowsNoOtherLink) {
  makeBundle("/Users/me/elsewhere/A.vst3");
  scene::link(source + "/A.vst3", "../elsewhere/A.vst3");
  scene::link(source + "/elsewhere", "../elsewhere");
  scene::link(source + "/loop", ".");
  makeBundle(source + "/B.vst3");
  EXPECT_EQ(found(), (Lines{"vst3 A.vst3", "vst3 B.vst3"}));
}

TEST(PluginSourceScanner, findsNothingInASourceThatIsALink) {
  makeBundle("/Users/me/elsewhere/below/A.vst3");
  scene::link(source, "elsewhere");
  EXPECT_EQ(found(), Lines{});
  EXPECT_EQ(scanned().rootPath, source);
  EXPECT_EQ(found(source + "/below"), Lines{"vst3 A.vst3"}) << "a link on the way there is followed";
}

TEST(PluginSourceScanner, findsNothingInASourceThatIsABundleAFileOrMissing) {
  makeBundle("/Users/me/A.vst3");
  EXPECT_EQ(found("/Users/me/A.vst3"), Lines{});
  scene::write("/Users/me/file", "");
  EXPECT_EQ(found("/Users/me/file"), Lines{});
  EXPECT_EQ(found("/nowhere"), Lines{});
  EXPECT_EQ(scanned("/nowhere").rootPath, "/nowhere");
}

/// Somebody else ejects the image while it is searched.
TEST(PluginSourceScanner, takesAnImageThatIsDetachedMeanwhileForNoEmptyOne) {
  static const std::string volume = "/Volumes/Image";
  class Ejecting : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    void walk(const Path& item, Hidden hidden, WalkVisitor& visitor) const override {
      std::filesystem::remove_all(volume);
      FileSystemDecorator::walk(item, hidden, visitor);
    }
  };
  makeBundle(volume + "/A.vst3");
  doubles::FakeTools tools;
  tools.answers["/usr/bin/hdiutil attach "] = {
      .output =
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
          "<key>system-entities</key><array><dict><key>mount-point</key><string>" +
          volume + "</string></dict></array></dict></plist>\n"};
  tools.answers["/usr/bin/hdiutil detach "] = {};
  const auto scan = [&](const ReadOnlyPlatform& platform) {
    return PluginSourceScanner::scan(platform, Path("/Users/me/Image.dmg"), all).bundles.size();
  };
  EXPECT_EQ(scan(tools.platform()), 1u);
  Ejecting files(hostPlatform().files);
  Platform platform = replacing({.files = &files}, tools.platform());
  EXPECT_EQ(thrown([&] { scan(platform); }), "The source is no longer there: " + volume);
  EXPECT_EQ(tools.calls.size(), 4u) << "attached and detached, twice";
}

TEST(PluginSourceScanner, putsBundlesOfOneNameInTheOrderOfTheirPaths) {
  for (const std::string folder : {"c", "a", "b/d"}) makeBundle(source + "/" + folder + "/A.vst3");
  EXPECT_EQ(found(), (Lines{"vst3 a/A.vst3", "vst3 b/d/A.vst3", "vst3 c/A.vst3"}));
}

}  // namespace
}  // namespace quarn
