#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

FileSystem& files() {
  return hostPlatform().files;
}
template <class Outcome>
int code(const Outcome& result) {
  return result ? 0 : result.error().code;
}
template <class Outcome>
std::string text(const Outcome& result) {
  return result ? "" : result.error().description;
}

constexpr const char* noOtherVolume = "there is no second volume to write to";

TEST(Rename, renamesOnOneVolume) {
  ScratchFolder scratch;
  scratch.write("tree/file");
  const auto inode = scratch.status("tree").st_ino;
  EXPECT_EQ(code(files().rename(scratch / "tree", scratch / "moved")), 0);
  EXPECT_EQ(scratch.status("moved").st_ino, inode);
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST(Rename, takesALinkAsALink) {
  ScratchFolder scratch;
  scratch.write("target");
  scratch.link("link", "target");
  scratch.link("dangling", "none");
  EXPECT_EQ(code(files().rename(scratch / "link", scratch / "moved")), 0);
  EXPECT_EQ(code(files().rename(scratch / "dangling", scratch / "dangled")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("moved")), "target");
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("dangled")), "none");
}

TEST(Rename, replacesNothing) {
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

TEST(Rename, needsASourceAndAParent) {
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

TEST(Rename, aFolderCannotGoIntoItself) {
  ScratchFolder scratch;
  scratch.write("tree/sub/file");
  EXPECT_EQ(code(files().rename(scratch / "tree", scratch / "tree/sub/tree")), 512);
  EXPECT_TRUE(scratch.stands("tree/sub/file"));
  EXPECT_EQ(scratch.count(), 3u);
}

TEST(Rename, needsPermission) {
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

TEST(Rename, doesNotLeaveItsVolume) {
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

TEST(Copy, keepsWhatTheItemsAre) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/file", "content");
  scratch.write("tree/folder/\xFF\n\t\"", "odd");
  scratch.write("tree/" + std::string(scene::longestName(), 'n'), "");
  scratch.link("tree/link", "folder");
  scratch.link("tree/dangling", "/none at all");
  ASSERT_EQ(::mkfifo(scratch.at("tree/fifo").c_str(), 0600), 0);
  ::chmod(scratch.at("tree/fifo").c_str(), 0622);
  ::chmod(scratch.at("tree/file").c_str(), 0451);
  ::chmod(scratch.at("tree/folder").c_str(), 01755);
  const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
  for (const char* name : {"tree/file", "tree/link", "tree/fifo", "tree/folder", "tree"})
    ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at(name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);

  const auto before = scene::tree(scratch.at("tree"));
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "moved")), 0);
  EXPECT_EQ(scene::tree(scratch.at("tree")), before) << "the source stays as it is";
  EXPECT_EQ(other->read("moved/file"), "content");
  EXPECT_EQ(other->read("moved/folder/\xFF\n\t\""), "odd");
  EXPECT_TRUE(other->stands("moved/" + std::string(scene::longestName(), 'n')));
  EXPECT_EQ(std::filesystem::read_symlink(other->at("moved/link")), "folder");
  EXPECT_EQ(std::filesystem::read_symlink(other->at("moved/dangling")), "/none at all");
  EXPECT_TRUE(S_ISFIFO(other->status("moved/fifo").st_mode));
  EXPECT_EQ(other->status("moved/fifo").st_mode & 07777u, 0622u);
  EXPECT_EQ(other->status("moved/file").st_mode & 07777u, 0451u);
  EXPECT_EQ(other->status("moved/folder").st_mode & 07777u, 01755u);
  for (const char* name : {"moved/file", "moved/link", "moved/fifo", "moved/folder", "moved"}) {
    EXPECT_EQ(other->status(name).st_mtim.tv_sec, 1'100'000'000) << name;
    EXPECT_EQ(other->status(name).st_mtim.tv_nsec, 987'654'321) << name;
  }
}

TEST(Copy, keepsExtendedAttributes) {
  // Made before the other volume is looked for: a memory file system may keep none.
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/file");
  other->write("probe");
  const auto set = [](const std::string& path) { return ::setxattr(path.c_str(), "user.q", "v", 1, 0) == 0; };
  if (!set(other->at("probe")) || !set(scratch.at("tree/file")) || !set(scratch.at("tree")))
    GTEST_SKIP() << "one of the volumes keeps no extended attributes";
  ::chmod(scratch.at("tree/file").c_str(), 0400);
  ASSERT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 0);
  char value = 0;
  EXPECT_EQ(::getxattr(other->at("tree/file").c_str(), "user.q", &value, 1), 1);
  EXPECT_EQ(value, 'v');
  EXPECT_EQ(::getxattr(other->at("tree").c_str(), "user.q", &value, 1), 1);
}

