#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "QuarnCore/foundation/Sighting.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

/// Why an item can't be looked at; "nothing" if it can.
std::string failureOf(const std::string& item, const FileSystem& files = hostPlatform().files) {
  return thrown([&] { sight(files, Path(item)).orThrow(); });
}

TEST(Sightings, ofWhatIsMissingAreSure) {
  scene::write("/Users/me/file", "x");
  scene::link("/Users/me/dangling", "/nowhere");
  scene::link("/Users/me/loop", "/Users/me/loop");
  for (const std::string& item : {std::string("/Users/me/none/deeper"), std::string("/Users/me/dangling"),
                                  std::string("/Users/me/loop"), std::string("/Users/me/file/below/it"),
                                  std::string("/Users/me/loop/below/it"), std::string("/Users/me/dangling/x"),
                                  "/Users/me/" + std::string(300, 'n'), std::string("/")}) {
    EXPECT_EQ(failureOf(item), "nothing") << item;
  }
}

TEST(Sightings, throughAFolderThatMayNotBeSearchedAreNot) {
  scene::makeFolder("/Users/me/closed/inside");
  scene::link("/Users/me/link", "/Users/me/closed/inside");
  ::chmod("/Users/me/closed", 0);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(failureOf("/Users/me/closed/inside/x"),
                        "“x” can’t be looked at: The file “x” couldn’t be opened because you don’t have "
                        "permission to view it.");
              EXPECT_EQ(failureOf("/Users/me/link").substr(0, 40),
                        std::string("“link” can’t be looked at: The file “link”").substr(0, 40));
              EXPECT_EQ(failureOf("/Users/me/closed"), "nothing");
            }),
            "");
  ::chmod("/Users/me/closed", 0700);
}

TEST(Sightings, whoseRealPathIsTooLongAreNot) {
  const std::string far = makeFarFolder("/Users/me/tree", "/Users/me/half");
  const std::string name(200, 'd');
  const std::string sentence = "” can’t be looked at: The file “" + name + "” couldn’t be opened.";
  EXPECT_EQ(failureOf(far), "“" + name + sentence);
  EXPECT_EQ(failureOf(far + "/none"), "“none" + sentence);
  EXPECT_EQ(failureOf("/Users/me/half"), "nothing");
}

/// Counts the looks and the bytes of their paths. Every look at one item fails, or its n-th.
class Watching : public FileSystemDecorator {
 public:
  explicit Watching(std::string item = "", int nth = 0)
      : FileSystemDecorator(hostPlatform().files), item_(std::move(item)), nth_(nth) {}

  bool exists(const Path& path) const override { return !fails(path) && FileSystemDecorator::exists(path); }
  bool isFolder(const Path& path) const override {
    return !fails(path) && FileSystemDecorator::isFolder(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (fails(path)) return failure();
    return FileSystemDecorator::attributes(path);
  }
  Result<Path> realPath(const Path& path) const override {
    if (fails(path)) return failure();
    return FileSystemDecorator::realPath(path);
  }

  mutable std::size_t looks = 0, bytes = 0;

 private:
  bool fails(const Path& path) const {
    ++looks;
    bytes += path.text().size();
    if (path.text() != item_) return false;
    return ++looksAtItem_ == nth_ || nth_ == 0;
  }
  static PlatformError failure() {
    return {cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, Unresolving::sentence};
  }

  const std::string item_;
  const int nth_;
  mutable int looksAtItem_ = 0;
};

TEST(Sightings, ofAPathOfAnyLengthTakeFewLooks) {
  scene::makeFolder("/Users/me/a/a");
  std::string longest = "/Users/me";
  while (longest.size() < 4'000'000) longest += "/a";
  const Watching files;
  const Sighting sighting = sight(files, Path(longest));
  EXPECT_FALSE(sighting.exists);
  EXPECT_EQ(sighting.leadsTo.text(), longest);
  EXPECT_LT(files.looks, 100u);
  EXPECT_LT(files.bytes, 30 * longest.size()) << "a number of times that grows with its logarithm";
}

/// An item that exists, what isn't there, and what lies below an item that can't be looked at.
TEST(Sightings, areNeverSureOfWhatIsThereThoughALookFails) {
  scene::write("/Users/me/folder/file", "x");
  scene::link("/Users/me/link", "/Users/me/folder");
  for (const std::string& item : {std::string("/Users/me/folder/file"), std::string("/Users/me/link/file")}) {
    for (const std::string& failing : {std::string("/Users/me"), std::string("/Users/me/folder"), item}) {
      for (int nth = 0; nth < 8; ++nth) {
        const Watching files(failing, nth);
        const Sighting sighting = sight(files, Path(item));
        EXPECT_TRUE(sighting.failure || sighting.exists) << item << " " << failing << " " << nth;
        EXPECT_TRUE(sighting.failure || sighting.leadsTo == Path("/Users/me/folder/file"))
            << item << " " << failing << " " << nth;
      }
    }
  }
}

TEST(Sightings, areNotSureOfWhatLiesBelowAnItemThatCannotBeLookedAt) {
  /// An item can't be looked at, nor can it be seen whether what it is in is a folder.
  class Fading : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    bool exists(const Path& path) const override {
      return path != Path("/Users/me/folder/file") && FileSystemDecorator::exists(path);
    }
    bool isFolder(const Path& path) const override {
      return path != Path("/Users/me/folder") && FileSystemDecorator::isFolder(path);
    }
    Result<FileAttributes> attributes(const Path& path) const override {
      if (path == Path("/Users/me/folder/file"))
        return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, Unresolving::sentence);
      return FileSystemDecorator::attributes(path);
    }
  };
  scene::write("/Users/me/folder/file", "x");
  const Fading files(hostPlatform().files);
  EXPECT_EQ(failureOf("/Users/me/folder/file", files), Unresolving::of("file"));
}

TEST(Sightings, ofALinkItselfAreAsSureAsThoseOfItsFolder) {
  scene::makeFolder("/Users/me/folder");
  scene::link("/Users/me/folder/link", "/Users/me");
  const Unresolving files("/Users/me/folder");
  EXPECT_EQ(sightItself(files, Path("/Users/me/folder/link")).failure->description,
            Unresolving::of("folder"));
  const Unresolving others("/Users/me/other");
  EXPECT_FALSE(sightItself(others, Path("/Users/me/folder/link")).failure);
}

TEST(Sightings, thatAreNotSureAnswerNoQuestionWhereALinkLeads) {
  const Unresolving files("/Users/me/folder");
  scene::makeFolder("/Users/me/folder");
  EXPECT_EQ(thrown([&] { leadsInto(files, Path("/Users/me/folder"), Path("/Users/me")); }),
            Unresolving::of("folder"));
  EXPECT_EQ(thrown([&] { leadsInto(files, Path("/Users/me"), Path("/Users/me/folder")); }),
            Unresolving::of("folder"));
}

}  // namespace
}  // namespace quarn
