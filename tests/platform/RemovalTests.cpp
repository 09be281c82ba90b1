#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

class Claim : public FileSystemContract {};
class RemoveSymbolicLink : public FileSystemContract {};
class CopyAttributes : public FileSystemContract {};
class ObstacleToRemoval : public FileSystemContract {
 protected:
  int obstacle(const Path& item) const {
    const auto found = files().obstacleToRemoval(item);
    return found ? found->code : 0;
  }
};
INSTANTIATE_TEST_SUITE_P(, Claim, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, RemoveSymbolicLink, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, CopyAttributes, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, ObstacleToRemoval, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);

TEST_P(Claim, makesWhatIsEmptyAndForItsOwnerAlone) {
  const ScratchFolder scratch;
  EXPECT_EQ(code(files().claim(scratch / "folder", FileKind::folder)), 0);
  EXPECT_EQ(code(files().claim(scratch / "file", FileKind::regular)), 0);
  EXPECT_EQ(scratch.status("folder").st_mode & 07777u, 0700u);
  EXPECT_TRUE(S_ISDIR(scratch.status("folder").st_mode));
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0600u);
  EXPECT_EQ(scratch.status("file").st_size, 0);
}

TEST_P(Claim, ofAPlaceThatIsTakenFailsWhateverStandsThere) {
  const ScratchFolder scratch;
  scratch.write("file");
  scratch.folder("folder");
  scratch.link("dangling", "none");
  for (const char* taken : {"file", "folder", "dangling"}) {
    for (const FileKind kind : {FileKind::folder, FileKind::regular})
      EXPECT_EQ(code(files().claim(scratch / taken, kind)), 516) << taken;
  }
  EXPECT_FALSE(scratch.stands("none"));
  EXPECT_EQ(code(files().claim(scratch / "missing/x", FileKind::folder)), 4);
}

TEST_P(RemoveSymbolicLink, removesALinkAndNothingElse) {
  const ScratchFolder scratch;
  scratch.write("tree/file");
  scratch.write("file");
  scratch.link("link", "tree");
  scratch.link("dangling", "none");
  EXPECT_EQ(code(files().removeSymbolicLink(scratch / "link")), 0);
  EXPECT_EQ(code(files().removeSymbolicLink(scratch / "dangling")), 0);
  EXPECT_FALSE(scratch.stands("link"));
  EXPECT_FALSE(scratch.stands("dangling"));
  EXPECT_EQ(code(files().removeSymbolicLink(scratch / "tree")), 512);
  EXPECT_EQ(code(files().removeSymbolicLink(scratch / "file")), 512);
  EXPECT_EQ(code(files().removeSymbolicLink(scratch / "none")), 4);
  EXPECT_TRUE(scratch.stands("tree/file"));
  EXPECT_TRUE(scratch.stands("file"));
}

TEST_P(CopyAttributes, givesModeTimesAndAttributes) {
  const ScratchFolder scratch;
  scratch.folder("from");
  scratch.folder("to");
  ::chmod(scratch.at("from").c_str(), 01751);
  const bool hasAttributes = setAttribute(scratch.at("from"), "v");
  const timespec times[2] = {{1'000'000'000, 1}, {1'100'000'000, 2}};
  ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at("from").c_str(), times, 0), 0);
  EXPECT_EQ(code(files().copyAttributes(scratch / "from", scratch / "to")), 0);
  EXPECT_EQ(scratch.status("to").st_mode & 07777u, 01751u);
  EXPECT_EQ(modificationTime(scratch.at("to")).tv_sec, 1'100'000'000);
  if (hasAttributes) {
    EXPECT_EQ(attribute(scratch.at("to")), "v");
  }
  EXPECT_EQ(code(files().copyAttributes(scratch / "none", scratch / "to")), 4);
}

TEST_P(ObstacleToRemoval, isNoneForWhatMayGoAndForWhatIsNotThere) {
  const ScratchFolder scratch;
  scratch.write("tree/file");
  scratch.folder("empty");
  scratch.link("link", "none");
  for (const char* name : {"tree", "tree/file", "empty", "link", "none", "none/none"})
    EXPECT_EQ(obstacle(scratch / name), 0) << name;
}

TEST_P(ObstacleToRemoval, isWhatTheRemovalWouldSay) {
  const ScratchFolder scratch;
  scratch.write("closed/tree/file");
  scratch.write("full/file");
  scratch.folder("empty");
  ::chmod(scratch.at("closed").c_str(), 0555);
  ::chmod(scratch.at("full").c_str(), 0555);
  ::chmod(scratch.at("empty").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              EXPECT_EQ(obstacle(scratch / "closed/tree"), 513) << "its folder may not be changed";
              EXPECT_EQ(obstacle(scratch / "full"), 513) << "it may not be changed itself";
              EXPECT_EQ(obstacle(scratch / "closed/tree/file"), 0);
              const auto found = files().obstacleToRemoval(scratch / "full");
              ASSERT_TRUE(found);
              EXPECT_EQ(found->description,
                        "“full” couldn’t be removed because you don’t have permission to access it.");
            }),
            "");
  EXPECT_EQ(obstacle(scratch / "full"), ::geteuid() == 0 ? 0 : 513) << "the administrator may";
  ::chmod(scratch.at("closed").c_str(), 0755);
}

TEST_P(ObstacleToRemoval, isTheStickyBitOfAFolderWhoseItemsAreOthers) {
  const ScratchFolder scratch;
  ::chmod(scratch.text().c_str(), 0755);
  scratch.folder("shared");
  scratch.write("shared/theirs");
  scratch.write("shared/mine");
  if (::chown(scratch.at("shared").c_str(), 12'345, 12'345) != 0 ||
      ::chown(scratch.at("shared/theirs").c_str(), 12'345, 12'345) != 0)
    GTEST_SKIP() << "no right to give files away";
  ::chmod(scratch.at("shared").c_str(), 01777);
  ASSERT_EQ(::chown(scratch.at("shared/mine").c_str(), 54'321, 54'321), 0);
  EXPECT_EQ(child::failures([&] {
              ASSERT_EQ(::setuid(54'321), 0);
              EXPECT_EQ(obstacle(scratch / "shared/theirs"), 513);
              EXPECT_EQ(obstacle(scratch / "shared/mine"), 0);
              EXPECT_EQ(code(files().remove(scratch / "shared/theirs")), 513) << "and it is so";
            }),
            "");
}

TEST_P(ObstacleToRemoval, isTheFlagOfALockedItem) {
  const ScratchFolder scratch;
  scratch.write("tree/locked");
  scratch.write("tree/free");
  if (!setLocked(scratch.at("tree/locked"), true)) GTEST_SKIP() << "items can't be locked on this volume";
  EXPECT_EQ(obstacle(scratch / "tree/locked"), 513);
  EXPECT_EQ(obstacle(scratch / "tree/free"), 0);
  EXPECT_EQ(obstacle(scratch / "tree"), 0) << "of what lies below, a walk tells";
  setLocked(scratch.at("tree/locked"), false);
}

}  // namespace
}  // namespace quarn::contract
