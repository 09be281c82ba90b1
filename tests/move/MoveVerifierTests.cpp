#include <filesystem>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include "QuarnCore/move/MoveVerifier.h"
#include "tests/support/Child.h"
#include "tests/support/Decorators.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

const std::string source = "/Applications/Foo.app";
const std::string copy = scene::drive + "/Copies/Bar.app";

/// The reason, or "whole".
std::string verdict(const std::string& of, const std::string& at, const Platform& platform = hostPlatform()) {
  Platform mine = platform;
  return MoveVerifier::failureReason(mine, Path(of), Path(at)).value_or("whole");
}
std::string verdict() {
  return verdict(source, copy);
}

void makeBoth() {
  scene::makeApp(source, {}, 5000);
  scene::link(source + "/Contents/Current", "MacOS");
  scene::write(source + "/Contents/.hidden", "abc");
  fs::create_directories(fs::path(copy).parent_path());
  fs::copy(source, copy, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

void makeSocket(const std::string& path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ::close(descriptor);
}

TEST(MoveVerifier, aFaithfulCopyIsWhole) {
  makeBoth();
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, contentsAreNotCompared) {
  makeBoth();
  scene::write(copy + "/Contents/.hidden", "xyz");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, nothingAtTheDestinationIsNamedByTheDestinationsName) {
  scene::makeApp(source);
  EXPECT_EQ(verdict(), "Bar.app is missing at the destination.");
  scene::link(copy, "/nowhere");
  EXPECT_EQ(verdict(), "Bar.app is missing at the destination.");
}

TEST(MoveVerifier, aSourceThatIsGoneCannotBeInspected) {
  scene::makeApp(copy);
  EXPECT_EQ(verdict(), "Could not inspect Foo.app.");
}

TEST(MoveVerifier, aFileOfAnotherSizeIsNamedByItsPathInside) {
  makeBoth();
  scene::writeBytes(copy + "/Contents/Resources/data.bin", 4999);
  EXPECT_EQ(verdict(), "Contents/Resources/data.bin copied with a different file size.");
}

TEST(MoveVerifier, hiddenItemsAreComparedToo) {
  makeBoth();
  scene::write(copy + "/Contents/.hidden", "abcd");
  EXPECT_EQ(verdict(), "Contents/.hidden copied with a different file size.");
}

TEST(MoveVerifier, aMissingItemWhoseAbsenceAnotherMakesUpForIsNamed) {
  makeBoth();
  fs::rename(copy + "/Contents/.hidden", copy + "/Contents/other");
  EXPECT_EQ(verdict(), "Contents/.hidden is missing at the destination.");
}

TEST(MoveVerifier, anEmptyFileOnBothSidesPasses) {
  makeBoth();
  scene::write(source + "/Contents/empty", "");
  scene::write(copy + "/Contents/empty", "");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, anEmptyFileDoesNotMatchAFolderWhichHasNoSize) {
  makeBoth();
  scene::write(source + "/Contents/empty", "");
  scene::makeFolder(copy + "/Contents/empty");
  EXPECT_EQ(verdict(), "Contents/empty copied with a different file size.");
}

TEST(MoveVerifier, aFileThatBecameALinkPassesIfTheSizesHappenToMatch) {
  scene::write("/Applications/note", "1234567");
  scene::write("/Volumes/real", "anything of another length");
  scene::link(scene::drive + "/note", "../real");
  EXPECT_EQ(verdict("/Applications/note", scene::drive + "/note"), "whole");
  scene::write("/Applications/note", "12345678");
  EXPECT_EQ(verdict("/Applications/note", scene::drive + "/note"), "note copied with a different file size.");
}

TEST(MoveVerifier, aFolderThatBecameSomethingElseIsNoFolder) {
  makeBoth();
  fs::remove_all(copy + "/Contents/MacOS");
  scene::link(copy + "/Contents/MacOS", "Resources");
  scene::write(copy + "/Contents/makes up for the file", "");
  EXPECT_EQ(verdict(), "Contents/MacOS is not a folder at the destination.");
}

TEST(MoveVerifier, aBundleThatBecameAFileIsNoFolder) {
  scene::makeApp(source);
  scene::write(copy, "x");
  EXPECT_EQ(verdict(), "Foo.app is not a folder at the destination.");
}

TEST(MoveVerifier, aLinkMustLeadTheSameWay) {
  makeBoth();
  fs::remove(copy + "/Contents/Current");
  scene::link(copy + "/Contents/Current", "Resources");
  EXPECT_EQ(verdict(), "Contents/Current symlink target does not match.");
}

TEST(MoveVerifier, aLinkThatBecameAFileLeadsNowhere) {
  makeBoth();
  fs::remove(copy + "/Contents/Current");
  scene::write(copy + "/Contents/Current", "MacOS");
  EXPECT_EQ(verdict(), "Contents/Current symlink target does not match.");
}

TEST(MoveVerifier, aDanglingLinkOnBothSidesPasses) {
  makeBoth();
  scene::link(source + "/Contents/lost", "/nowhere");
  scene::link(copy + "/Contents/lost", "/nowhere");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, aSourceThatIsALinkIsComparedAsALink) {
  scene::makeApp(scene::drive + "/Elsewhere/Foo.app");
  scene::link(source, scene::drive + "/Elsewhere/Foo.app");
  scene::makeApp(copy);
  EXPECT_EQ(verdict(), "Foo.app symlink target does not match.");
}

TEST(MoveVerifier, aSocketMissingAtTheDestinationFailsTheEntryCount) {
  makeBoth();
  makeSocket(source + "/Contents/socket");
  EXPECT_EQ(verdict(), "Foo.app copied with 9 of 10 entries — 1 missing.");
}

TEST(MoveVerifier, whatNoToolCopiesIsNotExpectedWhereTheCountsAgree) {
  makeBoth();
  makeSocket(source + "/Contents/socket");
  ASSERT_EQ(::mkfifo((source + "/Contents/fifo").c_str(), 0600), 0);
  scene::write(copy + "/Contents/one", "");
  scene::write(copy + "/Contents/two", "");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, aDeviceIsNotExpectedWhereTheCountsAgree) {
  makeBoth();
  if (::mknod((source + "/Contents/null").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0 ||
      ::mknod((source + "/Contents/block").c_str(), S_IFBLK | 0600, makedev(7, 0)) != 0) {
    GTEST_SKIP() << "may not make device files here";
  }
  scene::write(copy + "/Contents/one", "");
  scene::write(copy + "/Contents/two", "");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, aSourceThatIsASocketIsNotExpectedToBeLikeItsCopy) {
  makeSocket("/Applications/socket");
  scene::makeFolder(scene::drive + "/socket");
  EXPECT_EQ(verdict("/Applications/socket", scene::drive + "/socket"), "whole");
}

TEST(MoveVerifier, moreEntriesAtTheDestinationPass) {
  makeBoth();
  scene::write(copy + "/Contents/._data.bin", "resource fork");
  EXPECT_EQ(verdict(), "whole");
}

TEST(MoveVerifier, aNameWithALineFeedCountsTwiceOnBothSides) {
  makeBoth();
  scene::write(source + "/Contents/two\nlines", "x");
  scene::write(copy + "/Contents/two\nlines", "x");
  EXPECT_EQ(verdict(), "whole");
  fs::remove(copy + "/Contents/two\nlines");
  EXPECT_EQ(verdict(), "Foo.app copied with 9 of 11 entries — 2 missing.");
}

TEST(MoveVerifier, aFolderThatCannotBeReadIsReportedAndNotCounted) {
  makeBoth();
  scene::makeFolder(source + "/Contents/locked/inside");
  scene::makeFolder(copy + "/Contents/locked");
  ::chmod((source + "/Contents/locked").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([] {
              scene::becomeOrdinary();  // or `find` would get the rights back

              EXPECT_EQ(verdict(),
                        "Could not inspect locked: The file “locked” couldn’t be opened because "
                        "you don’t have permission to view it.");
            }),
            "");
}

/// A walk that meets one file whose properties can't be read.
class UnreadableItem : public WalkItem {
 public:
  std::string_view relativePath() const override { return "Contents/gone"; }
  FileKind kind() const override { return FileKind::regular; }
  Result<FileAttributes> attributes() const override { return PlatformError("test", 1, "gone"); }
  Result<FileAttributes> attributesBelow(const Path&) const override { return FileAttributes{}; }
  std::optional<PlatformError> obstacleToRemoval() const override { return std::nullopt; }
};
class VanishingFiles : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  void walk(const Path&, Hidden hidden, WalkVisitor& visitor) const override {
    EXPECT_EQ(hidden, Hidden::included);
    visitor.visit(UnreadableItem());
  }
};

TEST(MoveVerifier, anItemThatVanishesDuringTheCheckCannotBeInspected) {
  makeBoth();
  VanishingFiles files(hostPlatform().files);
  EXPECT_EQ(verdict(source, copy, replacing({.files = &files})), "Could not inspect Contents/gone.");
}

/// Keeps one item, as the sticky bit of its folder does.
class KeptItem : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  std::optional<PlatformError> obstacleToRemoval(const Path& item) const override {
    if (item == Path(source)) return PlatformError("test", 1, "kept");
    return FileSystemDecorator::obstacleToRemoval(item);
  }
};

TEST(MoveVerifier, findsTheItemItselfKeptThoughAllBelowItCanGo) {
  makeBoth();
  KeptItem files(hostPlatform().files);
  const auto found = MoveVerifier::beforeRemoval(replacing({.files = &files}), Path(source), Path(copy));
  EXPECT_EQ(found.difference, std::nullopt);
  ASSERT_TRUE(found.obstacle);
  EXPECT_EQ(found.obstacle->description, "kept");
}

}  // namespace
}  // namespace quarn
