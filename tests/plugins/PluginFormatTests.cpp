#include <gtest/gtest.h>

#include "QuarnCore/plugins/PluginBundle.h"
#include "QuarnCore/plugins/PluginFormat.h"

namespace quarn {
namespace {

using Row = std::vector<std::string>;

TEST(PluginFormat, hasTheseTextsInThisOrder) {
  std::vector<Row> rows;
  for (const PluginFormat format : allCases<PluginFormat>()) {
    const PluginFormatRow& row = rowOf(format);
    rows.push_back({std::string(rawValue(format)), std::string(row.label), std::string(row.pathExtension),
                    std::string(row.systemDirectory)});
  }
  EXPECT_EQ(rows, (std::vector<Row>{
                      {"au", "AU", "component", "/Library/Audio/Plug-Ins/Components"},
                      {"vst3", "VST3", "vst3", "/Library/Audio/Plug-Ins/VST3"},
                      {"vst2", "VST2", "vst", "/Library/Audio/Plug-Ins/VST"},
                      {"clap", "CLAP", "clap", "/Library/Audio/Plug-Ins/CLAP"},
                      {"aax", "AAX", "aaxplugin", "/Library/Application Support/Avid/Audio/Plug-Ins"},
                  }));
}

TEST(PluginFormat, isKnownByItsExtensionInAnyLetterCase) {
  EXPECT_EQ(PluginFormats::fromExtension("component"), PluginFormat::au);
  EXPECT_EQ(PluginFormats::fromExtension("VST3"), PluginFormat::vst3);
  EXPECT_EQ(PluginFormats::fromExtension("Vst"), PluginFormat::vst2);
  EXPECT_EQ(PluginFormats::fromExtension("CLAP"), PluginFormat::clap);
  EXPECT_EQ(PluginFormats::fromExtension("aaxPlugin"), PluginFormat::aax);
  for (const std::string other : {"", "vst2", "au", "aax", "vst33", "vs", " vst", ".vst", "components"})
    EXPECT_EQ(PluginFormats::fromExtension(other), std::nullopt) << other;
}

TEST(PluginFormat, isToldByTheExtensionOfAPath) {
  EXPECT_EQ(PluginFormats::of(Path("/a/Foo.VST3")), PluginFormat::vst3);
  EXPECT_EQ(PluginFormats::of(Path("/a/Foo.vst/")), PluginFormat::vst2);
  EXPECT_EQ(PluginFormats::of(Path("/a/A \"b\" 1.2.clap")), PluginFormat::clap);
  for (const std::string other : {"/a/Foo", "/a.vst/Foo", "/a/.vst", "/a/Foo.vst Beta", "/a/Foo.vst.txt"})
    EXPECT_EQ(PluginFormats::of(Path(other)), std::nullopt) << other;
}

TEST(PluginFormat, sortsByItsTextAndThenByName) {
  EXPECT_TRUE(PluginFormats::precedes(PluginFormat::vst2, "z", PluginFormat::vst3, "a"));
  EXPECT_TRUE(PluginFormats::precedes(PluginFormat::aax, "z", PluginFormat::au, "a"));
  EXPECT_TRUE(PluginFormats::precedes(PluginFormat::au, "B", PluginFormat::au, "a"));
  EXPECT_TRUE(PluginFormats::precedes(PluginFormat::au, "z", PluginFormat::au, "\u00E9"));
  EXPECT_FALSE(PluginFormats::precedes(PluginFormat::au, "a", PluginFormat::au, "a"));
}

TEST(PluginBundle, knowsItsPlacesInTheSystemAndOnADrive) {
  const PluginBundle vst{.format = PluginFormat::vst2, .name = "A \"b\".vst", .sourcePath = "/s/A \"b\".vst"};
  EXPECT_EQ(vst.id(), "/s/A \"b\".vst");
  EXPECT_EQ(vst.systemSymlinkPath().text(), "/Library/Audio/Plug-Ins/VST/A \"b\".vst");
  EXPECT_EQ(vst.externalizedPath(Path("/Volumes/X9/")).text(),
            "/Volumes/X9/ExternalQuarn/Plugins/VST2/A \"b\".vst");
  EXPECT_EQ(vst.externalizedPath(Path("/")).text(), "/ExternalQuarn/Plugins/VST2/A \"b\".vst");
}

}  // namespace
}  // namespace quarn
