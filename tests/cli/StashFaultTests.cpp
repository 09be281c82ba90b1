#include <gtest/gtest.h>

#include "tests/cli/Faults.h"
#include "tests/support/Patterns.h"

using namespace expected;
using namespace fault;

namespace {

const std::string trashes = "/Volumes/X9/.Trashes";
const std::string beside = apps + "/.QuarnTrash";

/// A copy that fails after its first file.
void makeHalfCopy() {
  scene::makeApp(app);
  replaceDitto("mkdir -p \"$3/Contents\"; echo half >\"$3/Contents/part\"; exit 1");
}

void expectStashedBeside() {
  const auto stashed = names(beside);
  ASSERT_EQ(stashed.size(), 1U);
  EXPECT_TRUE(patterns::match(stashed[0], "Foo\\.app-[0-9]{9,11}")) << stashed[0];
  EXPECT_EQ(scene::read(beside + "/" + stashed[0] + "/Contents/part"), "half\n");
  EXPECT_FALSE(scene::exists(moved));
}

TEST(StashFault, aDriveWhoseTrashIsAFileHasTheCopyPutBesideItsPlace) {
  makeHalfCopy();
  scene::write(trashes, "no folder");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: exit 1"));
  EXPECT_EQ(scene::tree(app), before);
  expectStashedBeside();
  EXPECT_EQ(scene::read(trashes), "no folder");
}

TEST(StashFault, aTrashThatMayNotBeWrittenHasTheCopyPutBesideItsPlace) {
  makeHalfCopy();
  scene::makeFolder(trashes);
  std::filesystem::permissions(trashes, std::filesystem::perms(0555));
  const auto before = scene::tree(app);
  moveOne();
  EXPECT_EQ(scene::tree(app), before);
  expectStashedBeside();
}

TEST(StashFault, aTrashThatIsALinkIsNotFollowed) {
  makeHalfCopy();
  scene::link(trashes, "/Users/me/Documents");
  const auto others = foreign();
  moveOne();
  EXPECT_EQ(foreign(), others);
  expectStashedBeside();
}

TEST(StashFault, whereNothingCanBeStashedTheCopyStaysAndIsInTheWay) {
  makeHalfCopy();
  scene::write(trashes, "no folder");
  scene::write(beside, "no folder");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: exit 1"));
  EXPECT_EQ(scene::read(moved + "/Contents/part"), "half\n");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Destination already exists."));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::read(beside), "no folder");
}

TEST(StashFault, aFailedVerificationIsStashedTheSameWay) {
  scene::makeApp(app);
  scene::write(trashes, "no folder");
  replaceDitto(realDitto + "; echo half >\"$3/Contents/part\"; rm -r \"$3/Contents/Resources\"");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), unverified(bytes, "Foo.app copied with 6 of 7 entries — 1 missing."));
  EXPECT_EQ(scene::tree(app), before);
  expectStashedBeside();
}

}  // namespace
