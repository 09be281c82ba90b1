#include "QuarnCore/move/MoverError.h"

namespace quarn {
namespace {

TEST(MoverError, everyReasonHasItsSentence) {
  const std::vector<std::pair<MoverError, std::string>> rows = {
      {MoverError::insufficientSpace(1'234'567'898, 5'500'000),
       "Not enough space. Need 1.23 GB, have 5.5 MB."},
      {MoverError::insufficientSpace(2'000, 1), "Not enough space. Need 2 KB, have 0 KB."},
      {MoverError::copyFailed("ditto failed: exit 1"), "Copy failed: ditto failed: exit 1"},
      {MoverError::verifyFailed("a is missing at the destination."),
       "Verification failed: a is missing at the destination."},
      {MoverError::symlinkFailed("why"), "Symlink creation failed: why"},
      {MoverError::sourceRemoveFailed("why"), "Could not remove original after copy: why"},
      {MoverError::appIsRunning("Foo.app"),
       "App is running: Foo.app. Quit it first, or pass --quit-running."},
      {MoverError::sourceMissing(), "Source path no longer exists."},
      {MoverError::destinationExists(), "Destination already exists."},
  };
  for (const auto& [error, text] : rows) {
    EXPECT_EQ(error.localizedDescription(), text);
    EXPECT_STREQ(error.what(), text.c_str()) << "also for who knows nothing of this program";
  }
}

}  // namespace
}  // namespace quarn
