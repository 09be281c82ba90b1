#include "Platform/HostPlatform.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn {
namespace {

std::string destination(const std::string& source) {
  return MoveDestination::dataDestination(hostPlatform(), Path(source), Path("/Volumes/X9/Data")).text();
}

TEST(MoveDestination, whatLiesInTheHomeKeepsItsPlaceRelativeToIt) {
  EXPECT_EQ(destination("/Users/me/Library/Caches/com.foo"), "/Volumes/X9/Data/Library/Caches/com.foo");
  EXPECT_EQ(destination("/Users/me/.foo"), "/Volumes/X9/Data/.foo");
}

TEST(MoveDestination, whatLiesInTheSharedLibraryGoesBelowSystem) {
  EXPECT_EQ(destination("/Library/Caches/com.foo"), "/Volumes/X9/Data/System/Library/Caches/com.foo");
}

TEST(MoveDestination, anythingElseGoesByItsLastName) {
  EXPECT_EQ(destination("/opt/foo/state"), "/Volumes/X9/Data/state");
  EXPECT_EQ(destination("/Users/meadow/Library/x"), "/Volumes/X9/Data/x");
  EXPECT_EQ(destination("/Users/me"), "/Volumes/X9/Data/me");
  EXPECT_EQ(destination("/Library"), "/Volumes/X9/Data/Library");
  EXPECT_EQ(destination("/System/Library/x"), "/Volumes/X9/Data/x");
}

TEST(MoveDestination, bothPathsAreStandardizedFirst) {
  EXPECT_EQ(destination("/Users//me/./Library/Caches/a/"), "/Volumes/X9/Data/Library/Caches/a");
  EXPECT_EQ(destination("/Users/me/../you/a"), "/Volumes/X9/Data/a");
  EXPECT_EQ(MoveDestination::dataDestination(hostPlatform(), Path("/Users/you/Library/a"),
                                             Path("/Volumes/X9/Data"), Path("/Users/./you/"))
                .text(),
            "/Volumes/X9/Data/Library/a");
}

TEST(MoveDestination, aGivenHomeTakesThePlaceOfTheUsers) {
  const auto withHome = [](const std::string& home) {
    return MoveDestination::dataDestination(hostPlatform(), Path("/Users/me/Library/a"), Path("/D"),
                                            Path(home))
        .text();
  };
  EXPECT_EQ(withHome("/Users/me"), "/D/Library/a");
  EXPECT_EQ(withHome("/Users/you"), "/D/a");
}

}  // namespace
}  // namespace quarn
