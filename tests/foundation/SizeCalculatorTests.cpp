#include <filesystem>
#include <sys/stat.h>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "tests/support/Child.h"
#include "tests/support/FakeTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using doubles::FakeTree;

std::int64_t size(const Path& item) {
  return SizeCalculator::size(hostPlatform(), item);
}

std::int64_t allocated(const ScratchFolder& folder, const std::string& name) {
  return folder.status(name).st_blocks * 512;
}

Platform with(FileSystem& files) {
  return replacing({.files = &files});
}

TEST(SizeCalculator, aFileIsWhatTheDiskAllocatesForIt) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  ASSERT_GT(allocated(folder, "a"), 0);
  EXPECT_EQ(size(folder / "a"), allocated(folder, "a"));
}

TEST(SizeCalculator, aFolderIsTheSumOfItsFilesAtAnyDepth) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  folder.write("one/b", std::string(20'000, 'x'));
  folder.write("one/two/three/c", std::string(1, 'x'));
  EXPECT_EQ(size(folder.path()),
            allocated(folder, "a") + allocated(folder, "one/b") + allocated(folder, "one/two/three/c"));
}

TEST(SizeCalculator, whatIsHiddenAndAllBelowItCountsNothing) {
  const ScratchFolder folder;
  folder.write(".hidden file", std::string(10'000, 'x'));
  folder.write(".hidden/seen", std::string(10'000, 'x'));
  folder.write("sub/.hidden", std::string(10'000, 'x'));
  EXPECT_EQ(size(folder.path()), 0);
}

TEST(SizeCalculator, aHiddenFolderThatIsAskedForItselfCounts) {
  const ScratchFolder folder;
  folder.write(".hidden/seen", std::string(10'000, 'x'));
  EXPECT_EQ(size(folder / ".hidden"), allocated(folder, ".hidden/seen"));
}

TEST(SizeCalculator, whatIsNotThereIsZero) {
  const ScratchFolder folder;
  EXPECT_EQ(size(folder / "nothing"), 0);
}

TEST(SizeCalculator, aLinkIsItsOwnAllocationAndNotThatOfItsTarget) {
  const ScratchFolder folder;
  folder.write("target", std::string(50'000, 'x'));
  folder.link("to file", "target");
  folder.write("dir/inside", std::string(50'000, 'x'));
  folder.link("to folder", "dir");
  folder.link("to nothing", "nowhere");
  for (const char* name : {"to file", "to folder", "to nothing"}) {
    EXPECT_EQ(size(folder / name), allocated(folder, name)) << name;
    EXPECT_LT(size(folder / name), 50'000) << name;
  }
}

TEST(SizeCalculator, linksBelowTheTopAreNotFollowedAndNoFiles) {
  const ScratchFolder folder;
  const ScratchFolder elsewhere;
  elsewhere.write("big", std::string(90'000, 'x'));
  folder.write("own", std::string(10'000, 'x'));
  folder.link("link", elsewhere.at("big"));
  folder.link("link folder", elsewhere.text());
  // Longer than an inode holds, so that the link has blocks of its own where the disk gives it any.
  folder.link("long link", "/" + std::string(200, 'x'));
  EXPECT_EQ(size(folder.path()), allocated(folder, "own"));
}

TEST(SizeCalculator, aHardLinkCountsOnceForEachName) {
  const ScratchFolder folder;
  folder.write("one", std::string(10'000, 'x'));
  std::filesystem::create_hard_link(folder.at("one"), folder.at("two"));
  EXPECT_EQ(size(folder.path()), 2 * allocated(folder, "one"));
}

TEST(SizeCalculator, aSparseFileIsWhatItAllocates) {
  const ScratchFolder folder;
  folder.write("sparse", std::string(10'000, 'x'));
  std::filesystem::resize_file(folder.at("sparse"), 50'000'000);
  EXPECT_EQ(size(folder / "sparse"), allocated(folder, "sparse"));
  EXPECT_LT(size(folder / "sparse"), 50'000'000);
}

TEST(SizeCalculator, emptyFilesAndFoldersAreZero) {
  const ScratchFolder folder;
  folder.write("empty", "");
  folder.folder("none/of/it");
  EXPECT_EQ(size(folder.path()), 0);
}

TEST(SizeCalculator, aPipeInATreeIsNoFile) {
  const ScratchFolder folder;
  ASSERT_EQ(::mkfifo(folder.at("pipe").c_str(), 0600), 0);
  EXPECT_EQ(size(folder.path()), 0);
}

TEST(SizeCalculator, whatCannotBeReadIsLeftOutAndTheRestCounted) {
  const ScratchFolder folder;
  folder.write("closed/a", std::string(10'000, 'x'));
  folder.write("open/b", std::string(20'000, 'x'));
  std::filesystem::permissions(folder.at("closed"), std::filesystem::perms::none);
  const auto failures =
      child::failuresWithoutRights([&] { EXPECT_EQ(size(folder.path()), allocated(folder, "open/b")); });
  EXPECT_EQ(failures, "");
}

TEST(SizeCalculator, theTotalAllocationComesFirstThenTheAllocationThenZero) {
  FakeTree files(hostPlatform().files);
  const auto item = [](std::optional<std::int64_t> total, std::optional<std::int64_t> plain) {
    FakeTree::Item made = FakeTree::file("f", 7'000'000);
    FileAttributes attributes = *made.attributes;
    attributes.size = 9'000'000;
    attributes.totalAllocatedSize = total;
    attributes.allocatedSize = plain;
    made.attributes = attributes;
    return made;
  };
  Platform platform = with(files);
  const Path folder("/Applications");
  files.items = {item(300, 200)};
  EXPECT_EQ(SizeCalculator::size(platform, folder), 300);
  files.items = {item(std::nullopt, 200)};
  EXPECT_EQ(SizeCalculator::size(platform, folder), 200);
  files.items = {item(std::nullopt, std::nullopt)};
  EXPECT_EQ(SizeCalculator::size(platform, folder), 0);
}

TEST(SizeCalculator, anItemWhosePropertiesCannotBeReadCountsNothing) {
  FakeTree files(hostPlatform().files);
  FakeTree::Item good = FakeTree::file("good", 0);
  FileAttributes attributes;
  attributes.kind = FileKind::regular;
  attributes.totalAllocatedSize = 4096;
  good.attributes = attributes;
  files.items = {{"bad", FileKind::regular, doubles::unreadable()}, good};
  Platform platform = with(files);
  EXPECT_EQ(SizeCalculator::size(platform, Path("/Applications")), 4096);
}

TEST(SizeCalculator, countsAreShownInKilobytesMegabytesAndGigabytesOfTheDecimalKind) {
  EXPECT_EQ(SizeCalculator::format(0), "Zero KB");
  EXPECT_EQ(SizeCalculator::format(999), "1 KB");
  EXPECT_EQ(SizeCalculator::format(4096), "4 KB");
  EXPECT_EQ(SizeCalculator::format(12'345'678), "12.3 MB");
  EXPECT_EQ(SizeCalculator::format(5'500'000'000), "5.5 GB");
  EXPECT_EQ(SizeCalculator::format(5'500'000'000'000), "5,500 GB");
}

}  // namespace
}  // namespace quarn
