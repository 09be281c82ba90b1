#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"
#include "tests/support/VolumeTraits.h"

namespace quarn::contract {
namespace {

class Looking : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, Looking, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

TEST_P(Looking, existsFollowsLinks) {
  ScratchFolder scratch;
  scratch.write("file");
  scratch.link("alive", "file");
  scratch.link("dangling", "none");
  EXPECT_TRUE(files().exists(scratch / "file"));
  EXPECT_TRUE(files().exists(scratch / "alive"));
  EXPECT_FALSE(files().exists(scratch / "dangling"));
  EXPECT_FALSE(files().exists(scratch / "none"));
  EXPECT_FALSE(files().exists(scratch / "file/below"));
  EXPECT_FALSE(files().exists(Path("")));
}

TEST_P(Looking, nothingExistsInAFolderThatMayNotBeSearched) {
  ScratchFolder scratch;
  scratch.write("closed/file");
  ::chmod(scratch.at("closed").c_str(), 0600);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              EXPECT_FALSE(files().exists(scratch / "closed/file"));
              EXPECT_EQ(code(files().attributes(scratch / "closed/file")), 257);
            }),
            "");
}

TEST_P(Looking, aLinkToAFolderIsAFolder) {
  ScratchFolder scratch;
  scratch.folder("folder");
  scratch.write("file");
  scratch.link("link", "folder");
  EXPECT_TRUE(files().isFolder(scratch / "folder"));
  EXPECT_TRUE(files().isFolder(scratch / "link"));
  EXPECT_FALSE(files().isFolder(scratch / "file"));
  EXPECT_FALSE(files().isFolder(scratch / "none"));
}

TEST_P(Looking, attributesDescribeTheLinkAndNotItsTarget) {
  ScratchFolder scratch;
  scratch.folder("folder");
  scratch.link("link", "folder");
  scratch.link("dangling", "nowhere");
  EXPECT_EQ(files().attributes(scratch / "link")->kind, FileKind::symbolicLink);
  EXPECT_EQ(files().attributes(scratch / "dangling")->size, 7);
  EXPECT_EQ(files().attributes(scratch / "folder")->kind, FileKind::folder);
  EXPECT_EQ(files().attributes(scratch / "folder")->size, std::nullopt);
}

