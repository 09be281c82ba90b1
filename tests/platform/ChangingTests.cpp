#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/FileSystemContract.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"
#include "tests/support/VolumeTraits.h"

namespace quarn::contract {
namespace {

class CreateFolder : public FileSystemContract {};
class CreateSymbolicLink : public FileSystemContract {};
class Remove : public FileSystemContract {};
class SetPermissions : public FileSystemContract {};
class WriteAtomically : public FileSystemContract {};
INSTANTIATE_TEST_SUITE_P(, CreateFolder, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, CreateSymbolicLink, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, Remove, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, SetPermissions, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);
INSTANTIATE_TEST_SUITE_P(, WriteAtomically, testing::ValuesIn(fileSystems()), nameOf<Subject<FileSystem>>);

// Permissions.

TEST_P(SetPermissions, changesFilesAndFolders) {
  ScratchFolder scratch;
  scratch.write("file", "content");
  scratch.folder("folder");
  EXPECT_EQ(code(files().setPermissions(scratch / "file", 0755)), 0);
  EXPECT_EQ(code(files().setPermissions(scratch / "folder", 0500)), 0);
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0755u);
  EXPECT_EQ(scratch.status("folder").st_mode & 07777u, 0500u);
}

TEST_P(SetPermissions, leavesWhatALinkLeadsToAlone) {
  ScratchFolder scratch;
  scratch.write("file", "content");
  ::chmod(scratch.at("file").c_str(), 0600);
  scratch.link("link", "file");
  EXPECT_EQ(code(files().setPermissions(scratch / "link", 0755)), 512);
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0600u);
}

TEST_P(SetPermissions, ofAMissingItemFails) {
  ScratchFolder scratch;
  EXPECT_EQ(code(files().setPermissions(scratch / "none", 0755)), 4);
}

// Creating folders.

TEST_P(CreateFolder, makesMissingParents) {
  ScratchFolder scratch;
  EXPECT_EQ(code(files().createFolder(scratch / "a/b/c")), 0);
  EXPECT_TRUE(std::filesystem::is_directory(scratch.at("a/b/c")));
}

TEST_P(CreateFolder, takesAFolderOrALinkToOneForDone) {
  ScratchFolder scratch;
  scratch.write("folder/kept");
  scratch.link("link", "folder");
  EXPECT_EQ(code(files().createFolder(scratch / "folder")), 0);
  EXPECT_EQ(code(files().createFolder(scratch / "link")), 0);
  EXPECT_EQ(code(files().createFolder(scratch / "link/deeper")), 0);
  EXPECT_TRUE(scratch.stands("folder/kept"));
  EXPECT_TRUE(scratch.stands("folder/deeper"));
  EXPECT_EQ(code(files().createFolder(Path("/"))), 0);
}

TEST_P(CreateFolder, failsWhereAFileStands) {
  ScratchFolder scratch;
  scratch.write("d/x");
  scratch.link("d/dangling", "none");
  EXPECT_EQ(text(files().createFolder(scratch / "d/x")),
            "The file “x” couldn’t be saved in the folder “d” because a file with the same name already "
            "exists.");
  EXPECT_EQ(code(files().createFolder(scratch / "d/x")), 516);
  EXPECT_EQ(code(files().createFolder(scratch / "d/dangling")), 516);
}

TEST_P(CreateFolder, namesTheFileInTheMiddle) {
  ScratchFolder scratch;
  scratch.write("d/x");
  scratch.link("d/dangling", "none");
  for (const char* below : {"d/x/y", "d/x/y/z"}) {
    const auto made = files().createFolder(scratch / below);
    EXPECT_EQ(code(made), 512) << below;
    EXPECT_EQ(text(made), "The file “x” couldn’t be saved in the folder “d”.") << below;
  }
  EXPECT_EQ(text(files().createFolder(scratch / "d/dangling/y")),
            "The file “dangling” couldn’t be saved in the folder “d”.");
}

