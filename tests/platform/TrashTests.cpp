#include <cstdlib>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

using TrashSubject = Subject<quarn::Trash>;

std::shared_ptr<quarn::Trash> theHosts() {
  return notOwned(hostPlatform().trash);
}
std::shared_ptr<quarn::Trash> gated() {
  const auto open = std::make_shared<GatedPlatform>([](const std::string&) { return Result<void>(); });
  return {open, &open->platform().trash};
}

/// Works on the drive, so that the Trash of whoever runs the tests is left alone.
class Trash : public testing::TestWithParam<TrashSubject> {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(ScratchFolder::drive())) GTEST_SKIP() << "there is no drive";
    scratch = std::make_unique<ScratchFolder>(ScratchFolder::drive());
  }
  void TearDown() override {
    std::error_code ignored;
    for (const Path& item : trashed) std::filesystem::remove_all(item.text(), ignored);
  }
  Result<Path> moveToTrash(const std::string& name) {
    const auto moved = trash_->moveToTrash(*scratch / name);
    if (moved) trashed.push_back(*moved);
    return moved;
  }

  std::unique_ptr<ScratchFolder> scratch;
  std::vector<Path> trashed;

 private:
  std::shared_ptr<quarn::Trash> trash_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Trash,
                         testing::Values(TrashSubject{"Host", theHosts}, TrashSubject{"Gated", gated}),
                         nameOf<TrashSubject>);

TEST_P(Trash, takesAnItemAndTellsWhereItIsNow) {
  scratch->write("tree/file", "content");
  const auto place = moveToTrash("tree");
  ASSERT_TRUE(place) << place.error().description;
  EXPECT_FALSE(scratch->stands("tree"));
  EXPECT_EQ(contentOf(place->text() + "/file"), "content");
}

TEST_P(Trash, findsAFreeNameForOneThatIsTaken) {
  for (const char* content : {"first", "second", "third"}) {
    scratch->write("Foo.app", content);
    ASSERT_TRUE(moveToTrash("Foo.app"));
  }
  ASSERT_EQ(trashed.size(), 3u);
  EXPECT_EQ(contentOf(trashed[0].text()), "first");
  EXPECT_EQ(contentOf(trashed[1].text()), "second");
  EXPECT_EQ(contentOf(trashed[2].text()), "third");
}

TEST_P(Trash, takesALinkAsALink) {
  scratch->write("target");
  scratch->link("link", "target");
  scratch->link("dangling", "none");
  const auto link = moveToTrash("link"), dangling = moveToTrash("dangling");
  ASSERT_TRUE(link && dangling);
  EXPECT_EQ(std::filesystem::read_symlink(link->text()), "target");
  EXPECT_EQ(std::filesystem::read_symlink(dangling->text()), "none");
  EXPECT_TRUE(scratch->stands("target"));
}

TEST_P(Trash, refusesWhatIsNotThere) {
  const auto moved = moveToTrash("x");
  EXPECT_EQ(code(moved), CocoaErrorCode::fileNoSuchFile);
  EXPECT_EQ(text(moved), "The file “x” doesn’t exist.");
}

TEST(RefusingTrash, isThatOfAVolumeWithoutOne) {
  const ScratchFolder scratch;
  scratch.write("file");
  doubles::RefusingTrash trash;
  EXPECT_EQ(code(trash.moveToTrash(scratch / "file")), CocoaErrorCode::featureUnsupported);
  EXPECT_TRUE(scratch.stands("file"));
}

}  // namespace
}  // namespace quarn::contract
