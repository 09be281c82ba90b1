#include <cerrno>
#include <gtest/gtest.h>
#include <ostream>

#include "Platform/CocoaError.h"
#include "Platform/HostPlatform.h"

namespace quarn {
namespace {

using CocoaError::Operation;

struct Row {
  Operation operation;
  int errnoValue;
  int code;
  const char* sentence;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
  return out << row.sentence;
}

class CocoaErrorRows : public testing::TestWithParam<Row> {};

TEST_P(CocoaErrorRows, givesTheNumberAndTheSentenceOfTheSystem) {
  const Row& row = GetParam();
  const auto error = CocoaError::fromErrno(row.operation, row.errnoValue, Path("/a/d/x"), Path("/a/p/x"),
                                           [] { return "v"; });
  EXPECT_EQ(error.domain, "NSCocoaErrorDomain");
  EXPECT_EQ(error.code, row.code);
  EXPECT_EQ(error.localizedDescription(), row.sentence);
}

TEST(CocoaError, anotherDomainHasNoSentenceButItsNumber) {
  const auto error = CocoaError::ofDomain("NSOSStatusErrorDomain", -43);
  EXPECT_EQ(error.domain, "NSOSStatusErrorDomain");
  EXPECT_EQ(error.code, -43);
  EXPECT_EQ(error.localizedDescription(),
            "The operation couldn’t be completed. (NSOSStatusErrorDomain error -43.)");
}

INSTANTIATE_TEST_SUITE_P(
    Reading, CocoaErrorRows,
    testing::Values(Row{Operation::readFile, ENOENT, 260,
                        "The file “x” couldn’t be opened because there is no such file."},
                    Row{Operation::readFile, EACCES, 257,
                        "The file “x” couldn’t be opened because you don’t have permission to view it."},
                    Row{Operation::readFile, EPERM, 257,
                        "The file “x” couldn’t be opened because you don’t have permission to view it."},
                    Row{Operation::readFile, EINVAL, 256, "The file “x” couldn’t be opened."},
                    Row{Operation::readFile, EISDIR, 256, "The file “x” couldn’t be opened."},
                    Row{Operation::readFile, ENAMETOOLONG, 258, "The file “x” couldn’t be opened."},
                    Row{Operation::readFile, EFBIG, 263, "The file “x” couldn’t be opened."},
                    Row{Operation::listFolder, ENOENT, 260, "The folder “x” doesn’t exist."},
                    Row{Operation::listFolder, EACCES, 257,
                        "The file “x” couldn’t be opened because you don’t have permission to view it."},
                    Row{Operation::listFolder, ENOTDIR, 256, "The file “x” couldn’t be opened."}));

INSTANTIATE_TEST_SUITE_P(
    Removing, CocoaErrorRows,
    testing::Values(Row{Operation::remove, ENOENT, 4, "“x” couldn’t be removed."},
                    Row{Operation::remove, EACCES, 513,
                        "“x” couldn’t be removed because you don’t have permission to access it."},
                    Row{Operation::remove, EPERM, 513,
                        "“x” couldn’t be removed because you don’t have permission to access it."},
                    Row{Operation::remove, ENOTEMPTY, 513,
                        "“x” couldn’t be removed because you don’t have permission to access it."},
                    Row{Operation::remove, EIO, 512, "“x” couldn’t be removed."},
                    Row{Operation::remove, EROFS, 642, "“x” couldn’t be removed."}));

INSTANTIATE_TEST_SUITE_P(
    Moving, CocoaErrorRows,
    testing::Values(
        Row{Operation::move, ENOENT, 4,
            "“x” couldn’t be moved to “p” because either the former doesn’t exist, or the folder containing "
            "the latter doesn’t exist."},
        Row{Operation::move, EEXIST, 516,
            "“x” couldn’t be moved to “p” because an item with the same name already exists."},
        Row{Operation::move, EACCES, 513,
            "“x” couldn’t be moved because you don’t have permission to access “p”."},
        Row{Operation::move, EIO, 512, "“x” couldn’t be moved to “p”."},
        Row{Operation::move, ENOTEMPTY, 512, "“x” couldn’t be moved to “p”."},
        Row{Operation::move, ENOSPC, 640,
            "You can’t save the file “x” because the volume “v” is out of space."},
        Row{Operation::move, EROFS, 642, "You can’t save the file “x” because the volume “v” is read only."},
        Row{Operation::copy, EEXIST, 516,
            "“x” couldn’t be copied to “p” because an item with the same name already exists."},
        Row{Operation::copy, EPERM, 513,
            "“x” couldn’t be copied because you don’t have permission to access “p”."},
        Row{Operation::copy, ENOENT, 4, "The file “x” doesn’t exist."},
        Row{Operation::copy, EIO, 512, "“x” couldn’t be copied to “p”."},
        Row{Operation::copy, EROFS, 642,
            "You can’t save the file “x” because the volume “v” is read only."}));

INSTANTIATE_TEST_SUITE_P(
    Saving, CocoaErrorRows,
    testing::Values(
        Row{Operation::save, EEXIST, 516,
            "The file “x” couldn’t be saved in the folder “d” because a file with the same name already "
            "exists."},
        Row{Operation::save, EACCES, 513,
            "You don’t have permission to save the file “x” in the folder “d”."},
        Row{Operation::save, EIO, 512, "The file “x” couldn’t be saved in the folder “d”."},
        Row{Operation::save, ENAMETOOLONG, 514, "The file “x” couldn’t be saved in the folder “d”."},
        Row{Operation::save, ENOENT, 4, "The file “x” doesn’t exist."},
        Row{Operation::save, ENOSPC, 640,
            "You can’t save the file “x” because the volume “v” is out of space."},
        Row{Operation::save, EDQUOT, 640,
            "You can’t save the file “x” because the volume “v” is out of space."},
        Row{Operation::saveAtomically, ENOENT, 4, "The folder “x” doesn’t exist."},
        Row{Operation::saveAtomically, EACCES, 513,
            "You don’t have permission to save the file “x” in the folder “d”."},
        Row{Operation::saveAtomically, EISDIR, 512, "The file “x” couldn’t be saved in the folder “d”."},
        Row{Operation::saveAtomically, ENOSPC, 640,
            "You can’t save the file “x” because the volume “v” is out of space."},
        Row{Operation::saveAtomically, EROFS, 642,
            "You can’t save the file “x” because the volume “v” is read only."}));

INSTANTIATE_TEST_SUITE_P(
    Trashing, CocoaErrorRows,
    testing::Values(Row{Operation::trash, ENOENT, 4, "The file “x” doesn’t exist."},
                    Row{Operation::trash, EACCES, 513,
                        "“x” couldn’t be moved to the trash because you don’t have permission to access it."},
                    Row{Operation::trash, EIO, 512, "“x” couldn’t be moved to the trash."}));

TEST(CocoaError, aParentThatIsTheRootIsCalledByTheVolumesName) {
  const std::string name = hostPlatform().volumes.properties(Path("/"))->name.value();
  const auto moved = CocoaError::fromErrno(Operation::move, EEXIST, Path("/a/x"), Path("/x"));
  EXPECT_EQ(moved.description,
            "“x” couldn’t be moved to “" + name + "” because an item with the same name already exists.");
  const auto saved = CocoaError::fromErrno(Operation::save, EACCES, Path("/x"));
  EXPECT_EQ(saved.description,
            "You don’t have permission to save the file “x” in the folder “" + name + "”.");
}

TEST(CocoaError, theVolumesNameIsAskedForOnlyWhenTheVolumeIsToBlame) {
  int asked = 0;
  const auto name = [&] {
    ++asked;
    return std::string("v");
  };
  (void)CocoaError::fromErrno(Operation::save, EACCES, Path("/d/x"), {}, name);
  (void)CocoaError::fromErrno(Operation::remove, EROFS, Path("/d/x"), {}, name);
  EXPECT_EQ(asked, 0);
  (void)CocoaError::fromErrno(Operation::save, EROFS, Path("/d/x"), {}, name);
  EXPECT_EQ(asked, 1);
}

TEST(CocoaError, aNumberOfTheSystemsOwnIsKeptAndGetsTheSentenceOfItsOperation) {
  const auto missing = CocoaError::fromCode(Operation::move, 4, Path("/a/d/x"), Path("/a/p/x"));
  EXPECT_EQ(missing.code, 4);
  EXPECT_EQ(missing.localizedDescription(),
            "“x” couldn’t be moved to “p” because either the former doesn’t exist, or the folder containing "
            "the latter doesn’t exist.");
  const auto unknown = CocoaError::fromCode(Operation::remove, 4711, Path("/a/d/x"));
  EXPECT_EQ(unknown.code, 4711);
  EXPECT_EQ(unknown.localizedDescription(), "“x” couldn’t be removed.");
}

TEST(CocoaError, aToolThatCannotBeStartedDoesNotExist) {
  const auto error = CocoaError::toolNotStarted(Path("/usr/bin/nope"));
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.description, "The file “nope” doesn’t exist.");
}

TEST(CocoaError, aVolumeWithoutTrashIsNamed) {
  const auto error = CocoaError::noTrash(Path("/Volumes/X9/x"), "X9");
  EXPECT_EQ(error.code, 3328);
  EXPECT_EQ(error.description,
            "“x” couldn’t be moved to the trash because the volume “X9” doesn’t have one.");
}

TEST(CocoaError, aFileInAnotherEncodingNamesTheOneThatWasTried) {
  const auto error = CocoaError::notUTF8(Path("/d/x"));
  EXPECT_EQ(error.code, 261);
  EXPECT_EQ(error.description, "The file “x” couldn’t be opened using text encoding Unicode (UTF-8).");
}

TEST(CocoaError, whatIsNoPropertyListIsInTheWrongFormat) {
  const auto error = CocoaError::notPropertyList();
  EXPECT_EQ(error.domain, "NSCocoaErrorDomain");
  EXPECT_EQ(error.code, 3840);
  EXPECT_EQ(error.description, "The data couldn’t be read because it isn’t in the correct format.");
}

}  // namespace
}  // namespace quarn
