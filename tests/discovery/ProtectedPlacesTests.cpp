#include <filesystem>

#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "tests/support/Doubles.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

bool isProtected(const std::string& path, Platform& platform = hostPlatform()) {
  return ProtectedPlaces(platform).isOneOrAroundOne(sight(platform.files, Path(path)));
}

bool isOwn(const std::string& path, Platform& platform = hostPlatform()) {
  return ProtectedPlaces(platform).isInOwnFolder(sight(platform.files, Path(path)));
}

const std::string support = "/Users/me/Library/Application Support/Quarn";
const std::string tree = "/Volumes/X9/ExternalQuarn";

TEST(ProtectedPlaces, areTheFoldersOnWhichEverythingStandsAndWhatIsAroundThem) {
  for (const std::string path : {"/",
                                 "/Applications",
                                 "/Applications/Utilities",
                                 "/System/Applications",
                                 "/System",
                                 "/Users",
                                 "/Users/me",
                                 "/Users/me/Applications",
                                 "/Users/me/Library",
                                 "/Users/me/Library/Application Support",
                                 "/Users/me/Library/Application Support/Quarn",
                                 "/Volumes",
                                 "/Volumes/X9",
                                 "/Volumes/X9/ExternalQuarn",
                                 "/Volumes/X9/ExternalQuarn/Apps",
                                 "/Volumes/X9/ExternalQuarn/Data",
                                 "/Volumes/X9/ExternalQuarn/Folders",
                                 "/Volumes/X9/ExternalQuarn/InstallerCache",
                                 "/Volumes/X9/QuarnBackups",
                                 "/ExternalQuarn",
                                 "/QuarnBackups"}) {
    EXPECT_TRUE(isProtected(path)) << path;
  }
}

TEST(ProtectedPlaces, areNotWhatLiesInThemOrBesideThem) {
  for (const std::string path :
       {"/Applications/Foo.app", "/Applications/Foo.app/Contents", "/Application", "/Applications2",
        "/System/Library", "/Users/me2", "/Users/m", "/Users/me/Documents", "/Users/me/Library/Caches",
        "/Users/me/Library/Application Support/Quarn 2", "/Library", "/Volumes/X9/stuff",
        "/Volumes/X9/ExternalQuarn2", "/Volumes/X9/ExternalQuarn/Apps/Foo.app", "/Elsewhere/ExternalQuarn"}) {
    EXPECT_FALSE(isProtected(path)) << path;
  }
}

TEST(ProtectedPlaces, areKnownHoweverTheyAreSpelled) {
  for (const std::string path :
       {"//Users//me", "/Users/./me/", "/Users/me/Applications/..", "/Users/me/../me", "/Applications/.",
        "/Volumes//X9/", "/Volumes/X9/.//ExternalQuarn", "/."}) {
    EXPECT_TRUE(isProtected(path)) << path;
  }
}

TEST(ProtectedPlaces, areKnownByWhatALinkLeadsTo) {
  scene::makeFolder("/Users/me/Documents");
  scene::makeFolder(tree + "/Data");
  scene::link("/Users/me/to home", "/Users/me");
  scene::link("/Users/me/to users", "../../Users");
  scene::link("/Users/me/to drive", "/Volumes/X9");
  scene::link("/Users/me/to data", tree + "/Data");
  scene::link("/Users/me/to documents", "/Users/me/Documents");
  for (const std::string name : {"to home", "to users", "to users/me", "to drive", "to data",
                                 "to drive/ExternalQuarn", "to home/Library"}) {
    EXPECT_TRUE(isProtected("/Users/me/" + name)) << name;
  }
  EXPECT_FALSE(isProtected("/Users/me/to documents"));
  EXPECT_FALSE(isProtected("/Users/me/to home/Documents"));
}

TEST(ProtectedPlaces, areKnownWhereALinkLeadsThem) {
  std::filesystem::rename("/Users/me", "/Users/moved");
  scene::link("/Users/me", "/Users/moved");
  EXPECT_TRUE(isProtected("/Users/me"));
  EXPECT_TRUE(isProtected("/Users/moved"));
  EXPECT_TRUE(isProtected("/Users/moved/Library"));
  EXPECT_FALSE(isProtected("/Users/moved/Documents"));
}

TEST(ProtectedPlaces, areAlsoOnADriveThatIsNotMounted) {
  scene::makeFolder("/Volumes/Gone/ExternalQuarn/Data/x");
  for (const std::string path :
       {"/Volumes/Gone", "/Volumes/Gone/ExternalQuarn", "/Volumes/Gone/ExternalQuarn/Data", "/Volumes/Never",
        "/Volumes/Never/ExternalQuarn/Apps", "/Volumes/Never/QuarnBackups"}) {
    EXPECT_TRUE(isProtected(path)) << path;
  }
  EXPECT_FALSE(isProtected("/Volumes/Gone/ExternalQuarn/Data/x"));
  EXPECT_TRUE(isOwn("/Volumes/Gone/ExternalQuarn/Data/x"));
  EXPECT_TRUE(isOwn("/Volumes/Never/QuarnBackups/b"));
}

TEST(ProtectedPlaces, areKnownThroughALinkBeforeTheyExist) {
  scene::link("/Users/me/to home", "/Users/me");
  scene::makeFolder("/Volumes/Gone");
  scene::link("/Users/me/to gone", "/Volumes/Gone");
  const std::string throughLink = "/Users/me/to home/Library/Application Support/Quarn";
  EXPECT_FALSE(scene::exists(throughLink));
  EXPECT_TRUE(isProtected(throughLink));
  EXPECT_TRUE(isOwn(throughLink + "/health-manifest.json"));
  EXPECT_TRUE(isProtected("/Users/me/to gone/ExternalQuarn/Data"));
  EXPECT_TRUE(isOwn("/Users/me/to gone/ExternalQuarn/Data/x"));
}

