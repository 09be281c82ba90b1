#include <filesystem>
#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/DiskImageMounter.h"
#include "QuarnCore/installer/ZipExpander.h"
#include "tests/support/Scene.h"

/// Images and archives that ordinary tools made, with the tools that the room has for a Mac's.

namespace quarn {
namespace {

Path expanded(Platform& platform, const Path& archive) {
  TemporaryFolders temporaryFolders(platform);
  return ZipExpander::expand(platform, temporaryFolders, archive);
}

namespace fs = std::filesystem;

void orders(const std::string& tool, const std::string& text) {
  scene::write("/var/db/quarn-room-tools/" + tool, text);
}

/// An image of a folder, made by bsdtar(1); its path.
Path imageOf(const std::string& folder, const std::string& name = "An image.iso") {
  const std::string image = "/tmp/" + name;
  const auto made = scene::run({"/usr/bin/bsdtar", "--format", "iso9660", "-cf", image, "-C", folder, "."});
  if (made.status != 0) scene::fail("can't make an image: " + made.err);
  return Path(image);
}

std::string errorOf(const std::function<void()>& attempt) {
  try {
    attempt();
  } catch (const LocalizedError& error) {
    return error.what();
  }
  return "nothing";
}

class RealImage : public testing::Test {
 protected:
  void SetUp() override {
    if (!fs::exists("/usr/bin/bsdtar")) GTEST_SKIP() << "there is no bsdtar";
    scene::makeApp("/tmp/content/Foo.app");
    scene::write("/tmp/content/Read me.txt", "read me");
  }
};

TEST_F(RealImage, isMountedReadOnlyAndDetached) {
  const auto mount = DiskImageMounter::attach(hostPlatform(), imageOf("/tmp/content"));
  ASSERT_EQ(mount.mountPoints.size(), 1u);
  const std::string volume = mount.mountPoints[0].text();
  EXPECT_TRUE(volume.starts_with("/Volumes/")) << volume;
  EXPECT_TRUE(fs::exists(volume + "/Foo.app/Contents/Info.plist"));
  EXPECT_NE(scene::run({"/usr/bin/touch", volume + "/new"}).status, 0);
  DiskImageMounter::detach(hostPlatform(), mount);
  EXPECT_FALSE(fs::exists(volume));
}

TEST_F(RealImage, ofEachShapeAndOrderIsUnderstood) {
  const Path image = imageOf("/tmp/content");
  for (const std::string shape : {"hfs", "hfs-old-map", "efi", "apfs", "apfs-no-map"}) {
    for (const std::string order : {"mounted-first", "device", "reversed"}) {
      orders("hdiutil", "warn-deprecated\nshape " + shape + "\norder " + order + "\n");
      const auto mount = DiskImageMounter::attach(hostPlatform(), image);
      ASSERT_EQ(mount.mountPoints.size(), 1u) << shape << " " << order;
      EXPECT_TRUE(fs::exists(mount.mountPoints[0].text() + "/Foo.app")) << shape << " " << order;
      DiskImageMounter::detach(hostPlatform(), mount);
      EXPECT_FALSE(fs::exists(mount.mountPoints[0].text())) << shape << " " << order;
    }
  }
}

TEST_F(RealImage, thatIsBusyByItsMountPointIsDetachedByItsDevice) {
  const auto mount = DiskImageMounter::attach(hostPlatform(), imageOf("/tmp/content"));
  orders("hdiutil", "busy unmount\n");
  DiskImageMounter::detach(hostPlatform(), mount);
  EXPECT_FALSE(fs::exists(mount.mountPoints[0].text()));
}

TEST_F(RealImage, ofSeveralVolumesOrOfNoneIsUnderstood) {
  fs::remove_all("/tmp/content");
  for (int i = 0; i < 20; ++i) scene::write("/tmp/content/Volume " + std::to_string(i) + "/file", "content");
  const Path image = imageOf("/tmp/content");
  orders("hdiutil", "volumes\n");
  const auto many = DiskImageMounter::attach(hostPlatform(), image);
  EXPECT_EQ(many.mountPoints.size(), 20u);
  DiskImageMounter::detach(hostPlatform(), many);
  orders("hdiutil", "mounts-nothing\n");
  const auto none = DiskImageMounter::attach(hostPlatform(), image);
  EXPECT_EQ(none.mountPoints.size(), 0u);
  EXPECT_FALSE(none.devicePaths.empty());
  DiskImageMounter::detach(hostPlatform(), none);
}

TEST_F(RealImage, thatIsNoneIsRefusedInTheToolsWords) {
  scene::write("/tmp/no image.dmg", "not an image");
  EXPECT_NE(errorOf([] {
              DiskImageMounter::attach(hostPlatform(), Path("/tmp/no image.dmg"));
            }).find("hdiutil: attach failed - "),
            std::string::npos);
}

/// A zip archive of a folder; its path.
Path zipOf(const std::string& folder, const std::string& name = "An archive.zip") {
  const std::string zip = "/tmp/" + name;
  const auto made = scene::run({"/usr/bin/bsdtar", "--format", "zip", "-cf", zip, "-C", folder, "."});
  if (made.status != 0) scene::fail("can't make an archive: " + made.err);
  return Path(zip);
}

TEST_F(RealImage, asAnArchiveIsExpandedWhole) {
  scene::write("/tmp/content/__MACOSX/._Foo.app", "resource fork");
  scene::link("/tmp/content/out", "/Users/me");
  const Path folder = expanded(hostPlatform(), zipOf("/tmp/content"));
  EXPECT_TRUE(folder.lastComponent().starts_with("QuarnZip-"));
  EXPECT_TRUE(fs::exists(folder.text() + "/Foo.app/Contents/Info.plist"));
  EXPECT_FALSE(fs::exists(folder.text() + "/__MACOSX"));
  EXPECT_EQ(scene::target(folder.text() + "/out"), "/Users/me")
      << "a link that leads out is harmless by itself";
  EXPECT_EQ(fs::exists("/Users/me/Foo.app"), false);
}

TEST_F(RealImage, asATruncatedArchiveIsSetAside) {
  const Path whole = zipOf("/tmp/content");
  const std::string bytes = scene::read(whole.text());
  scene::write("/tmp/cut.zip", bytes.substr(0, bytes.size() / 2));
  EXPECT_NE(errorOf([] { expanded(hostPlatform(), Path("/tmp/cut.zip")); }), "nothing");
  for (const auto& item : fs::directory_iterator("/tmp"))
    EXPECT_FALSE(item.path().filename().string().starts_with("QuarnZip-")) << item.path();
}

}  // namespace
}  // namespace quarn
