#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/installer/InstallerInspector.h"
#include "tests/support/FakeTools.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Packages.h"
#include "tests/support/Scene.h"

/// Every source is made by ordinary tools, and looked into with the tools that the room has for a Mac's.

namespace quarn {
namespace {

using Texts = std::vector<std::string>;

InstallerInspection inspected(const std::string& given, Platform& platform = hostPlatform()) {
  TemporaryFolders temporaryFolders(platform);
  return InstallerInspector::inspect(platform, temporaryFolders, InstallerSource::of(platform.places, given));
}

/// "kind label" of each item, in their order.
Texts itemsOf(const InstallerInspection& inspection) {
  Texts texts;
  for (const InstallableItem& item : inspection.items) {
    EXPECT_EQ(item.id, item.path);
    EXPECT_TRUE(item.path.ends_with("/" + item.label)) << item.path;
    texts.push_back(std::string(rawValue(item.kind)) + " " + item.label);
  }
  return texts;
}

void orders(const std::string& tool, const std::string& text) {
  scene::write("/var/db/quarn-room-tools/" + tool, text);
}

void archive(const std::vector<std::string>& command) {
  const auto made = scene::run(command);
  if (made.status != 0) scene::fail("can't make an archive: " + made.err);
}

std::string imageOf(const std::string& folder, const std::string& image = "/Users/me/Image.dmg") {
  archive({"/usr/bin/bsdtar", "--format", "iso9660", "-cf", image, "-C", folder, "."});
  return image;
}

std::string zipOf(const std::string& folder, const std::string& zip = "/Users/me/Archive.zip") {
  archive({"/usr/bin/bsdtar", "--format", "zip", "-cf", zip, "-C", folder, "."});
  return zip;
}

std::size_t countIn(const std::string& folder) {
  if (!scene::exists(folder)) return 0;
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

class Inspecting : public testing::Test {
 protected:
  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
    scene::makeFolder("/Users/me/tmp");
    scene::makeFolder("/Users/me/content");
    ::setenv("TMPDIR", "/Users/me/tmp", 1);
  }
};

TEST_F(Inspecting, anApplicationIsItsOwnItem) {
  scene::makeApp("/Users/me/Foo.app");
  const auto inspection = inspected("/Users/me/Foo.app");
  EXPECT_EQ(inspection.sourcePath, "/Users/me/Foo.app");
  EXPECT_EQ(inspection.kind, InstallerKind::app);
  EXPECT_EQ(itemsOf(inspection), Texts{"app Foo.app"});
  EXPECT_EQ(inspection.items[0].path, "/Users/me/Foo.app");
  EXPECT_GE(inspection.items[0].sizeBytes, 40'000);
  EXPECT_EQ(inspection.warnings, Texts{});
  EXPECT_EQ(inspection.trust, (TrustSummary{.status = "app-bundle", .details = {}}));
}

TEST_F(Inspecting, anApplicationWithASystemExtensionIsWarnedOf) {
  scene::makeApp("/Users/me/Foo.app");
  scene::makeFolder("/Users/me/Foo.app/Contents/Library/SystemExtensions/x.systemextension");
  EXPECT_EQ(inspected("/Users/me/Foo.app").warnings,
            Texts{"App has system extensions; externalizing may break it."});
}

TEST_F(Inspecting, aMissingApplicationIsAnItemOfNoSize) {
  const auto inspection = inspected("/Users/me/None.app");
  EXPECT_EQ(itemsOf(inspection), Texts{"app None.app"});
  EXPECT_EQ(inspection.items[0].sizeBytes, 0);
  EXPECT_EQ(inspection.warnings, Texts{});
  EXPECT_EQ(inspection.trust.status, "app-bundle");
}

TEST_F(Inspecting, aRelativePathIsRepeatedAsItWasGiven) {
  scene::makeApp("/Users/me/Foo.app");
  std::filesystem::current_path("/Users/me");
  const auto inspection = inspected("./Foo.app/");
  EXPECT_EQ(inspection.sourcePath, "./Foo.app/");
  EXPECT_TRUE(inspection.items[0].path.starts_with("/Users/me/")) << inspection.items[0].path;
  EXPECT_GE(inspection.items[0].sizeBytes, 40'000);
}

TEST_F(Inspecting, anImageHoldsItsApplicationsAndPackages) {
  scene::makeApp("/Users/me/content/Sub/Foo.app");
  scene::makeApp("/Users/me/content/Sub/Foo.app/Contents/Helpers/Inner.app");
  scene::write("/Users/me/content/A.pkg", "x");
  scene::write("/Users/me/content/Meta.mpkg", "x");
  scene::write("/Users/me/content/Read me.txt", "x");
  scene::write("/Users/me/content/run", "#!/bin/sh\n");
  const auto inspection = inspected(imageOf("/Users/me/content"));
  EXPECT_EQ(inspection.kind, InstallerKind::dmg);
  EXPECT_EQ(itemsOf(inspection), (Texts{"pkg A.pkg", "mpkg Meta.mpkg", "app Foo.app"}))
      << "sorted by path, and nothing inside another item";
  EXPECT_TRUE(inspection.items[0].path.starts_with("/Volumes/"));
  EXPECT_EQ(inspection.warnings, Texts{});
  EXPECT_EQ(inspection.trust, (TrustSummary{.status = "disk-image", .details = {}}));
  EXPECT_FALSE(scene::exists(inspection.items[0].path)) << "detached";
}

TEST_F(Inspecting, aLinkIsNoItem) {
  scene::link("/Users/me/content/Home.app", "/Users/me");
  scene::link("/Users/me/content/Other.pkg", "/");
  scene::makeApp("/Users/me/content/Foo.app");
  EXPECT_EQ(itemsOf(inspected(zipOf("/Users/me/content"))), Texts{"app Foo.app"});
}

TEST_F(Inspecting, anImageThatIsDetachedMeanwhileIsNoEmptyOne) {
  scene::makeApp("/Users/me/content/Foo.app");
  scene::replaceTool("/usr/bin/hdiutil",
                     "#!/bin/sh\n/usr/libexec/quarn-room/hdiutil \"$@\"\n"
                     "[ $1 != attach ] || /usr/libexec/quarn-room/hdiutil detach /Volumes/CDROM -quiet\n");
  const auto inspection = inspected(imageOf("/Users/me/content"));
  EXPECT_EQ(inspection.trust.status, "inspect-failed");
  EXPECT_EQ(inspection.warnings, Texts{"The folder “CDROM” doesn’t exist."});
}

TEST_F(Inspecting, whatIsHiddenInAnImageIsNoItem) {
  scene::write("/Users/me/content/.hidden/A.pkg", "x");
  scene::write("/Users/me/content/.B.pkg", "x");
  EXPECT_EQ(inspected(imageOf("/Users/me/content")).warnings, Texts{"No .app or .pkg found."});
}

TEST_F(Inspecting, anImageOfOtherSourcesHasNoItems) {
  for (const char* name : {"a.dmg", "a.zip", "a.sh"}) {
    std::filesystem::remove_all("/Users/me/content");
    scene::write("/Users/me/content/" + std::string(name), "#!/bin/sh\n");
    const auto inspection = inspected(imageOf("/Users/me/content"));
    EXPECT_EQ(itemsOf(inspection), Texts{}) << name;
    EXPECT_EQ(inspection.warnings, Texts{"No .app or .pkg found."}) << name;
    EXPECT_EQ(inspection.trust.status, "disk-image");
  }
}

TEST_F(Inspecting, theItemsOfEachVolumeAreSortedByThemselves) {
  orders("hdiutil", "volumes\norder reversed\n");
  scene::write("/Users/me/content/Aaa/Zed.pkg", "x");
  scene::write("/Users/me/content/Aaa/Alpha.pkg", "x");
  scene::write("/Users/me/content/Bbb/Yak.pkg", "x");
  scene::write("/Users/me/content/Bbb/Beta.pkg", "x");
  const Texts oneOrder = {"pkg Alpha.pkg", "pkg Zed.pkg", "pkg Beta.pkg", "pkg Yak.pkg"};
  const Texts theOther = {"pkg Beta.pkg", "pkg Yak.pkg", "pkg Alpha.pkg", "pkg Zed.pkg"};
  const Texts reversed = itemsOf(inspected(imageOf("/Users/me/content")));
  orders("hdiutil", "volumes\norder mounted-first\n");
  const Texts mountedFirst = itemsOf(inspected(imageOf("/Users/me/content")));
  EXPECT_TRUE(reversed == oneOrder || reversed == theOther) << testing::PrintToString(reversed);
  EXPECT_TRUE(mountedFirst == oneOrder || mountedFirst == theOther) << testing::PrintToString(mountedFirst);
}

TEST_F(Inspecting, anImageThatCannotBeAttachedIsAWarning) {
  scene::write("/Users/me/Broken.dmg", "no image");
  orders("hdiutil", "fail 1 hdiutil: attach failed - image not recognized\n");
  const auto inspection = inspected("/Users/me/Broken.dmg");
  EXPECT_EQ(inspection.kind, InstallerKind::dmg);
  EXPECT_EQ(itemsOf(inspection), Texts{});
  EXPECT_EQ(inspection.warnings, Texts{"hdiutil: attach failed - image not recognized\n"});
  EXPECT_EQ(inspection.trust.status, "inspect-failed");
}

TEST_F(Inspecting, anArchiveIsExpandedAndSetAside) {
  scene::makeApp("/Users/me/content/Foo.app");
  const auto inspection = inspected(zipOf("/Users/me/content"));
  EXPECT_EQ(inspection.kind, InstallerKind::zip);
  EXPECT_EQ(itemsOf(inspection), Texts{"app Foo.app"});
  EXPECT_EQ(inspection.trust, (TrustSummary{.status = "zip-archive", .details = {}}));
  EXPECT_EQ(countIn("/Users/me/tmp"), 0u);
  EXPECT_EQ(countIn("/Users/me/.Trash"), 1u);
}

TEST_F(Inspecting, anArchiveOfDocumentsHasNoItems) {
  scene::write("/Users/me/content/Read me.txt", "x");
  const auto inspection = inspected(zipOf("/Users/me/content"));
  EXPECT_EQ(inspection.warnings, Texts{"No .app or .pkg found."});
  EXPECT_EQ(inspection.trust.status, "zip-archive");
}

TEST_F(Inspecting, whatTheFinderAddsToAnArchiveIsNoSecondApplication) {
  scene::makeApp("/Users/me/content/Foo.app");
  scene::write("/Users/me/content/__MACOSX/Foo.app/Contents/._Info.plist", "x");
  EXPECT_EQ(itemsOf(inspected(zipOf("/Users/me/content"))), Texts{"app Foo.app"});
}

TEST_F(Inspecting, anArchiveThatIsCutIsAWarningAndLeavesNothing) {
  scene::makeApp("/Users/me/content/Foo.app");
  const std::string whole = scene::read(zipOf("/Users/me/content"));
  scene::write("/Users/me/Cut.zip", whole.substr(0, whole.size() / 2));
  const auto inspection = inspected("/Users/me/Cut.zip");
  EXPECT_EQ(inspection.trust.status, "inspect-failed");
  ASSERT_EQ(inspection.warnings.size(), 1u);
  EXPECT_NE(inspection.warnings[0], "");
  EXPECT_EQ(countIn("/Users/me/tmp"), 0u);
}

TEST_F(Inspecting, aMissingToolIsAWarning) {
  doubles::FakeTools none;
  for (const char* source : {"/Users/me/a.dmg", "/Users/me/a.zip"}) {
    const auto inspection = inspected(source, none.platform());
    EXPECT_EQ(inspection.trust.status, "inspect-failed") << source;
    EXPECT_EQ(inspection.warnings.size(), 1u) << source;
  }
}

TEST_F(Inspecting, anArchiveWithoutRoomForItsFolderIsAWarning) {
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("createFolder"))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  const auto inspection = inspected("/Users/me/a.zip", gated.platform());
  EXPECT_EQ(inspection.warnings, Texts{"It is full."});
  EXPECT_EQ(inspection.trust.status, "inspect-failed");
}

TEST_F(Inspecting, ofAPackageTellsItsSignatureItsScriptsAndItsPrivilegedFiles) {
  scene::write("/Users/me/payload/Applications/Foo.app/Contents/Info.plist", "x");
  scene::write("/Users/me/scripts/postinstall", "#!/bin/sh\n");
  packages::component("/Users/me/Plain.pkg", {.payload = "/Users/me/payload"});
  packages::component("/Users/me/Scripts.pkg",
                      {.payload = "/Users/me/payload", .scripts = "/Users/me/scripts"});
  packages::sign("/Users/me/Scripts.pkg");

  auto inspection = inspected("/Users/me/Plain.pkg");
  EXPECT_EQ(inspection.kind, InstallerKind::pkg);
  EXPECT_EQ(itemsOf(inspection), Texts{"pkg Plain.pkg"});
  EXPECT_EQ(inspection.warnings, Texts{"Package signature is not trusted."});
  EXPECT_EQ(inspection.trust.status, "untrusted");

  inspection = inspected("/Users/me/Scripts.pkg");
  EXPECT_EQ(inspection.warnings, Texts{"Package contains install scripts."});
  EXPECT_EQ(inspection.trust.status, "trusted");
  EXPECT_TRUE(inspection.trust.hasScripts);
}

TEST(PackageWarnings, comeInTheirOrder) {
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil --check-signature"] = {.status = 1, .output = "   Status: no signature\n"};
  tools.answers["/usr/bin/xar -tf"] = {.output = "Scripts\nLibrary/LaunchDaemons/x\n"};
  const auto inspection = inspected("/Users/me/Meta.mpkg", tools.platform());
  EXPECT_EQ(inspection.kind, InstallerKind::mpkg);
  EXPECT_EQ(itemsOf(inspection), Texts{"mpkg Meta.mpkg"});
  EXPECT_EQ(inspection.warnings,
            (Texts{"Package signature is not trusted.", "Package contains install scripts.",
                   "Package may install privileged files."}));
}

TEST_F(Inspecting, aScriptIsAlwaysWarnedOf) {
  scene::write("/Users/me/a.sh", "#!/bin/sh\necho\n");
  auto inspection = inspected("/Users/me/a.sh");
  EXPECT_EQ(inspection.kind, InstallerKind::script);
  EXPECT_EQ(itemsOf(inspection), Texts{"script a.sh"});
  EXPECT_EQ(inspection.warnings, Texts{"Shell script — runs arbitrary code with sudo."});
  EXPECT_EQ(inspection.trust.status, "untrusted-script");
  scene::write("/Users/me/a.sh", "#!/bin/sh\ncp -R x /Applications/\n");
  EXPECT_EQ(inspected("/Users/me/a.sh").warnings,
            (Texts{"Shell script — runs arbitrary code with sudo.",
                   "Script references system paths (/Applications, /Library, ~)."}));
}

TEST_F(Inspecting, everythingElseIsUnsupported) {
  scene::write("/Users/me/a.txt", "x");
  for (const char* source : {"/Users/me/a.txt", "/Users/me/content", "/Users/me/none", "/"}) {
    const auto inspection = inspected(source);
    EXPECT_EQ(inspection.kind, InstallerKind::unknown) << source;
    EXPECT_EQ(inspection.warnings, Texts{"Unsupported source type."}) << source;
    EXPECT_EQ(inspection.trust, (TrustSummary{.status = "unsupported", .details = {}})) << source;
    EXPECT_EQ(itemsOf(inspection), Texts{}) << source;
  }
}

TEST_F(Inspecting, changesNothingButItsOwnFolder) {
  scene::makeApp("/Users/me/content/Foo.app");
  const std::string zip = zipOf("/Users/me/content");
  const auto before = scene::tree("/Users/me/content");
  Texts changes;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (!operation.starts_with("start ")) changes.push_back(operation.substr(0, operation.find("QuarnZip-")));
    return {};
  });
  inspected(zip, gated.platform());
  EXPECT_EQ(changes, (Texts{"createFolder /Users/me/tmp/", "trash /Users/me/tmp/"}));
  EXPECT_EQ(scene::tree("/Users/me/content"), before);
}

}  // namespace
}  // namespace quarn
