#include <gtest/gtest.h>

#include "tests/support/Scene.h"
#include "tests/support/VolumeTraits.h"

namespace {

// So that no case is skipped because a trait was found out wrongly.
TEST(VolumeTraits, ofTheRoomsVolumesAreAllButAttributes) {
  for (const std::string& parent : {std::filesystem::temp_directory_path().string(), scene::drive}) {
    const VolumeTraits kept = traitsOf(ScratchFolder(parent));
    EXPECT_TRUE(kept.anyBytes && kept.letterCase && kept.normalForms) << parent;
    EXPECT_TRUE(kept.modes && kept.fifos && kept.sockets && kept.holes && kept.nanoseconds) << parent;
    EXPECT_EQ(kept.longestName, scene::longestName()) << parent;
    EXPECT_EQ(kept.longestLink, 4000u) << parent;
  }
}

TEST(VolumeTraits, leaveNothingBehind) {
  const ScratchFolder scratch;
  traitsOf(scratch);
  EXPECT_EQ(scratch.count(), 0u);
}

}  // namespace