TEST(Copy, keepsHoles) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
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

TEST(Copy, keepsTheOwnerWhereAllowed) {
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

TEST(Copy, takesALinkAsALink) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.link("link", "none");
  ASSERT_EQ(code(files().copy(scratch / "link", *other / "link")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(other->at("link")), "none");
}

TEST(Copy, replacesNothingAndNeedsSourceAndParent) {
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

TEST(Copy, aCopyThatFailsIsTakenBack) {
  const auto other = ScratchFolder::onOtherVolume();
  if (!other) GTEST_SKIP() << noOtherVolume;
  ScratchFolder scratch;
  scratch.write("tree/a/file");
  ASSERT_EQ(::mknod(scratch.at("tree/a/socket").c_str(), S_IFSOCK | 0600, 0), 0);
  other->write("kept");
  EXPECT_EQ(code(files().copy(scratch / "tree", *other / "tree")), 512);
  EXPECT_EQ(other->count(), 1u);
  EXPECT_EQ(scratch.count(), 4u);
  EXPECT_EQ(code(files().copy(scratch / "tree/a/socket", *other / "socket")), 512);
  EXPECT_EQ(other->count(), 1u);
}

TEST(Copy, anUnreadableSourceStaysWhole) {
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

TEST(Copy, aFullVolumeIsLeftAsItWas) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a small volume";
  ScratchFolder scratch;
  scratch.folder("drive");
  scratch.write("tree/a/big", std::string(4'000'000, 'x'));
  scratch.write("tree/small");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("drive"), "size=1m"));
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "drive/tree")), 640);
              EXPECT_FALSE(scratch.stands("drive/tree"));
              EXPECT_EQ(scratch.read("tree/a/big").size(), 4'000'000u);
            }),
            "");
}

TEST(Copy, leavesAVolumeMountedInsideAlone) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  ScratchFolder scratch;
  scratch.folder("tree/drive");
  scratch.write("tree/file");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("tree/drive"), "size=1m"));
              scratch.write("tree/drive/foreign");
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "tree/drive/tree")), 512);
              EXPECT_FALSE(scratch.stands("tree/drive/tree"));
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "copy")), 512);
              EXPECT_FALSE(scratch.stands("copy"));
              EXPECT_TRUE(scratch.stands("tree/drive/foreign"));
            }),
            "");
}

TEST(Copy, ofAFolderIntoItselfFails) {
  ScratchFolder scratch;
  scratch.write("tree/sub/file");
  EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "tree/sub/tree")), 512);
  EXPECT_EQ(scratch.count(), 3u);
}

/// Sets an attribute of the person's own; absent where the volume keeps none.
bool setOwnAttribute(const std::string& path, const std::string& value) {
  return ::setxattr(path.c_str(), "user.note", value.data(), value.size(), 0) == 0;
}

TEST(Copy, failsWhereAnAttributeOfThePersonsOwnIsRefused) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("tree/file");
  if (!setOwnAttribute(scratch.at("tree/file"), "v")) GTEST_SKIP() << "this volume keeps no attributes";
  const std::pair<int, int> rows[] = {{EPERM, 513}, {EACCES, 513}, {ENOSPC, 640}, {EIO, 512}, {ENOTSUP, 0}};
  for (const auto& [error, expected] : rows) {
    EXPECT_EQ(child::failuresRefusing(
                  SYS_fsetxattr, error,
                  [&, wanted = expected] {
                    EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "copy")), wanted);
                    EXPECT_EQ(scratch.stands("copy"), wanted == 0) << "what was made is removed";
                  }),
              "")
        << error;
  }
  EXPECT_EQ(scratch.read("copy/file"), "content") << "a volume that keeps none gets none";
}

TEST(Copy, leavesAnAttributeBehindThatOnlyTheSystemMaySet) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("file");
  if (::setxattr(scratch.at("file").c_str(), "trusted.note", "v", 1, 0) != 0)
    GTEST_SKIP() << "no right to set an attribute of the system";
  EXPECT_EQ(
      child::failuresRefusing(SYS_fsetxattr, EPERM,
                              [&] { EXPECT_EQ(code(files().copy(scratch / "file", scratch / "copy")), 0); }),
      "");
  EXPECT_EQ(scratch.read("copy"), "content");
}

TEST(Copy, goesToAnyDepth) {
  if (!scene::hasMounts()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
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
}  // namespace quarn
