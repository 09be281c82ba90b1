#include <chrono>
#include <gtest/gtest.h>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

/// The application in place, what it looked like, and what else there was.
class DittoFault : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(app);
    scene::link(app + "/Contents/Current", "MacOS");
    before = scene::tree(app);
    bytes = sizeOf(app);
    others = foreign();
  }
  void TearDown() override { EXPECT_EQ(foreign(), others) << "something foreign was touched"; }

  void expectSourceWhole() {
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_FALSE(scene::exists(scene::manifest));
  }

  std::vector<std::string> before;
  std::string bytes;
  std::vector<std::string> others;
};

TEST_F(DittoFault, aMissingToolFailsTheCopy) {
  scene::removeTool("/usr/bin/ditto");
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: The file “ditto” doesn’t exist."));
  expectSourceWhole();
  EXPECT_EQ(names(apps), std::vector<std::string>{});
}

TEST_F(DittoFault, aToolThatIsNoProgramFailsTheCopy) {
  std::filesystem::permissions("/usr/bin/ditto", std::filesystem::perms::owner_read);
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: The file “ditto” doesn’t exist."));
  expectSourceWhole();
}

TEST_F(DittoFault, itsWordsAreTheReason) {
  const std::pair<std::string, std::string> rows[] = {
      {"echo; echo '  ditto: no luck  ' >&2; exit 1", "ditto: no luck"},
      {"printf 'one\\ntwo\\n' >&2; exit 1", "one\ntwo"},
      {"exit 7", "exit 7"},
      {"echo out; exit 255", "exit 255"},
      {"printf ' \\n\\t\\n' >&2; exit 2", "exit 2"},
      {"printf 'bad \\377 byte' >&2; exit 3", "exit 3"},
      {"kill -9 $$", "exit 9"},
      {"echo dying >&2; kill -15 $$", "dying"},
  };
  for (const auto& [body, detail] : rows) {
    replaceDitto(body);
    EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: " + detail)) << body;
    expectSourceWhole();
    EXPECT_EQ(names(apps), std::vector<std::string>{});
  }
}

TEST_F(DittoFault, whatItLeftGoesToTheTrashOfTheDrive) {
  replaceDitto("mkdir -p \"$3/Contents\"; echo half >\"$3/Contents/part\"; echo broken >&2; exit 1");
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: broken"));
  expectSourceWhole();
  EXPECT_EQ(names(apps), std::vector<std::string>{});
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Foo.app/Contents/part"), "half\n");

  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: broken")) << "never in the way";
  EXPECT_EQ(names(scene::driveTrash()), (std::vector<std::string>{"Foo 2.app", "Foo.app"}));

  replaceDitto("exec " + realDitto);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::tree(moved), before);
}

TEST_F(DittoFault, successWithoutACopyIsNoSuccess) {
  replaceDitto("exit 0");
  EXPECT_EQ(shown(moveOne()), unverified(bytes, "Foo.app is missing at the destination."));
  expectSourceWhole();
}

TEST_F(DittoFault, successWithoutAllItemsIsNoSuccess) {
  replaceDitto(realDitto + "; rm -r \"$3/Contents/Resources\"");
  EXPECT_EQ(shown(moveOne()), unverified(bytes, "Foo.app copied with 6 of 8 entries — 2 missing."));
  expectSourceWhole();
  EXPECT_EQ(names(apps), std::vector<std::string>{});
  EXPECT_EQ(names(scene::driveTrash()), std::vector<std::string>{"Foo.app"});
}

TEST_F(DittoFault, successWithADifferentItemIsNoSuccess) {
  const std::pair<std::string, std::string> rows[] = {
      {"truncate -s 10 \"$3/Contents/Resources/data.bin\"",
       "Contents/Resources/data.bin copied with a different file size."},
      {"mv \"$3/Contents/Resources/data.bin\" \"$3/Contents/Resources/other.bin\"",
       "Contents/Resources/data.bin is missing at the destination."},
      {"ln -sfn Resources \"$3/Contents/Current\"", "Contents/Current symlink target does not match."},
      {"rm \"$3/Contents/Current\"; mkdir \"$3/Contents/Current\"",
       "Contents/Current symlink target does not match."},
      {"mv \"$3\" \"$3.x\"; : >\"$3\"", "Foo.app is not a folder at the destination."},
  };
  for (const auto& [damage, reason] : rows) {
    replaceDitto(realDitto + "; " + damage);
    EXPECT_EQ(shown(moveOne()), unverified(bytes, reason));
    expectSourceWhole();
    EXPECT_FALSE(scene::exists(moved));
  }
}

TEST_F(DittoFault, aGrandchildThatHoldsItsOutputHoldsNothingUp) {
  replaceDitto(realDitto + "; sleep 50 & exit 0");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(scene::tree(moved), before);
}

TEST_F(DittoFault, ofAFailedOneWhatAGrandchildStillSaysIsHeardToTheEnd) {
  replaceDitto("{ sleep 1; echo later >&2; } & echo first >&2; exit 1");
  EXPECT_EQ(shown(moveOne()), refused(bytes, "Copy failed: ditto failed: first\nlater"));
  expectSourceWhole();
}

TEST_F(DittoFault, aFloodOfMessagesDoesNotStopTheCopy) {
  replaceDitto(realDitto + "; head -c 1048576 /dev/zero | tr '\\0' e >&2; exit 0");
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::tree(moved), before);
}

TEST_F(DittoFault, aFloodOfMessagesBeforeAFailureIsToldWhole) {
  replaceDitto("head -c 1048576 /dev/zero | tr '\\0' e >&2; head -c 1048576 /dev/zero; exit 1");
  EXPECT_TRUE(shown(moveOne()) ==
              refused(bytes, "Copy failed: ditto failed: " + std::string(1'048'576, 'e')));
  expectSourceWhole();
}

TEST_F(DittoFault, itIsStartedWithThePathsAsTheyAre) {
  replaceDitto("for word; do echo \"<$word>\" >&2; done; exit 1");
  EXPECT_EQ(shown(moveOne()),
            refused(bytes, "Copy failed: ditto failed: <--rsrc>\n<" + app + ">\n<" + moved + ">"));
}

}  // namespace
