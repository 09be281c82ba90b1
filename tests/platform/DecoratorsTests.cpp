#include <gtest/gtest.h>

#include "tests/support/GatedPlatform.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

void makeThreeChanges(FileSystem& files, const ScratchFolder& scratch) {
  (void)files.createFolder(scratch / "folder");
  (void)files.createSymbolicLink(scratch / "link", "folder");
  (void)files.rename(scratch / "link", scratch / "moved");
}

TEST(Decorators, aGateRefusesWhatItWantsAndNothingIsChangedThere) {
  const ScratchFolder scratch;
  int passed = 0;
  GatedPlatform gated([&passed](const std::string&) -> Result<void> {
    if (++passed == 2) return PlatformError(cocoaErrorDomain, 513, "refused");
    return {};
  });
  makeThreeChanges(gated.platform().files, scratch);
  EXPECT_EQ(passed, 3);
  EXPECT_TRUE(scratch.stands("folder"));
  EXPECT_FALSE(scratch.stands("link"));
  EXPECT_FALSE(scratch.stands("moved")) << "there was nothing to rename";
}

TEST(Decorators, theTrashAndToolsPassTheGateToo) {
  const ScratchFolder scratch;
  scratch.write("file");
  std::vector<std::string> operations;
  GatedPlatform gated([&operations](const std::string& operation) -> Result<void> {
    operations.push_back(operation);
    return PlatformError(cocoaErrorDomain, 513, "refused");
  });
  EXPECT_FALSE(gated.platform().trash.moveToTrash(scratch / "file"));
  EXPECT_FALSE(gated.platform().processes.start(Path("/bin/rm"), {"-f", scratch.at("file")},
                                                OutputStreams::inherited));
  EXPECT_EQ(operations, (std::vector<std::string>{"trash " + scratch.at("file"),
                                                  "start /bin/rm -f " + scratch.at("file")}));
  EXPECT_TRUE(scratch.stands("file"));
}

TEST(Decorators, recordingKeepsTheOrder) {
  ScratchFolder scratch;
  Recording files(hostPlatform().files);
  makeThreeChanges(files, scratch);
  (void)files.writeAtomically(scratch / "file", "x");
  (void)files.remove(scratch / "file");
  const std::string at = scratch.text();
  EXPECT_EQ(files.operations(),
            (std::vector<std::string>{"createFolder " + at + "/folder",
                                      "createSymbolicLink " + at + "/link -> folder",
                                      "rename " + at + "/link -> " + at + "/moved",
                                      "writeAtomically " + at + "/file", "remove " + at + "/file"}));
}

}  // namespace
}  // namespace quarn
