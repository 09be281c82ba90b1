#include <algorithm>
#include <gtest/gtest.h>

#include "Platform/linux/WatchedFolders.h"

namespace quarn {
namespace {

using Watches = std::vector<int>;

std::string pathOf(const WatchedFolders& folders, int watch) {
  const std::string* path = folders.path(watch);
  return path ? *path : "none";
}

Watches sorted(Watches watches) {
  std::sort(watches.begin(), watches.end());
  return watches;
}

TEST(WatchedFolders, findEachOtherByPathAndByWatch) {
  WatchedFolders folders;
  EXPECT_EQ(folders.put("/a", 1), WatchedFolders::unwatched);
  EXPECT_EQ(folders.put("/b", 2), WatchedFolders::unwatched);
  EXPECT_EQ(folders.watch("/a"), 1);
  EXPECT_EQ(pathOf(folders, 2), "/b");
  EXPECT_EQ(folders.watch("/c"), std::nullopt);
  EXPECT_EQ(pathOf(folders, 3), "none");
}

TEST(WatchedFolders, givesBackTheWatchThatAFolderHadBefore) {
  WatchedFolders folders;
  folders.put("/a", 1);
  EXPECT_EQ(folders.put("/a", 1), WatchedFolders::unwatched) << "it still has it";
  EXPECT_EQ(folders.put("/a", 2), 1);
  EXPECT_EQ(pathOf(folders, 1), "none");
  EXPECT_EQ(folders.put("/a", WatchedFolders::unwatched), 2);
  EXPECT_EQ(folders.watch("/a"), WatchedFolders::unwatched);
  EXPECT_EQ(pathOf(folders, 2), "none");
}

TEST(WatchedFolders, aWatchGoesAlongWithItsFolder) {
  WatchedFolders folders;
  folders.put("/old", 1);
  folders.put("/new", 1);
  EXPECT_EQ(pathOf(folders, 1), "/new");
  EXPECT_EQ(folders.watch("/old"), std::nullopt);
}

TEST(WatchedFolders, severalMayBeKnownWithoutAWatch) {
  WatchedFolders folders;
  folders.put("/a", WatchedFolders::unwatched);
  folders.put("/b", WatchedFolders::unwatched);
  EXPECT_EQ(folders.watch("/a"), WatchedFolders::unwatched);
  EXPECT_EQ(folders.watch("/b"), WatchedFolders::unwatched);
  EXPECT_EQ(pathOf(folders, WatchedFolders::unwatched), "none");
  EXPECT_EQ(folders.takeWithAllBelow("/a"), Watches());
  EXPECT_EQ(folders.watch("/a"), std::nullopt);
}

WatchedFolders tree() {
  WatchedFolders folders;
  int watch = 0;
  // What lies beside "/a" sorts before and behind what lies in it.
  for (const char* path : {"/a", "/a b", "/a!", "/a/b", "/a/b/c", "/a/\xff", "/a0", "/aa/b"})
    folders.put(path, ++watch);
  return folders;
}

TEST(WatchedFolders, takesAFolderWithAllBelowItAndNoOther) {
  WatchedFolders folders = tree();
  EXPECT_EQ(sorted(folders.takeWithAllBelow("/a")), (Watches{1, 4, 5, 6}));
  EXPECT_EQ(folders.all().size(), 4u);
  EXPECT_EQ(pathOf(folders, 5), "none");
  EXPECT_EQ(folders.watch("/a b"), 2);
  EXPECT_EQ(folders.takeWithAllBelow("/a"), Watches());
}

TEST(WatchedFolders, takesAllBelowAFolderAndKeepsIt) {
  WatchedFolders folders = tree();
  EXPECT_EQ(sorted(folders.takeAllBelow("/a")), (Watches{4, 5, 6}));
  EXPECT_EQ(folders.watch("/a"), 1);
}

TEST(WatchedFolders, takesEverythingBelowTheRoot) {
  WatchedFolders folders = tree();
  folders.put("/", 9);
  EXPECT_EQ(folders.takeAllBelow("/").size(), 8u);
  EXPECT_EQ(folders.all().size(), 1u);
  EXPECT_EQ(folders.takeWithAllBelow("/"), Watches{9});
}

TEST(WatchedFolders, forgetsOneWatchAndNothingBelowItsFolder) {
  WatchedFolders folders = tree();
  folders.forget(4);
  folders.forget(99);
  EXPECT_EQ(folders.watch("/a/b"), std::nullopt);
  EXPECT_EQ(folders.watch("/a/b/c"), 5);
  EXPECT_EQ(folders.all().size(), 7u);
}

TEST(WatchedFolders, pathsInTheRootHaveOneSlash) {
  EXPECT_EQ(pathIn("/", "a"), "/a");
  EXPECT_EQ(pathIn("/a", "b/c"), "/a/b/c");
}

}  // namespace
}  // namespace quarn
