#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "Platform/linux/LinuxPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

struct Scene {
  Scene() { scratch.folder("home"); }
  Result<Path> trash(const Path& item) const { return LinuxTrash(places).moveToTrash(item); }
  Result<Path> trash(const std::string& name) const { return trash(scratch / name); }

  ScratchFolder scratch;
  doubles::FakePlaces places{scratch / "home"};
};

std::string repeated(const std::string& character, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += character;
  return text;
}

/// The room's own table of mounts for a while.
class MountTableOf {
 public:
  explicit MountTableOf(const std::string& lines) {
    std::filesystem::rename("/etc/mtab", kept_);
    std::ofstream("/etc/mtab") << lines;
  }
  ~MountTableOf() {
    std::error_code ignored;
    std::filesystem::rename(kept_, "/etc/mtab", ignored);
  }
  MountTableOf(const MountTableOf&) = delete;
  MountTableOf& operator=(const MountTableOf&) = delete;

 private:
  const std::string kept_ = "/etc/mtab.kept";
};

TEST(LinuxTrash, takesAnItemOfTheHomeVolumeToTheHomeTrash) {
  Scene scene;
  scene.scratch.write("tree/file");
  const auto inode = scene.scratch.status("tree").st_ino;
  EXPECT_EQ(*scene.trash("tree"), scene.scratch / "home/.Trash/tree");
  EXPECT_EQ(scene.scratch.status("home/.Trash/tree").st_ino, inode);
  EXPECT_EQ(scene.scratch.status("home/.Trash").st_mode & 07777u, 0700u);
  EXPECT_FALSE(scene.scratch.stands("tree"));
}

TEST(LinuxTrash, findsAFreeNameForOneThatIsTaken) {
  Scene scene;
  const std::vector<std::string> expected{"Foo.app", "Foo 2.app", "Foo 3.app"};
  for (const std::string& name : expected) {
    scene.scratch.write("Foo.app", name);
    EXPECT_EQ(*scene.trash("Foo.app"), scene.scratch / ("home/.Trash/" + name));
  }
  for (const std::string& name : expected) EXPECT_EQ(scene.scratch.read("home/.Trash/" + name), name);
}

TEST(LinuxTrash, aTakenNameWithoutExtensionOrOfFullLengthGetsANumberToo) {
  if (::scene::longestName() < 255) GTEST_SKIP() << "proot allows no name of full length";
  Scene scene;
  const std::string longest = std::string(251, 'n') + ".app";
  for (const auto& [name, second] : std::vector<std::pair<std::string, std::string>>{
           {".hidden", ".hidden 2"},
           {"plain", "plain 2"},
           {longest, std::string(249, 'n') + " 2.app"},
           // The cut would fall into the last character of two bytes.
           {repeated("\u00E9", 125) + "n.app", repeated("\u00E9", 124) + " 2.app"}}) {
    scene.scratch.write(name);
    ASSERT_TRUE(scene.trash(name));
    scene.scratch.write(name);
    EXPECT_EQ(*scene.trash(name), scene.scratch / ("home/.Trash/" + second));
  }
}

TEST(LinuxTrash, takesALinkAsALink) {
  Scene scene;
  scene.scratch.write("target");
  scene.scratch.link("link", "target");
  scene.scratch.link("dangling", "none");
  EXPECT_TRUE(scene.trash("link"));
  EXPECT_TRUE(scene.trash("dangling"));
  EXPECT_EQ(std::filesystem::read_symlink(scene.scratch.at("home/.Trash/link")), "target");
  EXPECT_EQ(std::filesystem::read_symlink(scene.scratch.at("home/.Trash/dangling")), "none");
  EXPECT_TRUE(scene.scratch.stands("target"));
}

TEST(LinuxTrash, refusesWhatIsNotThere) {
  Scene scene;
  scene.scratch.write("file");
  const auto result = scene.trash("x");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, 4);
  EXPECT_EQ(result.error().description, "The file “x” doesn’t exist.");
  EXPECT_EQ(scene.trash("file/x").error().code, 4);
  EXPECT_FALSE(scene.scratch.stands("home/.Trash"));
}

TEST(LinuxTrash, needsPermission) {
  Scene scene;
  scene.scratch.write("closed/x");
  ::chmod(scene.scratch.at("closed").c_str(), 0500);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto result = scene.trash("closed/x");
              ASSERT_FALSE(result);
              EXPECT_EQ(result.error().code, 513);
              EXPECT_EQ(result.error().description,
                        "“x” couldn’t be moved to the trash because you don’t have permission to access it.");
            }),
            "");
  EXPECT_TRUE(scene.scratch.stands("closed/x"));
}