TEST_P(CreateFolder, hasAllModeBitsLessTheMask) {
  ScratchFolder scratch;
  const mode_t mask = ::umask(027);
  (void)files().createFolder(scratch / "a/b");
  ::umask(mask);
  EXPECT_EQ(scratch.status("a").st_mode & 07777u, 0750u);
  EXPECT_EQ(scratch.status("a/b").st_mode & 07777u, 0750u);
}

TEST_P(CreateFolder, needsPermission) {
  ScratchFolder scratch;
  scratch.folder("closed");
  ::chmod(scratch.at("closed").c_str(), 0500);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto made = files().createFolder(scratch / "closed/x");
              EXPECT_EQ(code(made), 513);
              EXPECT_EQ(text(made), "You don’t have permission to save the file “x” in the folder “closed”.");
            }),
            "");
}

// Links.

TEST_P(CreateSymbolicLink, storesTheTextAsItIs) {
  ScratchFolder scratch;
  EXPECT_EQ(code(files().createSymbolicLink(scratch / "link", "../not/there//")), 0);
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("link")), "../not/there//");
}

TEST_P(CreateSymbolicLink, replacesNothing) {
  ScratchFolder scratch;
  scratch.write("file");
  scratch.link("dangling", "none");
  EXPECT_EQ(code(files().createSymbolicLink(scratch / "file", "x")), 516);
  EXPECT_EQ(code(files().createSymbolicLink(scratch / "dangling", "x")), 516);
  EXPECT_EQ(std::filesystem::read_symlink(scratch.at("dangling")), "none");
  EXPECT_EQ(scratch.read("file"), "content");
}

TEST_P(CreateSymbolicLink, makesNoParents) {
  ScratchFolder scratch;
  const auto made = files().createSymbolicLink(scratch / "none/x", "y");
  EXPECT_EQ(code(made), 4);
  EXPECT_EQ(text(made), "The file “x” doesn’t exist.");
}

// Removing.

TEST_P(Remove, takesALinkAndLeavesItsTarget) {
  ScratchFolder scratch;
  scratch.write("folder/kept");
  scratch.link("link", "folder");
  scratch.link("dangling", "none");
  EXPECT_EQ(code(files().remove(scratch / "link")), 0);
  EXPECT_EQ(code(files().remove(scratch / "dangling")), 0);
  EXPECT_EQ(scratch.count(), 2u);
}

TEST_P(Remove, takesATreeWithEverythingThatLiesInIt) {
  ScratchFolder scratch;
  scratch.write("outside/kept");
  scratch.write("tree/a/b/file");
  const VolumeTraits kept = traitsOf(scratch);
  scratch.write(std::string("tree/.hidden/") + (kept.anyBytes ? "\xFF\n" : "\u00E9\n"));
  scratch.folder("tree/empty");
  scratch.link("tree/a/link", scratch.at("outside"));
  if (kept.fifos) {
    ASSERT_EQ(::mkfifo(scratch.at("tree/fifo").c_str(), 0600), 0);
  }
  if (kept.sockets) {
    ASSERT_TRUE(makeSocket(scratch.at("tree/socket")));
  }
  EXPECT_EQ(code(files().remove(scratch / "tree")), 0);
  EXPECT_FALSE(scratch.stands("tree"));
  EXPECT_TRUE(scratch.stands("outside/kept"));
}

TEST_P(Remove, takesManyFilesInOneFolder) {
  ScratchFolder scratch;
  scratch.folder("tree");
  for (int i = 0; i < 5000; ++i)
    ::close(::open(scratch.at("tree/a file with a longer name " + std::to_string(i)).c_str(), O_CREAT, 0600));
  EXPECT_EQ(code(files().remove(scratch / "tree")), 0);
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST_P(Remove, failsForNothing) {
  ScratchFolder scratch;
  const auto removed = files().remove(scratch / "x");
  EXPECT_EQ(code(removed), 4);
  EXPECT_EQ(text(removed), "“x” couldn’t be removed.");
}

TEST_P(Remove, namesTheTopItemWhateverStoodInTheWay) {
  ScratchFolder scratch;
  scratch.write("top/closed/file");
  ::chmod(scratch.at("top/closed").c_str(), 0500);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto removed = files().remove(scratch / "top");
              EXPECT_EQ(code(removed), 513);
              EXPECT_EQ(text(removed),
                        "“top” couldn’t be removed because you don’t have permission to access it.");
            }),
            "");
  EXPECT_TRUE(scratch.stands("top/closed/file"));
}