TEST_P(Looking, attributesOfAFileAreThoseOfTheDisk) {
  ScratchFolder scratch;
  scratch.write("file", std::string(10'000, 'x'));
  const struct stat status = scratch.status("file");
  const auto found = files().attributes(scratch / "file").orThrow();
  EXPECT_EQ(found.kind, FileKind::regular);
  EXPECT_EQ(found.size, 10'000);
  EXPECT_EQ(found.blockBytes, status.st_blocks * 512);
  EXPECT_EQ(found.totalAllocatedSize, status.st_blocks * 512);
  EXPECT_EQ(found.allocatedSize, status.st_blocks * 512);
  EXPECT_EQ(found.identity.inode, status.st_ino);
}

TEST_P(Looking, aFifoIsOfUnknownKindAndASocketIsASocket) {
  ScratchFolder scratch;
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  if (!makeSocket(scratch.at("socket"))) GTEST_SKIP() << "sockets can't be made on this volume";
  EXPECT_EQ(files().attributes(scratch / "fifo")->kind, FileKind::unknown);
  EXPECT_EQ(files().attributes(scratch / "socket")->kind, FileKind::socket);
  EXPECT_EQ(files().attributes(Path("/dev/null"))->kind, FileKind::characterDevice);
}

TEST_P(Looking, attributesOfNothingFail) {
  ScratchFolder scratch;
  const auto found = files().attributes(scratch / "none");
  ASSERT_FALSE(found);
  EXPECT_EQ(found.error().code, 260);
  EXPECT_EQ(found.error().description, "The file “none” couldn’t be opened because there is no such file.");
}

TEST_P(Looking, readLinkGivesTheStoredTextOfAnyLength) {
  ScratchFolder scratch;
  const std::string longText(traitsOf(scratch).longestLink, 'x');
  ASSERT_GE(longText.size(), 1000u);
  scratch.link("short", "../a b");
  scratch.link("long", longText);
  EXPECT_EQ(*files().readSymbolicLink(scratch / "short"), "../a b");
  EXPECT_EQ(*files().readSymbolicLink(scratch / "long"), longText);
}

TEST_P(Looking, readLinkOfNoLinkFails) {
  ScratchFolder scratch;
  scratch.write("plain.txt");
  const auto found = files().readSymbolicLink(scratch / "plain.txt");
  EXPECT_EQ(code(found), 256);
  EXPECT_EQ(found.error().description, "The file “plain.txt” couldn’t be opened.");
  EXPECT_EQ(code(files().readSymbolicLink(scratch / "none")), 260);
}

TEST_P(Looking, resolvingLinksResolvesAllOrNone) {
  ScratchFolder scratch;
  scratch.write("real/file");
  scratch.link("link", "real");
  const Path real = files().resolvingLinks(scratch.path());
  EXPECT_EQ(files().resolvingLinks(scratch / "link/file"), real.appending("real/file"));
  EXPECT_EQ(files().resolvingLinks(scratch / "link/none"), scratch / "link/none");
  EXPECT_EQ(files().resolvingLinks(scratch / "link//./none"), scratch / "link/none");
}

TEST_P(Looking, realPathTellsWhyThereIsNone) {
  ScratchFolder scratch;
  scratch.write("real/file");
  scratch.link("link", "real");
  scratch.link("loop", "loop");
  EXPECT_EQ(files().realPath(scratch / "link/file").orThrow(), files().resolvingLinks(scratch / "real/file"));
  EXPECT_EQ(code(files().realPath(scratch / "link/none")), 260);
  EXPECT_EQ(code(files().realPath(Path(scratch.text() + "/real" + std::string("\0x", 2)))), 260);
  EXPECT_EQ(code(files().realPath(scratch / "loop/below")), 260);
  EXPECT_EQ(code(files().realPath(scratch / std::string(300, 'n'))), 258);
}

TEST_P(Looking, resolvingLinksSpellsNamesAsTheDiskDoes) {
  ScratchFolder scratch;
  const bool areTwo = traitsOf(scratch).letterCase;
  scratch.write("Name");
  EXPECT_EQ(files().resolvingLinks(scratch / "Name").lastComponent(), "Name");
  EXPECT_EQ(files().resolvingLinks(scratch / "nAME").lastComponent(), areTwo ? "nAME" : "Name");
}

TEST_P(Looking, linksThatLoopStayUnresolved) {
  ScratchFolder scratch;
  scratch.link("a", "b");
  scratch.link("b", "a");
  EXPECT_EQ(files().resolvingLinks(scratch / "a"), scratch / "a");
  EXPECT_FALSE(files().exists(scratch / "a"));
}

TEST_P(Looking, standardizedResolvesLinksOnlyWhereDotsGoUpAndAllExists) {
  ScratchFolder scratch;
  scratch.folder("deep/inside");
  scratch.link("link", "deep/inside");
  const Path real = files().resolvingLinks(scratch.path());
  EXPECT_EQ(files().standardized(scratch / "link"), scratch / "link");
  EXPECT_EQ(files().standardized(scratch / "link/./x//y"), scratch / "link/x/y");
  EXPECT_EQ(files().standardized(scratch / "link/.."), real.appending("deep"));
  EXPECT_EQ(files().standardized(scratch / "link/../none"), scratch / "none");
  EXPECT_EQ(files().standardized(scratch / "link/..x"), scratch / "link/..x");
  EXPECT_EQ(files().standardized(Path("/../../a")), Path("/a"));
}

TEST_P(Looking, listGivesNamesOfAnyBytes) {
  ScratchFolder scratch;
  const VolumeTraits kept = traitsOf(scratch);
  std::vector<std::string> names = {"a b", "\"quoted\"", "tab\there", "line\nfeed",
                                    "😀",   ".hidden",    "é",         std::string(kept.longestName, 'n')};
  if (kept.anyBytes) names.push_back("bad\xFFutf8");
  if (kept.normalForms) names.push_back("e\u0301");
  names = sorted(names);
  for (const auto& name : names) scratch.write(name);
  EXPECT_EQ(sorted(*files().list(scratch.path(), Hidden::included)), names);
}

TEST_P(Looking, listLeavesOutNoNameButTheTwoDots) {
  ScratchFolder scratch;
  const std::vector<std::string> names =
      sorted({"._file", "file", ".DS_Store", "...", "..x", ".x", "._", "__MACOSX", "file.", "file~"});
  for (const auto& name : names) scratch.write(name);
  EXPECT_EQ(sorted(*files().list(scratch.path(), Hidden::included)), names);
}

TEST_P(Looking, listLeavesOutHiddenNames) {
  ScratchFolder scratch;
  for (const char* name : {"seen", ".hidden", "..odd", "._seen", "..."}) scratch.write(name);
  EXPECT_EQ(*files().list(scratch.path(), Hidden::skipped), std::vector<std::string>{"seen"});
  EXPECT_EQ(*files().list(scratch.path(), Hidden::skippedDots), std::vector<std::string>{"seen"});
}

TEST_P(Looking, listFailsForALinkAFileAndNothing) {
  ScratchFolder scratch;
  scratch.folder("folder");
  scratch.write("file");
  scratch.link("link", "folder");
  EXPECT_EQ(code(files().list(scratch / "link", Hidden::included)), 256);
  EXPECT_EQ(code(files().list(scratch / "file", Hidden::included)), 256);
  const auto missing = files().list(scratch / "none", Hidden::included);
  EXPECT_EQ(code(missing), 260);
  EXPECT_EQ(missing.error().description, "The folder “none” doesn’t exist.");
}

TEST_P(Looking, listAndReadNeedPermission) {
  ScratchFolder scratch;
  scratch.folder("closed");
  scratch.write("secret");
  ::chmod(scratch.at("closed").c_str(), 0);
  ::chmod(scratch.at("secret").c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto listed = files().list(scratch / "closed", Hidden::included);
              EXPECT_EQ(code(listed), 257);
              EXPECT_EQ(listed.error().description,
                        "The file “closed” couldn’t be opened because you don’t have permission to view it.");
              EXPECT_EQ(code(files().read(scratch / "secret")), 257);
            }),
            "");
}

TEST_P(Looking, readGivesAllBytes) {
  ScratchFolder scratch;
  std::string content(300'000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  scratch.write("file", content);
  scratch.write("empty", "");
  scratch.link("link", "file");
  EXPECT_EQ(*files().read(scratch / "file"), content);
  EXPECT_EQ(*files().read(scratch / "link"), content);
  EXPECT_EQ(*files().read(scratch / "empty"), "");
}

TEST_P(Looking, readOfWhatHoldsNoBytesFails) {
  ScratchFolder scratch;
  scratch.folder("folder");
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  EXPECT_EQ(code(files().read(scratch / "folder")), 256);
  EXPECT_EQ(code(files().read(scratch / "fifo")), 256);
  EXPECT_EQ(code(files().read(scratch / "none")), 260);
}

TEST_P(Looking, readStartGivesTheFirstBytesOfAFileOfAnySize) {
  ScratchFolder scratch;
  scratch.write("file", "0123456789");
  scratch.write("empty", "");
  scratch.write("huge", "start");
  // Larger than `read` takes; the rest is a hole.
  ASSERT_EQ(::truncate(scratch.at("huge").c_str(), off_t{300} << 20), 0);
  scratch.link("link", "file");
  EXPECT_EQ(*files().readStart(scratch / "file", 4), "0123");
  EXPECT_EQ(*files().readStart(scratch / "file", 10), "0123456789");
  EXPECT_EQ(*files().readStart(scratch / "file", 256), "0123456789");
  EXPECT_EQ(*files().readStart(scratch / "link", 4), "0123");
  EXPECT_EQ(*files().readStart(scratch / "empty", 256), "");
  EXPECT_EQ(*files().readStart(scratch / "huge", 5), "start");
}

TEST_P(Looking, readStartOfWhatHoldsNoBytesFails) {
  ScratchFolder scratch;
  scratch.folder("folder");
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  EXPECT_EQ(code(files().readStart(scratch / "folder", 256)), 256);
  EXPECT_EQ(code(files().readStart(scratch / "fifo", 256)), 256);
  EXPECT_EQ(code(files().readStart(scratch / "none", 256)), 260);
}

TEST_P(Looking, attributesTellThePermissionsOfTheItemItself) {
  ScratchFolder scratch;
  scratch.write("file");
  ::chmod(scratch.at("file").c_str(), 0640);
  scratch.folder("folder");
  ::chmod(scratch.at("folder").c_str(), 01755);
  scratch.link("link", "file");
  EXPECT_EQ(files().attributes(scratch / "file")->permissions, 0640u);
  EXPECT_EQ(files().attributes(scratch / "folder")->permissions, 01755u);
  EXPECT_NE(files().attributes(scratch / "link")->permissions, 0640u);
}

TEST_P(Looking, attributesTellWhenTheItemItselfChanged) {
  ScratchFolder scratch;
  scratch.write("file");
  scratch.link("link", "file");
  const timespec times[] = {{1, 0}, {1'100'000'000, 500'000'000}};
  ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at("file").c_str(), times, 0), 0);
  const auto changed = Moment(std::chrono::seconds(1'100'000'000)) + std::chrono::milliseconds(500);
  EXPECT_EQ(files().attributes(scratch / "file")->modified, changed);
  EXPECT_NE(files().attributes(scratch / "link")->modified, changed);
}

TEST_P(Looking, aTimeBeyondEveryMomentIsTheLastOne) {
  ScratchFolder scratch;
  scratch.write("file");
  // Some volumes keep it, others cut it.
  const timespec times[] = {{1, 0}, {300'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, scratch.at("file").c_str(), times, 0), 0);
  EXPECT_GT(files().attributes(scratch / "file")->modified, Moment(std::chrono::seconds(2'000'000'000)));
}

TEST_P(Looking, aZeroByteInAPathNamesNothing) {
  ScratchFolder scratch;
  scratch.write("file");
  const Path cut(scratch.at("file") + std::string("\0x", 2));
  EXPECT_FALSE(files().exists(cut));
  EXPECT_FALSE(files().remove(cut));
  EXPECT_TRUE(scratch.stands("file"));
}

TEST_P(Looking, aZeroByteInAPathLeadsNowhere) {
  ScratchFolder scratch;
  const Path home = files().resolvingLinks(scratch.path());
  scratch.write("folder/file");
  scratch.link("link", "folder");
  const std::string cut("\0x", 2);
  const Path link = home.appending("link" + cut);
  EXPECT_EQ(files().resolvingLinks(link), link);
  const Path up = home.appending("link" + cut + "/../file");
  EXPECT_EQ(files().standardized(up), home.appending("file"));
}

TEST_P(Looking, pathsLongerThanOneCallTakesWork) {
  if (scene::inProot()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
  ScratchFolder scratch;
  makeDeepTree(scratch.text(), 3000);
  std::string deep = scratch.text();
  for (int i = 0; i < 3000; ++i) deep += "/d";
  EXPECT_TRUE(files().isFolder(Path(deep)));
  EXPECT_TRUE(files().exists(Path(deep + "/f")));
  EXPECT_FALSE(files().exists(Path(deep + "/none")));
  EXPECT_EQ(files().attributes(Path(deep + "/f"))->kind, FileKind::regular);
  EXPECT_TRUE(files().writeAtomically(Path(deep + "/f"), "new"));
  EXPECT_EQ(*files().read(Path(deep + "/f")), "new");
  EXPECT_TRUE(files().createFolder(Path(deep + "/e/e")));
  EXPECT_TRUE(files().createSymbolicLink(Path(deep + "/l"), "x"));
  EXPECT_EQ(*files().readSymbolicLink(Path(deep + "/l")), "x");
  EXPECT_TRUE(files().rename(Path(deep + "/f"), Path(deep + "/g")));
  EXPECT_EQ(files().list(Path(deep), Hidden::included)->size(), 3u);
  EXPECT_TRUE(files().remove(scratch / "d"));
}

}  // namespace
}  // namespace quarn::contract
