#include <sys/stat.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

class Rename : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, Rename, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);

TEST_P(Rename, renamesOnOneVolume) {
  ScratchFolder scratch;
  scratch.write("tree/file");
  const auto inode = scratch.status("tree").st_ino;
  EXPECT_EQ(code(files().rename(scratch / "tree", scratch / "moved")), 0);
  EXPECT_EQ(scratch.status("moved").st_ino, inode);
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST_P(Rename, takesALinkAsALink) {
  ScratchFolder scratch;
  scratch.write("target");
  scratch.link("link", "target");
  scratch.link("dangling", "none");
  EXPECT_EQ(code(files().rename(scratch / "link", scratch / "moved")), 0);
  EXPECT_EQ(code(files().rename(scratch / "dangling", scratch / "dangled")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("moved")), "target");
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("dangled")), "none");
}

TEST_P(Rename, replacesNothing) {
  ScratchFolder scratch;
  scratch.write("x", "moved");
  scratch.write("p/file", "kept");
  scratch.folder("p/empty");
  scratch.link("p/dangling", "none");
  for (const char* taken : {"p/file", "p/empty", "p/dangling", "x"}) {
    EXPECT_EQ(code(files().rename(scratch / "x", scratch / taken)), 516) << taken;
  }
  EXPECT_EQ(text(files().rename(scratch / "x", scratch / "p/file")),
            "“x” couldn’t be moved to “p” because an item with the same name already exists.");
  EXPECT_EQ(scratch.read("x"), "moved");
  EXPECT_EQ(scratch.read("p/file"), "kept");
}

TEST_P(Rename, needsASourceAndAParent) {
  ScratchFolder scratch;
  scratch.write("x");
  scratch.folder("p");
  const std::string sentence =
      "“x” couldn’t be moved to “p” because either the former doesn’t exist, or the folder containing the "
      "latter doesn’t exist.";
  EXPECT_EQ(code(files().rename(scratch / "none", scratch / "p/x")), 4);
  const auto moved = files().rename(scratch / "x", scratch / "none/p/x");
  EXPECT_EQ(code(moved), 4);
  EXPECT_EQ(text(moved), sentence);
  EXPECT_TRUE(scratch.stands("x"));
}

TEST_P(Rename, aFolderCannotGoIntoItself) {
  ScratchFolder scratch;
  scratch.write("tree/sub/file");
  EXPECT_EQ(code(files().rename(scratch / "tree", scratch / "tree/sub/tree")), 512);
  EXPECT_TRUE(scratch.stands("tree/sub/file"));
  EXPECT_EQ(scratch.count(), 3u);
}

TEST_P(Rename, needsPermission) {
  ScratchFolder scratch;
  scratch.write("x");
  scratch.folder("p");
  ::chmod(scratch.at("p").c_str(), 0500);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto moved = files().rename(scratch / "x", scratch / "p/x");
              EXPECT_EQ(code(moved), 513);
              EXPECT_EQ(text(moved),
                        "“x” couldn’t be moved because you don’t have permission to access “p”.");
            }),
            "");
  EXPECT_TRUE(scratch.stands("x"));
}

TEST_P(Rename, doesNotLeaveItsVolume) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/file");
  other->write("taken");
  const auto outcome = files().rename(scratch / "tree", *other / "tree");
  ASSERT_TRUE(outcome);
  EXPECT_FALSE(*outcome);
  EXPECT_TRUE(scratch.stands("tree/file"));
  EXPECT_EQ(other->count(), 1u);
}

}  // namespace
}  // namespace quarn::contract
