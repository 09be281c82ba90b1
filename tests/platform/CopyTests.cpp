#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"
#include "tests/support/VolumeTraits.h"

namespace quarn::contract {
namespace {

class Copy : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, Copy, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);

/// What both volumes can keep.
VolumeTraits keptByBoth(const ScratchFolder& one, const ScratchFolder& other) {
  const VolumeTraits here = traitsOf(one), there = traitsOf(other);
  return {.anyBytes = here.anyBytes && there.anyBytes,
          .modes = here.modes && there.modes,
          .fifos = here.fifos && there.fifos,
          .holes = here.holes && there.holes,
          .attributes = here.attributes && there.attributes,
          .nanoseconds = here.nanoseconds && there.nanoseconds,
          .longestName = std::min(here.longestName, there.longestName),
          .longestLink = std::min(here.longestLink, there.longestLink)};
}

TEST_P(Copy, keepsNamesAndContents) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  const VolumeTraits kept = keptByBoth(scratch, *other);
  const std::string odd = kept.anyBytes ? "\xFF\n\t\"" : "\u00E9\n\t";
  const std::string longest(kept.longestName, 'n');
  scratch.write("tree/file", "content");
  scratch.write("tree/folder/" + odd, "odd");
  scratch.write("tree/" + longest, "");
  const auto before = scene::tree(scratch.at("tree"));
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "moved")), 0);
  EXPECT_EQ(scene::tree(scratch.at("tree")), before) << "the source stays as it is";
  EXPECT_EQ(other->read("moved/file"), "content");
  EXPECT_EQ(other->read("moved/folder/" + odd), "odd");
  EXPECT_TRUE(other->stands("moved/" + longest));
  EXPECT_EQ(other->count(), 5u);
}

TEST_P(Copy, keepsLinksAsLinks) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (keptByBoth(scratch, *other).longestLink == 0) GTEST_SKIP() << "one of the volumes keeps no links";
  scratch.folder("tree/folder");
  scratch.link("tree/link", "folder");
  scratch.link("tree/dangling", "/none at all");
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "moved")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(other->at("moved/link")), "folder");
  EXPECT_EQ(std::filesystem::read_symlink(other->at("moved/dangling")), "/none at all");
}

TEST_P(Copy, keepsModes) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (!keptByBoth(scratch, *other).modes) GTEST_SKIP() << "one of the volumes keeps no modes";
  scratch.write("tree/file");
  scratch.folder("tree/folder");
  ::chmod(scratch.at("tree/file").c_str(), 0451);
  ::chmod(scratch.at("tree/folder").c_str(), 01755);
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "moved")), 0);
  EXPECT_EQ(other->status("moved/file").st_mode & 07777u, 0451u);
  EXPECT_EQ(other->status("moved/folder").st_mode & 07777u, 01755u);
}

TEST_P(Copy, keepsFifos) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (!keptByBoth(scratch, *other).fifos) GTEST_SKIP() << "one of the volumes keeps no FIFOs";
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  ::chmod(scratch.at("fifo").c_str(), 0622);
  ASSERT_EQ(code(files().copy(scratch / "fifo", *other / "fifo")), 0);
  EXPECT_TRUE(S_ISFIFO(other->status("fifo").st_mode));
  EXPECT_EQ(other->status("fifo").st_mode & 07777u, 0622u);
}

TEST_P(Copy, keepsTimes) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  const VolumeTraits kept = keptByBoth(scratch, *other);
  scratch.write("tree/file");
  scratch.folder("tree/folder");
  if (kept.longestLink > 0) scratch.link("tree/link", "folder");
  if (kept.fifos) {
    ASSERT_EQ(::mkfifo(scratch.at("tree/fifo").c_str(), 0600), 0);
  }
  const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
  for (const char* name : {"tree/file", "tree/link", "tree/fifo", "tree/folder", "tree"}) {
    if (!scratch.stands(name)) continue;
    ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at(name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << name;
  }
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 0);
  for (const char* name : {"tree/file", "tree/link", "tree/fifo", "tree/folder", "tree"}) {
    if (!scratch.stands(name)) continue;
    EXPECT_EQ(modificationTime(other->at(name)).tv_sec, 1'100'000'000) << name;
    if (kept.nanoseconds) {
      EXPECT_EQ(modificationTime(other->at(name)).tv_nsec, 987'654'321) << name;
    }
  }
}