TEST(LinuxTrash, aLinkIsNoTrash) {
  Scene scene;
  scene.scratch.write("x");
  scene.scratch.folder("elsewhere");
  scene.scratch.link("home/.Trash", "../elsewhere");
  const auto result = scene.trash("x");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, 3328);
  EXPECT_TRUE(scene.scratch.stands("x"));
  EXPECT_FALSE(scene.scratch.stands("elsewhere/x"));
}

TEST(LinuxTrash, aDriveHasATrashForEachUser) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a drive";
  Scene scene;
  scene.scratch.folder("drive");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scene.scratch.at("drive"), "size=1m"));
              scene.scratch.write("drive/a/x");
              const std::string own = "drive/.Trashes/" + std::to_string(::getuid());
              EXPECT_EQ(*scene.trash("drive/a/x"),
                        hostPlatform().files.resolvingLinks(scene.scratch.path()).appending(own + "/x"));
              EXPECT_EQ(scene.scratch.status(own).st_mode & 07777u, 0700u);
              EXPECT_EQ(scene.scratch.status("drive/.Trashes").st_mode & 07777u, 01333u);
              EXPECT_FALSE(scene.scratch.stands("home/.Trash"));
            }),
            "");
}

TEST(LinuxTrash, aDriveThatOnlyTheTableTellsFromTheHomeVolumeHasItsOwn) {
  const MountTableOf table("room / ext4 rw 0 0\nroom /Volumes/Shared ext4 rw 0 0\n");
  ::scene::write("/Volumes/Shared/a/x", "content");
  Scene scene;
  const std::string own = "/Volumes/Shared/.Trashes/" + std::to_string(::getuid());
  EXPECT_EQ(*scene.trash(Path("/Volumes/Shared/a/x")), Path(own + "/x"));
  EXPECT_EQ(::scene::read(own + "/x"), "content");
  EXPECT_FALSE(scene.scratch.stands("home/.Trash"));
}

TEST(LinuxTrash, aHomeOnADriveHasTheTrashOfTheDriveItself) {
  const MountTableOf table("room / ext4 rw 0 0\nroom /Volumes/Shared ext4 rw 0 0\n");
  ::scene::write("/Volumes/Shared/x", "content");
  ::scene::makeFolder("/Volumes/Shared/me");
  ::scene::link("/Users/moved", "/Volumes/Shared/me");
  const doubles::FakePlaces places{Path("/Users/moved")};
  EXPECT_EQ(*LinuxTrash(places).moveToTrash(Path("/Volumes/Shared/x")), Path("/Users/moved/.Trash/x"));
}

TEST(LinuxTrash, aReadOnlyDriveHasNone) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a drive";
  Scene scene;
  const std::string drive = "/Volumes/Locked";
  ::scene::makeFolder(drive);
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(drive, "size=1m"));
              ::scene::write(drive + "/x", "content");
              ASSERT_TRUE(child::makeReadOnly(drive));
              const auto result = scene.trash(Path(drive + "/x"));
              ASSERT_FALSE(result);
              EXPECT_EQ(result.error().code, 3328);
              EXPECT_EQ(result.error().description,
                        "“x” couldn’t be moved to the trash because the volume “Locked” doesn’t have one.");
            }),
            "");
}

/// Lets a child's n-th look at anything fail with EIO. False if it has fewer.
bool failLook(int n, const std::function<void()>& body) {
  ::scene::TracedProgram program(body);
  int count = 0;
  while (const auto stop = program.next()) {
    if (!::scene::lookEntered(program, *stop) || ++count != n) continue;
    EXPECT_TRUE(program.refuse(EIO));
  }
  return count >= n;
}

TEST(LinuxTrash, aFolderAroundTheItemIsNoVolumeBecauseALookFails) {
  if (const std::string reason = ::scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  Scene scene;
  int n = 1;
  for (;; ++n) {
    scene.scratch.write("a/b/x");
    if (!failLook(n, [&] { (void)scene.trash("a/b/x"); })) break;
    for (const std::string folder : {"a/b", "a", "."})
      EXPECT_FALSE(scene.scratch.stands(folder + "/.Trashes")) << "look " << n << ", " << folder;
    for (const char* top : {"/.Trashes", "/tmp/.Trashes"})
      EXPECT_FALSE(std::filesystem::exists(top)) << "look " << n << ", " << top;
  }
  EXPECT_GT(n, 5);
  EXPECT_TRUE(scene.scratch.stands("home/.Trash/x"));
}

}  // namespace
}  // namespace quarn
