#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

FileSystem& files() {
  return hostPlatform().files;
}
int code(const Result<void>& result) {
  return result ? 0 : result.error().code;
}
int obstacle(const Path& item) {
  const auto found = files().obstacleToRemoval(item);
  return found ? found->code : 0;
}

TEST(Claim, makesWhatIsEmptyAndForItsOwnerAlone) {
  const ScratchFolder scratch;
  EXPECT_EQ(code(files().claim(scratch / "folder", FileKind::folder)), 0);
  EXPECT_EQ(code(files().claim(scratch / "file", FileKind::regular)), 0);
  EXPECT_EQ(scratch.status("folder").st_mode & 07777u, 0700u);
  EXPECT_TRUE(S_ISDIR(scratch.status("folder").st_mode));
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0600u);
  EXPECT_EQ(scratch.status("file").st_size, 0);
}

TEST(Claim, ofAPlaceThatIsTakenFailsWhateverStandsThere) {
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

TEST(RemoveSymbolicLink, removesALinkAndNothingElse) {
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

TEST(CopyAttributes, givesModeTimesAndAttributes) {
  const ScratchFolder scratch;
  scratch.folder("from");
  scratch.folder("to");
  ::chmod(scratch.at("from").c_str(), 01751);
  const bool hasAttributes = ::setxattr(scratch.at("from").c_str(), "user.q", "v", 1, 0) == 0;
  const timespec times[2] = {{1'000'000'000, 1}, {1'100'000'000, 2}};
  ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at("from").c_str(), times, 0), 0);
  EXPECT_EQ(code(files().copyAttributes(scratch / "from", scratch / "to")), 0);
  EXPECT_EQ(scratch.status("to").st_mode & 07777u, 01751u);
  EXPECT_EQ(scratch.status("to").st_mtim.tv_sec, 1'100'000'000);
  char value = 0;
  if (hasAttributes) {
    EXPECT_EQ(::getxattr(scratch.at("to").c_str(), "user.q", &value, 1), 1);
  }
  EXPECT_EQ(code(files().copyAttributes(scratch / "none", scratch / "to")), 4);
}

TEST(ObstacleToRemoval, isNoneForWhatMayGoAndForWhatIsNotThere) {
  const ScratchFolder scratch;
  scratch.write("tree/file");
  scratch.folder("empty");
  scratch.link("link", "none");
  for (const char* name : {"tree", "tree/file", "empty", "link", "none", "none/none"})
    EXPECT_EQ(obstacle(scratch / name), 0) << name;
}

TEST(ObstacleToRemoval, isWhatTheRemovalWouldSay) {
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

TEST(ObstacleToRemoval, isTheStickyBitOfAFolderWhoseItemsAreOthers) {
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

/// Sets or clears the flag that keeps an item from being removed by anybody.
bool setImmutable(const std::string& path, bool on) {
  const int file = ::open(path.c_str(), O_RDONLY);
  int flags = 0;
  bool done = ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
  flags = on ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
  done = done && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
  ::close(file);
  return done;
}

TEST(ObstacleToRemoval, isTheFlagOfALockedItem) {
  const ScratchFolder scratch;
  scratch.write("tree/locked");
  scratch.write("tree/free");
  if (!setImmutable(scratch.at("tree/locked"), true)) GTEST_SKIP() << "items can't be locked on this volume";
  EXPECT_EQ(obstacle(scratch / "tree/locked"), 513);
  EXPECT_EQ(obstacle(scratch / "tree/free"), 0);
  EXPECT_EQ(obstacle(scratch / "tree"), 0) << "of what lies below, a walk tells";
  class Found : public WalkVisitor {
   public:
    WalkStep visit(const WalkItem& item) override {
      if (item.obstacleToRemoval()) names.push_back(std::string(item.relativePath()));
      return WalkStep::proceed;
    }
    WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::stop; }
    std::vector<std::string> names;
  } found;
  files().walk(scratch / "tree", Hidden::included, found);
  EXPECT_EQ(found.names, (std::vector<std::string>{"locked"}));
  setImmutable(scratch.at("tree/locked"), false);
}

TEST(ObstacleToRemoval, isAVolumeThatIsMountedThere) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  const ScratchFolder scratch;
  scratch.folder("tree/drive");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("tree/drive"), "size=1m"));
              EXPECT_EQ(obstacle(scratch / "tree/drive"), 512);
              EXPECT_EQ(obstacle(scratch / "tree"), 0);
            }),
            "");
}

TEST(ObstacleToRemoval, isAReadOnlyVolume) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  const ScratchFolder scratch;
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.text(), "size=1m"));
              scratch.write("tree/file");
              ASSERT_TRUE(child::makeReadOnly(scratch.text()));
              EXPECT_EQ(obstacle(scratch / "tree"), 642);
            }),
            "");
}

}  // namespace
}  // namespace quarn
