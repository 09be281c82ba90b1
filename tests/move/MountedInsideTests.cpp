#include <filesystem>
#include <sys/mount.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/move/PathMover.h"
#include "tests/move/Moving.h"
#include "tests/support/Unresolving.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string inside = support + "/Disk";
const std::string refusal = "A volume is mounted inside Foo: " + inside + ". Eject it first.";

/// Two ways in which another volume can stand inside: one with a device of its own, and a second place of
/// a folder that lies elsewhere on the same device.
struct Kind {
  const char* name;
  bool (*mount)();
};

const Kind kinds[] = {
    {"another device", [] { return child::mountMemory(inside, "size=1m"); }},
    {"the same device",
     [] {
       scene::makeFolder("/Users/me/Documents/Elsewhere");
       return ::mount("/Users/me/Documents/Elsewhere", inside.c_str(), nullptr, MS_BIND, nullptr) == 0;
     }},
};

void forEachKind(const std::function<void()>& body) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  for (const Kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    fs::remove_all(support);
    scene::write(support + "/state", "mine");
    scene::makeFolder(inside);
    EXPECT_EQ(child::failuresWithOwnMounts([&] {
                ASSERT_TRUE(kind.mount());
                scene::write(inside + "/foreign", "on another volume");
                body();
                EXPECT_EQ(scene::read(inside + "/foreign"), "on another volume");
                EXPECT_EQ(scene::read(support + "/state"), "mine");
              }),
              "");
  }
}

TEST(MountedInside, aMoveIsRefusedBeforeTheFirstChange) {
  forEachKind([] {
    EXPECT_EQ(move(hostPlatform(), support, supportFolder), refusal);
    EXPECT_FALSE(scene::exists(scene::drive + "/ExternalQuarn"));
  });
}

TEST(MountedInside, anItemThatIsAVolumeItselfIsNotMoved) {
  forEachKind([] {
    EXPECT_EQ(move(hostPlatform(), inside, supportFolder), "Disk is a volume of its own: " + inside);
  });
}

TEST(MountedInside, aPathMoveIsRefusedBeforeTheFirstChange) {
  forEachKind([] {
    EXPECT_EQ(thrown([] { PathMover::plan(hostPlatform(), Path(support), Path(scene::drive + "/Foo")); }),
              refusal);
    EXPECT_FALSE(scene::exists(scene::drive + "/Foo"));
  });
}

TEST(MountedInside, theWayHomeIsRefusedWithTheLinkInItsPlace) {
  forEachKind([] {
    const std::string link = "/Users/me/Foo";
    fs::remove(link);
    scene::link(link, support);
    EXPECT_EQ(restore(hostPlatform(), link), refusal);
    EXPECT_EQ(scene::target(link), support);
  });
}

TEST(MountedInside, aVolumeMountedDuringTheCopyIsNotEmptied) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  scene::write(support + "/state", "mine");
  scene::makeFolder(inside);
  EXPECT_EQ(child::failuresWithOwnMounts([] {
              Platform& host = hostPlatform();
              EXPECT_EQ(thrown([&host] {
                          MoverEngine::moveAndLink(host, Path(support), Path(supportFolder), false,
                                                   [](const JobStatus& status) {
                                                     if (status.stage != JobStatus::Stage::verifying) return;
                                                     ASSERT_TRUE(kinds[1].mount());
                                                   },
                                                   {});
                        }),
                        "Could not remove original after copy: “Foo” couldn’t be removed.");
              EXPECT_EQ(scene::read(support + "/state"), "mine");
              EXPECT_FALSE(scene::exists(movedSupport)) << "the copy is in the Trash";
            }),
            "");
}

TEST(MountedInside, removalNeverEntersAVolume) {
  forEachKind([] {
    EXPECT_FALSE(hostPlatform().files.remove(Path(inside)));
    EXPECT_FALSE(hostPlatform().files.remove(Path(support)));
    scene::write(support + "/state", "mine");
  });
}

TEST(MountedInside, isNotDeniedWhereTheFolderAroundCannotBeResolved) {
  scene::write(support + "/state", "mine");
  Unresolving files("/Users/me/Library");
  EXPECT_EQ(move(replacing({.files = &files}), support, supportFolder),
            "It can't be seen whether a volume is mounted inside Foo: " + std::string(Unresolving::sentence));
  EXPECT_EQ(scene::read(support + "/state"), "mine");
  EXPECT_FALSE(scene::isLink(support));
}

}  // namespace
}  // namespace quarn
