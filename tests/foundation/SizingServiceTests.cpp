#include <filesystem>
#include <sys/mount.h>
#include <sys/stat.h>

#include "QuarnCore/foundation/SizingService.h"
#include "tests/support/Child.h"
#include "tests/support/FakeTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

using doubles::FakeTree;

std::int64_t measure(const Path& item) {
  return SizingService::measure(hostPlatform(), item);
}

std::int64_t blocks(const ScratchFolder& folder, const std::string& name) {
  return folder.status(name).st_blocks * 512;
}

std::int64_t walkOver(const FakeTree& files, const SizingService::Cancellation* cancellation = nullptr) {
  FakeTree copy(files);
  Platform platform = replacing({.files = &copy});
  return SizingService::walk(platform, Path("/anywhere"), cancellation);
}

TEST(SizingService, aFileMeasuresItsBlocks) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  ASSERT_GT(blocks(folder, "a"), 0);
  EXPECT_EQ(measure(folder / "a"), blocks(folder, "a"));
}

TEST(SizingService, aFolderMeasuresTheBlocksOfAllBelowButFolders) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  folder.write("one/b", std::string(20'000, 'x'));
  folder.write("one/two/three/c", "x");
  folder.folder("empty");
  EXPECT_EQ(measure(folder.path()),
            blocks(folder, "a") + blocks(folder, "one/b") + blocks(folder, "one/two/three/c"));
}

TEST(SizingService, sizeIsTheSameAsMeasure) {
  const ScratchFolder folder;
  folder.write("one/b", std::string(20'000, 'x'));
  folder.link("link", "one");
  for (const char* name : {"one", "one/b", "link", "nothing"}) {
    EXPECT_EQ(SizingService::size(hostPlatform(), folder / name), measure(folder / name)) << name;
  }
  EXPECT_GT(SizingService::size(hostPlatform(), folder / "link"), 0);
}

TEST(SizingService, aFolderOfHiddenThingsMeasuresNothing) {
  const ScratchFolder folder;
  folder.write(".a", std::string(10'000, 'x'));
  folder.write(".dir/b", std::string(10'000, 'x'));
  folder.write("sub/.c", std::string(10'000, 'x'));
  EXPECT_EQ(measure(folder.path()), 0);
}

TEST(SizingService, aHiddenItemThatIsAskedForItselfMeasures) {
  const ScratchFolder folder;
  folder.write(".dir/b", std::string(10'000, 'x'));
  EXPECT_EQ(measure(folder / ".dir"), blocks(folder, ".dir/b"));
  EXPECT_EQ(measure(folder / ".dir/b"), blocks(folder, ".dir/b"));
}

TEST(SizingService, whatIsNotThereMeasuresNothing) {
  const ScratchFolder folder;
  EXPECT_EQ(measure(folder / "nothing/at all"), 0);
  EXPECT_EQ(SizingService::walk(hostPlatform(), folder / "nothing"), 0);
}

TEST(SizingService, aLinkAtTheTopMeasuresItsTarget) {
  const ScratchFolder folder;
  const ScratchFolder elsewhere;
  elsewhere.write("dir/b", std::string(20'000, 'x'));
  folder.link("to folder", elsewhere.at("dir"));
  folder.link("to file", elsewhere.at("dir/b"));
  folder.link("through another", "to folder");
  for (const char* name : {"to folder", "to file", "through another"}) {
    EXPECT_EQ(measure(folder / name), blocks(elsewhere, "dir/b")) << name;
  }
}

TEST(SizingService, aLinkAboveTheItemIsResolvedToo) {
  const ScratchFolder folder;
  folder.write("real/b", std::string(20'000, 'x'));
  folder.link("link", "real");
  EXPECT_EQ(measure(folder / "link/b"), blocks(folder, "real/b"));
}

TEST(SizingService, linksBelowTheTopMeasureNothing) {
  const ScratchFolder folder;
  const ScratchFolder elsewhere;
  elsewhere.write("b", std::string(90'000, 'x'));
  folder.write("own", std::string(10'000, 'x'));
  folder.link("file", elsewhere.at("b"));
  folder.link("folder", elsewhere.text());
  folder.link("loop", ".");
  folder.link("long", "/" + std::string(200, 'x'));
  EXPECT_EQ(measure(folder.path()), blocks(folder, "own"));
}

TEST(SizingService, danglingAndLoopingLinksMeasureNothing) {
  const ScratchFolder folder;
  folder.link("dangling", "nowhere");
  folder.link("a", "b");
  folder.link("b", "a");
  EXPECT_EQ(measure(folder / "dangling"), 0);
  EXPECT_EQ(measure(folder / "a"), 0);
}

TEST(SizingService, aHardLinkCountsOnceForEachName) {
  const ScratchFolder folder;
  folder.write("one", std::string(10'000, 'x'));
  std::filesystem::create_hard_link(folder.at("one"), folder.at("two"));
  EXPECT_EQ(measure(folder.path()), 2 * blocks(folder, "one"));
}

TEST(SizingService, aPipeMeasuresNothing) {
  const ScratchFolder folder;
  ASSERT_EQ(::mkfifo(folder.at("pipe").c_str(), 0600), 0);
  EXPECT_EQ(measure(folder / "pipe"), 0);
}

TEST(SizingService, aFolderThatCannotBeListedIsPassedOver) {
  const ScratchFolder folder;
  folder.write("closed/a", std::string(10'000, 'x'));
  folder.write("open/b", std::string(20'000, 'x'));
  std::filesystem::permissions(folder.at("closed"), std::filesystem::perms::none);
  const auto failures = child::failuresWithoutRights([&] {
    EXPECT_EQ(measure(folder.path()), blocks(folder, "open/b"));
    EXPECT_EQ(measure(folder / "closed/a"), 0);
  });
  EXPECT_EQ(failures, "");
}

TEST(SizingService, aFolderMountedInTwoPlacesCountsOnce) {
  if (!child::canMount()) GTEST_SKIP() << "needs real mounts";
  const ScratchFolder folder;
  folder.write("one/sub/a", std::string(30'000, 'x'));
  folder.folder("two");
  const auto failures = child::failuresWithOwnMounts([&] {
    ASSERT_EQ(::mount(folder.at("one").c_str(), folder.at("two").c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(folder.status("one").st_ino, folder.status("two").st_ino);
    EXPECT_EQ(measure(folder.path()), blocks(folder, "one/sub/a"));
  });
  EXPECT_EQ(failures, "");
}

TEST(SizingService, aFolderMetTwiceIsEnteredOnce) {
  FakeTree files(hostPlatform().files);
  files.items = {FakeTree::folder("one", {7, 100}), FakeTree::file("one/a", 512),
                 FakeTree::folder("two", {7, 100}), FakeTree::file("two/a", 512)};
  EXPECT_EQ(walkOver(files), 512);
}

TEST(SizingService, foldersAreTheSameOnlyByDeviceAndNumberTogether) {
  FakeTree files(hostPlatform().files);
  files.items = {FakeTree::folder("one", {7, 100}),   FakeTree::file("one/a", 512),
                 FakeTree::folder("two", {8, 100}),   FakeTree::file("two/a", 1024),
                 FakeTree::folder("three", {7, 101}), FakeTree::file("three/a", 2048)};
  EXPECT_EQ(walkOver(files), 512 + 1024 + 2048);
}

TEST(SizingService, everythingButLinksAndFoldersCountsItsBlocks) {
  FakeTree files(hostPlatform().files);
  for (const FileKind kind : {FileKind::regular, FileKind::socket, FileKind::unknown, FileKind::blockDevice,
                              FileKind::characterDevice, FileKind::symbolicLink}) {
    FakeTree::Item item = FakeTree::file("x", 512);
    item.kind = kind;
    files.items.push_back(item);
  }
  EXPECT_EQ(walkOver(files), 5 * 512);
}

TEST(SizingService, anItemThatCannotBeLookedAtIsPassedOver) {
  FakeTree files(hostPlatform().files);
  files.items = {{"gone", FileKind::regular, doubles::unreadable()},
                 {"closed", FileKind::folder, doubles::unreadable()},
                 FakeTree::file("closed/a", 4096),
                 FakeTree::file("b", 512)};
  EXPECT_EQ(walkOver(files), 512);
}

TEST(SizingService, cancelledItStopsAtTheNextFolderWithTheSumSoFar) {
  FakeTree files(hostPlatform().files);
  SizingService::Cancellation cancellation{false};
  files.items = {FakeTree::folder("one", {1, 1}), FakeTree::file("one/a", 512),
                 FakeTree::file("one/b", 1024),   FakeTree::folder("two", {1, 2}),
                 FakeTree::file("two/a", 2048),   FakeTree::file("c", 4096)};
  files.afterEach = [&](const FakeTree::Item& item) {
    if (item.path == "one/a") cancellation = true;
  };
  EXPECT_EQ(walkOver(files, &cancellation), 512 + 1024);
}

TEST(SizingService, cancelledBeforeItBeginsIsNothing) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  const SizingService::Cancellation cancelled{true};
  EXPECT_EQ(SizingService::walk(hostPlatform(), folder.path(), &cancelled), 0);
}

}  // namespace
}  // namespace quarn