TEST(ProtectedPlaces, areKnownWithoutTheListOfVolumes) {
  doubles::FakeVolumes volumes;
  volumes.listable = false;
  Platform platform = replacing({.volumes = &volumes});
  for (const std::string path : {"/", "/Users/me", "/Volumes/X9", "/Volumes/X9/ExternalQuarn"}) {
    EXPECT_TRUE(isProtected(path, platform)) << path;
  }
  EXPECT_TRUE(isOwn(tree + "/Data/x", platform));
}

TEST(ProtectedPlaces, areOnEveryVolumeWhereverItIsMounted) {
  doubles::FakeVolumes volumes;
  volumes.add("/Library/Mounted", {});
  Platform platform = replacing({.volumes = &volumes});
  for (const std::string path : {"/Library/Mounted", "/Library", "/Library/Mounted/ExternalQuarn"}) {
    EXPECT_TRUE(isProtected(path, platform)) << path;
  }
  EXPECT_TRUE(isOwn("/Library/Mounted/ExternalQuarn/Apps/x", platform));
}

TEST(ProtectedPlaces, areOneForEverySpellingOfALetter) {
  doubles::FakePlaces places(Path("/Users/Zoe\u0301"));
  Platform platform = replacing({.places = &places});
  EXPECT_TRUE(isProtected("/Users/Zo\u00E9", platform));
  EXPECT_TRUE(isProtected("/Users/Zo\u00E9/Library", platform));
  EXPECT_TRUE(isOwn("/Users/Zo\u00E9/Library/Application Support/Quarn/x", platform));
  EXPECT_FALSE(isProtected("/Users/Zoe", platform));
}

TEST(ProtectedPlaces, countLetterCaseInWhatDoesNotExist) {
  EXPECT_FALSE(isProtected("/users/me"));
  EXPECT_FALSE(isOwn("/volumes/X9/externalquarn/x"));
}

/// A volume on which the letter case of a name doesn't matter, and which tells paths as they were asked for.
class WithoutLetterCase : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  bool exists(const Path& path) const override { return FileSystemDecorator::exists(onDisk(path)); }
  Result<FileAttributes> attributes(const Path& path) const override {
    return FileSystemDecorator::attributes(onDisk(path));
  }

 private:
  static Path onDisk(const Path& path) {
    std::string text = path.text();
    for (const auto& [typed, real] : {std::pair<std::string, std::string>{"/users/ME", "/Users/me"},
                                      {"/users", "/Users"},
                                      {"/volumes/x9", "/Volumes/X9"},
                                      {"/volumes", "/Volumes"}}) {
      if (text.starts_with(typed)) return Path(real + text.substr(typed.size()));
    }
    return path;
  }
};

TEST(ProtectedPlaces, areKnownByTheDiskWhereLetterCaseDoesNotMatter) {
  scene::makeFolder(support + "/InstallerSessions");
  scene::makeFolder(tree + "/Data/x");
  scene::makeFolder("/Users/me/Documents");
  WithoutLetterCase files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  for (const std::string path : {"/users/ME", "/users", "/users/ME/Library", "/volumes/x9", "/volumes",
                                 "/volumes/x9/ExternalQuarn/Data"}) {
    EXPECT_TRUE(isProtected(path, platform)) << path;
  }
  EXPECT_TRUE(isOwn("/users/ME/Library/Application Support/Quarn/InstallerSessions", platform));
  EXPECT_TRUE(isOwn("/volumes/x9/ExternalQuarn/Data/x", platform));
  EXPECT_FALSE(isProtected("/users/ME/Documents", platform));
  EXPECT_FALSE(isOwn("/users/ME/Documents", platform));
}

TEST(ProtectedPlaces, ofThisToolHoldWhatLiesInThem) {
  scene::makeFolder(tree + "/Data/Library/Foo/inner");
  for (const std::string& path :
       {support, support + "/health-manifest.json", support + "/InstallerSessions/x", tree, tree + "/Data",
        tree + "/Data/Library/Foo", tree + "/Apps/Foo.app", tree + "/else",
        std::string("/Volumes/X9/QuarnBackups/b"), std::string("/ExternalQuarn/x")}) {
    EXPECT_TRUE(isOwn(path)) << path;
  }
  for (const std::string path :
       {"/", "/Users/me", "/Volumes/X9", "/Volumes/X9/stuff", "/Users/me/Library", "/Users/me/ExternalQuarn",
        "/Users/me/Library/Application Support/Quarn 2"}) {
    EXPECT_FALSE(isOwn(path)) << path;
  }
}

TEST(ProtectedPlaces, ofThisToolHoldWhatIsReachedThroughALinkButNotTheLink) {
  scene::makeFolder(tree + "/Data/Library/Foo/inner");
  scene::link("/Users/me/Library/Foo", tree + "/Data/Library/Foo");
  EXPECT_FALSE(isOwn("/Users/me/Library/Foo")) << "moved data stays the application's";
  EXPECT_TRUE(isOwn("/Users/me/Library/Foo/inner"));
  scene::link(tree + "/Data/back", "/Users/me/Documents");
  EXPECT_TRUE(isOwn(tree + "/Data/back"));
}

}  // namespace
}  // namespace quarn
