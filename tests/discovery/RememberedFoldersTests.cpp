#include <filesystem>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/RememberedFolders.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string caches = "/Users/me/Library/Caches";

/// Counts the questions that reach the disk.
class Counting : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  bool exists(const Path& path) const override {
    ++questions;
    return FileSystemDecorator::exists(path);
  }
  bool isDirectory(const Path& path) const override {
    ++questions;
    return FileSystemDecorator::isDirectory(path);
  }
  mutable int questions = 0;
};

struct RememberedFolder : testing::Test {
  Counting disk{hostPlatform().files};
  RememberedFolders files{disk};

  /// Asks for other names until the folder is listed, and forgets the count.
  void know(const std::string& folder) {
    for (const char* name : {"/one", "/two", "/three"}) files.exists(Path(folder + name));
    disk.questions = 0;
  }

  bool reachesTheDisk(const std::string& path) {
    const int before = disk.questions;
    files.exists(Path(path));
    return disk.questions > before;
  }
};

TEST_F(RememberedFolder, isAskedForAFewNamesBeforeItIsListed) {
  scene::makeFolder(caches);
  EXPECT_TRUE(reachesTheDisk(caches + "/a"));
  EXPECT_TRUE(reachesTheDisk(caches + "/b"));
  EXPECT_FALSE(reachesTheDisk(caches + "/c"));
  EXPECT_FALSE(reachesTheDisk(caches + "/a"));
}

TEST_F(RememberedFolder, answersAsTheDiskDoes) {
  scene::write(caches + "/file", "x");
  scene::makeFolder(caches + "/folder");
  scene::write(caches + "/.hidden", "x");
  scene::link(caches + "/dangling", "/nowhere");
  scene::link(caches + "/leading", "/Users/me");
  know(caches);
  for (const char* name : {"file", "folder", ".hidden", "dangling", "leading", "missing", ".", ".."}) {
    const Path path(caches + "/" + name);
    EXPECT_EQ(files.exists(path), hostPlatform().files.exists(path)) << name;
    EXPECT_EQ(files.isDirectory(path), hostPlatform().files.isDirectory(path)) << name;
  }
  EXPECT_TRUE(files.exists(Path("/")));
  EXPECT_FALSE(files.exists(Path("")));
}

TEST_F(RememberedFolder, leavesItToTheVolumeWhetherLetterCaseCounts) {
  scene::write(caches + "/Com.Example.FOO", "x");
  know(caches);
  EXPECT_TRUE(reachesTheDisk(caches + "/com.example.foo"));
  EXPECT_FALSE(reachesTheDisk(caches + "/com.example.bar"));
}

TEST_F(RememberedFolder, alwaysAsksTheDiskForNamesWithOtherLetters) {
  scene::makeFolder(caches);
  know(caches);
  EXPECT_TRUE(reachesTheDisk(caches + "/Caf\u00E9"));
  EXPECT_TRUE(reachesTheDisk(caches + "/Cafe\u0301"));
}

// On a Mac, "K" finds the item "\u212A", the sign of the kelvin.
TEST_F(RememberedFolder, thatHoldsNamesWithOtherLettersIsNotReliedOn) {
  scene::write(caches + "/\u212A", "x");
  know(caches);
  EXPECT_TRUE(reachesTheDisk(caches + "/K"));
}

TEST_F(RememberedFolder, thatIsMissingHoldsNothing) {
  know("/Users/me/Nowhere");
  EXPECT_FALSE(reachesTheDisk("/Users/me/Nowhere/a"));
}

TEST_F(RememberedFolder, thatIsALinkAnswersForWhatItLeadsTo) {
  scene::write("/Volumes/X9/Caches/there", "x");
  std::filesystem::remove_all(caches);
  scene::link(caches, "/Volumes/X9/Caches");
  know(caches);
  EXPECT_TRUE(files.exists(Path(caches + "/there")));
  EXPECT_FALSE(files.exists(Path(caches + "/not there")));
}

/// A folder that refuses to be listed, as the private ones of a Mac do, while its items can be looked at.
class Unlistable : public Counting {
 public:
  using Counting::Counting;
  Result<std::vector<std::string>> list(const Path&, Hidden) const override {
    return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadNoPermission, "refused");
  }
};

TEST(RememberedFolders, goOnAskingTheDiskWhereAListIsRefused) {
  scene::write(caches + "/there", "x");
  Unlistable disk(hostPlatform().files);
  RememberedFolders files(disk);
  for (int question = 1; question <= 5; ++question) {
    EXPECT_TRUE(files.exists(Path(caches + "/there")));
    EXPECT_FALSE(files.exists(Path(caches + "/missing")));
    EXPECT_EQ(disk.questions, 2 * question);
  }
}

}  // namespace
}  // namespace quarn