TEST_P(Copy, keepsExtendedAttributes) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (!keptByBoth(scratch, *other).attributes)
    GTEST_SKIP() << "one of the volumes keeps no extended attributes";
  scratch.write("tree/file");
  ASSERT_TRUE(setAttribute(scratch.at("tree/file"), "of the file"));
  ASSERT_TRUE(setAttribute(scratch.at("tree"), "of the folder"));
  ::chmod(scratch.at("tree/file").c_str(), 0400);
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 0);
  EXPECT_EQ(attribute(other->at("tree/file")), "of the file");
  EXPECT_EQ(attribute(other->at("tree")), "of the folder");
}

TEST_P(Copy, keepsHoles) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (!keptByBoth(scratch, *other).holes) GTEST_SKIP() << "one of the volumes keeps no holes";
  scratch.write("sparse", "begin");
  constexpr off_t size = 64 * 1024 * 1024;
  const int file = ::open(scratch.at("sparse").c_str(), O_WRONLY);
  ASSERT_EQ(::pwrite(file, "middle", 6, size / 2), 6);
  ASSERT_EQ(::ftruncate(file, size), 0);
  ::close(file);
  const std::string before = scratch.read("sparse");
  ASSERT_EQ(code(files().copy(scratch / "sparse", *other / "sparse")), 0);
  EXPECT_TRUE(other->read("sparse") == before);
  EXPECT_LT(other->status("sparse").st_blocks * 512, size / 8);
}

TEST_P(Copy, keepsTheOwnerWhereAllowed) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/file");
  if (::chown(scratch.at("tree/file").c_str(), 12'345, 23'456) != 0)
    GTEST_SKIP() << "no right to give files away";
  ::chmod(scratch.at("tree/file").c_str(), 04755);
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 0);
  EXPECT_EQ(other->status("tree/file").st_uid, 12'345u);
  EXPECT_EQ(other->status("tree/file").st_gid, 23'456u);
  EXPECT_EQ(other->status("tree/file").st_mode & 07777u, 04755u);
}

TEST_P(Copy, takesALinkAsALink) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  if (keptByBoth(scratch, *other).longestLink == 0) GTEST_SKIP() << "one of the volumes keeps no links";
  scratch.link("link", "none");
  ASSERT_EQ(code(files().copy(scratch / "link", *other / "link")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(other->at("link")), "none");
}

TEST_P(Copy, replacesNothingAndNeedsSourceAndParent) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("x", "moved");
  other->write("taken", "kept");
  other->link("dangling", "none");
  EXPECT_EQ(code(files().copy(scratch / "x", *other / "taken")), 516);
  EXPECT_EQ(code(files().copy(scratch / "x", *other / "dangling")), 516);
  EXPECT_EQ(code(files().copy(scratch / "none", *other / "x")), 4);
  EXPECT_EQ(code(files().copy(scratch / "x", *other / "none/x")), 4);
  EXPECT_EQ(scratch.read("x"), "moved");
  EXPECT_EQ(other->read("taken"), "kept");
  EXPECT_EQ(other->count(), 2u);
}

TEST_P(Copy, aCopyThatFailsIsTakenBack) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/a/file");
  if (!makeSocket(scratch.at("tree/a/socket"))) GTEST_SKIP() << "sockets can't be made on this volume";
  other->write("kept");
  EXPECT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 512);
  EXPECT_EQ(other->count(), 1u);
  EXPECT_EQ(scratch.count(), 4u);
  EXPECT_EQ(code(files().copy(scratch / "tree/a/socket", *other / "socket")), 512);
  EXPECT_EQ(other->count(), 1u);
}

TEST_P(Copy, anUnreadableSourceStaysWhole) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/file");
  scratch.write("tree/secret");
  ::chmod(scratch.at("tree/secret").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights(
                [&] { EXPECT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 513); }),
            "");
  EXPECT_EQ(other->count(), 0u);
  EXPECT_EQ(scratch.count(), 3u);
}

TEST_P(Copy, ofAFolderIntoItselfFails) {
  ScratchFolder scratch;
  scratch.write("tree/sub/file");
  EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "tree/sub/tree")), 512);
  EXPECT_EQ(scratch.count(), 3u);
}

TEST_P(Copy, goesToAnyDepth) {
  if (scene::inProot()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.folder("tree");
  makeDeepTree(scratch.at("tree"), 1000);
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 0);
  std::string deepest = other->at("tree");
  for (int i = 0; i < 1000; ++i) deepest += "/d";
  EXPECT_TRUE(files().exists(Path(deepest + "/f")));
  EXPECT_TRUE(files().remove(*other / "tree"));
}

}  // namespace
}  // namespace quarn::contract
