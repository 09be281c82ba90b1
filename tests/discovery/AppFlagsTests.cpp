#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const Path bundle("/Applications/Foo.app");
const std::string contents = "/Applications/Foo.app/Contents/";

TEST(AppFlags, aBareBundleHasNone) {
  scene::makeApp(bundle.text());
  EXPECT_FALSE(AppFlags::isMacAppStore(hostPlatform(), bundle));
  EXPECT_FALSE(AppFlags::hasLoginItems(hostPlatform(), bundle));
  EXPECT_FALSE(AppFlags::hasSystemExtension(hostPlatform(), bundle));
}

TEST(AppFlags, aReceiptMakesAStoreApplication) {
  scene::makeFolder(contents + "_MASReceipt");
  EXPECT_FALSE(AppFlags::isMacAppStore(hostPlatform(), bundle));
  scene::write(contents + "_MASReceipt/receipt", "");
  EXPECT_TRUE(AppFlags::isMacAppStore(hostPlatform(), bundle));
}

TEST(AppFlags, loginItemsNeedContents) {
  scene::makeFolder(contents + "Library/LoginItems");
  EXPECT_FALSE(AppFlags::hasLoginItems(hostPlatform(), bundle));
  scene::makeFolder(contents + "Library/LoginItems/Helper.app");
  EXPECT_TRUE(AppFlags::hasLoginItems(hostPlatform(), bundle));
}

TEST(AppFlags, aHiddenNameIsContents) {
  scene::write(contents + "Library/LoginItems/.keep", "");
  EXPECT_TRUE(AppFlags::hasLoginItems(hostPlatform(), bundle));
}

TEST(AppFlags, aFileInPlaceOfTheFolderHasNoContents) {
  scene::write(contents + "Library/LoginItems", "x");
  EXPECT_FALSE(AppFlags::hasLoginItems(hostPlatform(), bundle));
}

TEST(AppFlags, eitherFolderOfExtensionsCounts) {
  scene::makeFolder(contents + "Library/SystemExtensions");
  scene::makeFolder(contents + "Library/Extensions");
  EXPECT_FALSE(AppFlags::hasSystemExtension(hostPlatform(), bundle));
  scene::makeFolder(contents + "Library/Extensions/old.kext");
  EXPECT_TRUE(AppFlags::hasSystemExtension(hostPlatform(), bundle));
}

TEST(AppFlags, aSystemExtensionAloneCounts) {
  scene::makeFolder(contents + "Library/SystemExtensions/x.systemextension");
  EXPECT_TRUE(AppFlags::hasSystemExtension(hostPlatform(), bundle));
}

TEST(AppFlags, areReadThroughALinkToTheBundle) {
  scene::write(contents + "_MASReceipt/receipt", "");
  scene::makeFolder(contents + "Library/LoginItems/Helper.app");
  scene::makeFolder(contents + "Library/SystemExtensions/x");
  scene::link("/Users/me/Link.app", bundle.text());
  const Path link("/Users/me/Link.app");
  EXPECT_TRUE(AppFlags::isMacAppStore(hostPlatform(), link));
  EXPECT_TRUE(AppFlags::hasLoginItems(hostPlatform(), link));
  EXPECT_TRUE(AppFlags::hasSystemExtension(hostPlatform(), link));
}

TEST(AppFlags, aMissingBundleHasNone) {
  EXPECT_FALSE(AppFlags::isMacAppStore(hostPlatform(), Path("/Applications/None.app")));
  EXPECT_FALSE(AppFlags::hasLoginItems(hostPlatform(), Path("/Applications/None.app")));
  EXPECT_FALSE(AppFlags::hasSystemExtension(hostPlatform(), Path("/Applications/None.app")));
}

}  // namespace
}  // namespace quarn
