#include <algorithm>
#include <filesystem>

#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "tests/support/Decorators.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

std::vector<std::string> roots(const std::vector<std::string>& extra = {},
                               Platform& platform = hostPlatform()) {
  std::vector<Path> places(extra.begin(), extra.end());
  std::vector<std::string> found;
  for (const Path& root : ExternalAppsRootsDiscovery::roots(platform, places)) found.push_back(root.text());
  return found;
}

using List = std::vector<std::string>;

TEST(ExternalAppsRootsDiscovery, aDriveWithoutTheTreeIsNoRoot) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Data");
  EXPECT_EQ(roots(), List{});
}

TEST(ExternalAppsRootsDiscovery, everyVolumeWithTheTreeIsARoot) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps");
  scene::makeFolder("/Volumes/Old Disk/ExternalQuarn/Apps");
  List found = roots();
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, (List{"/Volumes/Old Disk/ExternalQuarn/Apps", "/Volumes/X9/ExternalQuarn/Apps"}));
}

TEST(ExternalAppsRootsDiscovery, hiddenVolumesAndTheFormerRootAreNotSearched) {
  scene::makeFolder("/Volumes/.hidden/ExternalQuarn/Apps");
  scene::makeFolder("/Volumes/X9/Quarn/Apps");
  EXPECT_EQ(roots(), List{});
}

TEST(ExternalAppsRootsDiscovery, extraFoldersFollowInTheirOrderIfTheyExist) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps");
  scene::makeFolder("/Users/me/z");
  scene::makeFolder("/Users/me/a");
  EXPECT_EQ(roots({"/Users/me/z", "/Users/me/none", "/Users/me/a"}),
            (List{"/Volumes/X9/ExternalQuarn/Apps", "/Users/me/z", "/Users/me/a"}));
}

TEST(ExternalAppsRootsDiscovery, theSameFolderMayComeTwice) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps");
  const std::string root = "/Volumes/X9/ExternalQuarn/Apps";
  EXPECT_EQ(roots({root, root}), (List{root, root, root}));
}

TEST(ExternalAppsRootsDiscovery, withoutVolumesOnlyTheExtraFoldersAreLeft) {
  class NoVolumes : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    Result<std::vector<std::string>> list(const Path&, Hidden) const override {
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadNoSuchFile, "none");
    }
  } files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps");
  EXPECT_EQ(roots({}, platform), List{});
  EXPECT_EQ(roots({"/Applications"}, platform), (List{"/Applications"}));
}

}  // namespace
}  // namespace quarn