TEST_P(Remove, takesAnEmptyFolderThatMayNotBeRead) {
  ScratchFolder scratch;
  scratch.folder("tree/inside");
  ::chmod(scratch.at("tree/inside").c_str(), 0);
  EXPECT_EQ(
      child::failuresWithoutRights([&] { EXPECT_EQ(code(files().remove(scratch / "tree/inside")), 0); }), "");
  EXPECT_FALSE(scratch.stands("tree/inside"));
}

// Atomic writing.

TEST_P(WriteAtomically, leavesTheFileAndNothingElse) {
  ScratchFolder scratch;
  const std::string content(200'000, 'z');
  EXPECT_EQ(code(files().writeAtomically(scratch / "file", content)), 0);
  EXPECT_EQ(code(files().writeAtomically(scratch / std::string(traitsOf(scratch).longestName, 'n'), "long")),
            0);
  EXPECT_EQ(scratch.read("file"), content);
  EXPECT_EQ(scratch.count(), 2u);
}

TEST_P(WriteAtomically, keepsTheModeOfWhatItReplaces) {
  ScratchFolder scratch;
  scratch.write("file", "old");
  ::chmod(scratch.at("file").c_str(), 0640);
  EXPECT_EQ(code(files().writeAtomically(scratch / "file", "new")), 0);
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0640u);
  EXPECT_EQ(scratch.read("file"), "new");
}

TEST_P(WriteAtomically, givesANewFileTheModeOfTheMask) {
  ScratchFolder scratch;
  const mode_t mask = ::umask(027);
  (void)files().writeAtomically(scratch / "file", "new");
  ::umask(mask);
  EXPECT_EQ(scratch.status("file").st_mode & 07777u, 0640u);
}

TEST_P(WriteAtomically, replacesALinkByAFile) {
  ScratchFolder scratch;
  scratch.write("target", "kept");
  scratch.link("link", "target");
  EXPECT_EQ(code(files().writeAtomically(scratch / "link", "new")), 0);
  EXPECT_TRUE(S_ISREG(scratch.status("link").st_mode));
  EXPECT_EQ(scratch.read("target"), "kept");
}

TEST_P(WriteAtomically, neverShowsAPart) {
  ScratchFolder scratch;
  scratch.write("file", "old");
  const int before = ::open(scratch.at("file").c_str(), O_RDONLY);
  (void)files().writeAtomically(scratch / "file", "new");
  char held[4] = {};
  EXPECT_EQ(::read(before, held, 3), 3);
  ::close(before);
  EXPECT_STREQ(held, "old");
}

TEST_P(WriteAtomically, leavesNothingBehindWhenItFails) {
  ScratchFolder scratch;
  scratch.write("d/x/inside");
  const auto ontoFolder = files().writeAtomically(scratch / "d/x", "new");
  EXPECT_EQ(code(ontoFolder), 512);
  EXPECT_EQ(text(ontoFolder), "The file “x” couldn’t be saved in the folder “d”.");
  const auto intoNothing = files().writeAtomically(scratch / "none/x", "new");
  EXPECT_EQ(code(intoNothing), 4);
  EXPECT_EQ(text(intoNothing), "The folder “x” doesn’t exist.");
  EXPECT_EQ(scratch.count(), 3u);
}

TEST_P(WriteAtomically, needsPermissionOnTheFolder) {
  ScratchFolder scratch;
  scratch.write("closed/x", "old");
  ::chmod(scratch.at("closed").c_str(), 0500);
  EXPECT_EQ(child::failuresWithoutRights([&] {
              const auto written = files().writeAtomically(scratch / "closed/x", "new");
              EXPECT_EQ(code(written), 513);
              EXPECT_EQ(text(written),
                        "You don’t have permission to save the file “x” in the folder “closed”.");
            }),
            "");
  EXPECT_EQ(scratch.read("closed/x"), "old");
}

}  // namespace
}  // namespace quarn::contract
