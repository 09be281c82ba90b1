#include <filesystem>

#include "Platform/HostPlatform.h"
#include "tests/move/Moving.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Places = std::vector<std::string>;

/// A volume of its own, pulled out in the end.
class Volume {
 public:
  explicit Volume(const std::string& size) { scene::plug("Small", size); }
  ~Volume() { scene::unplug("Small"); }
  Volume(const Volume&) = delete;
  Volume& operator=(const Volume&) = delete;
};
const std::string small = "/Volumes/Small";

void makeItem(const std::string& path, const std::string& inside = "Contents") {
  fs::remove_all(path);
  for (int i = 0; i < 6; ++i) scene::writeBytes(path + "/" + inside + "/" + std::to_string(i), 9000);
  scene::link(path + "/" + inside + "/Current", "0");
  scene::writeBytes(path + "/" + inside + "/deep/er/file", 9000);
}
// What it needs on a volume: folders, files and a link beside the top folder; and the pages of seven files.
constexpr int entriesNeeded = 13;
constexpr int kilobytesNeeded = 84;

/// A volume for any number of items that is too small for this one.
std::vector<std::string> tooFewEntries() {
  std::vector<std::string> sizes;
  for (int entries = 2; entries < entriesNeeded; ++entries) {
    sizes.push_back("8m,nr_inodes=" + std::to_string(entries));
  }
  return sizes;
}
std::vector<std::string> tooFewBytes() {
  std::vector<std::string> sizes;
  for (int kilobytes = 4; kilobytes < kilobytesNeeded; kilobytes += 8) {
    sizes.push_back(std::to_string(kilobytes) + "k");
  }
  return sizes;
}
std::vector<std::string> tooSmall() {
  std::vector<std::string> sizes = tooFewEntries();
  for (const std::string& size : tooFewBytes()) sizes.push_back(size);
  return sizes;
}

class FullDisk : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  }
};

TEST_F(FullDisk, onTheWayHomeLeavesTheWholeItemOnTheDriveAndNoPartAtHome) {
  for (const std::string& size : tooSmall()) {
    SCOPED_TRACE(size);
    const Volume internal(size);
    makeItem(movedApp);
    const std::string link = small + "/Foo.app";
    scene::link(link, movedApp);
    const NothingLost oracle(movedApp);
    EXPECT_EQ(restore(hostPlatform(), link),
              "You can’t save the file “Foo.app” because the volume “Small” is out of space.");
    EXPECT_EQ(oracle.wholeAt(), (Places{movedApp}));
    EXPECT_EQ(oracle.foreignChanges({}), "gone: " + link + "\n");
    EXPECT_EQ(restore(hostPlatform(), link),
              "The file “Foo.app” couldn’t be opened because there is no such file.");
    EXPECT_EQ(oracle.wholeAt(), (Places{movedApp}));
  }
}

TEST_F(FullDisk, thatHoldsTheItemAfterAllBringsItHome) {
  for (const std::string& size :
       {"8m,nr_inodes=" + std::to_string(entriesNeeded), std::to_string(kilobytesNeeded) + "k"}) {
    SCOPED_TRACE(size);
    const Volume internal(size);
    makeItem(movedApp);
    const std::string link = small + "/Foo.app";
    scene::link(link, movedApp);
    const NothingLost oracle(movedApp);
    EXPECT_EQ(restore(hostPlatform(), link), "nothing");
    EXPECT_EQ(oracle.wholeAt(), (Places{link}));
  }
}

TEST_F(FullDisk, onTheWayOutLeavesTheWholeSource) {
  for (const std::string& size : tooSmall()) {
    SCOPED_TRACE(size);
    const Volume drive(size);
    makeItem(app, ".contents");  // which the check of the free space leaves out
    const NothingLost oracle(app);
    const std::string told = move(hostPlatform(), app, small);
    EXPECT_TRUE(told.starts_with("Copy failed: ditto failed: ditto: ")) << told;
    EXPECT_NE(told.find("No space left on device"), std::string::npos) << told;
    EXPECT_EQ(oracle.wholeAt(), (Places{app}));
    EXPECT_EQ(oracle.foreignChanges({small}), "");
    // Where not even a folder for it can be made, what was copied stays in the way of the next attempt.
    if (scene::exists(small + "/Foo.app")) {
      EXPECT_EQ(move(hostPlatform(), app, small), "Destination already exists.");
    }
    EXPECT_EQ(oracle.wholeAt(), (Places{app}));
  }
}

TEST_F(FullDisk, duringTheCopyIsSetAsideWhereTheTrashStands) {
  const Volume drive("8m,nr_inodes=9");
  scene::makeFolder(scene::driveTrash(small));
  makeItem(app);
  const NothingLost oracle(app);
  EXPECT_TRUE(move(hostPlatform(), app, small).starts_with("Copy failed: ditto failed: ditto: "));
  EXPECT_FALSE(scene::exists(small + "/Foo.app"));
  EXPECT_TRUE(scene::exists(scene::driveTrash(small) + "/Foo.app/Contents"));
  EXPECT_EQ(oracle.wholeAt(), (Places{app}));
}

TEST_F(FullDisk, aDriveThatIsReadOnlyTakesNothing) {
  scene::plug("Small", "1m", true);
  makeItem(app);
  const NothingLost oracle(app);
  EXPECT_EQ(move(hostPlatform(), app, small + "/ExternalQuarn/Apps"),
            "You can’t save the file “ExternalQuarn” because the volume “Small” is read only.");
  EXPECT_EQ(oracle.wholeAt(), (Places{app}));
  scene::unplug("Small");
}

}  // namespace
}  // namespace quarn
