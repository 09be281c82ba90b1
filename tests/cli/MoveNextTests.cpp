#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps/";

scene::Run timelessly(scene::Run run) {
  run.out = timeless(run.out);
  return run;
}

std::string next(const std::string& name, const std::string& bytes) {
  return "next: " + name + " (" + bytes + " across 1 jobs)\n      /Applications/" + name +
         ".app\n      -> /Volumes/X9\n";
}

std::string done(const std::string& name, const std::string& bytes) {
  return "[1/1] " + name + " (" + bytes + ")\n    verifying\n    linking\n    ok in #.#s -> " + apps + name +
         ".app\n";
}

void makeApp(const std::string& name, std::size_t bytes) {
  scene::makeApp("/Applications/" + name + ".app", {.identifier = "org." + name}, bytes);
}

TEST(MoveNext, theSmallestGoesFirst) {
  makeApp("Big", 90'000);
  makeApp("Small", 10'000);
  const std::string bytes = sizeOf("/Applications/Small.app");
  EXPECT_EQ(shown(timelessly(quarn({"move", "next", "--yes"}))),
            printed(next("Small", bytes) + done("Small", bytes)));
  EXPECT_TRUE(scene::isLink("/Applications/Small.app"));
  EXPECT_FALSE(scene::isLink("/Applications/Big.app"));
}

TEST(MoveNext, theLargestGoesFirstWhenAskedFor) {
  makeApp("Big", 90'000);
  makeApp("Small", 10'000);
  const std::string bytes = sizeOf("/Applications/Big.app");
  EXPECT_EQ(shown(timelessly(quarn({"move", "next", "--yes", "--largest-first"}))),
            printed(next("Big", bytes) + done("Big", bytes)));
}

TEST(MoveNext, dataCountsInWhatIsSmallestAndLargest) {
  makeApp("Middle", 50'000);
  makeApp("Small", 10'000);
  scene::writeBytes(scene::home + "/Library/Caches/org.Small/a", 200'000);
  EXPECT_TRUE(quarn({"move", "next"}).out.starts_with("next: Middle ("));
  EXPECT_TRUE(quarn({"move", "next", "--largest-first"}).out.starts_with("next: Small ("));
  EXPECT_TRUE(quarn({"move", "next", "--no-data"}).out.starts_with("next: Middle ("))
      << "whether it moves or not";
}

TEST(MoveNext, equalSizesKeepTheOrderOfTheNamesBothWays) {
  for (const std::string name : {"delta", "Bravo", "alpha", "Charlie"}) makeApp(name, 10'000);
  for (const bool largestFirst : {false, true}) {
    std::vector<std::string> command = {"move", "next"};
    if (largestFirst) command.emplace_back("--largest-first");
    EXPECT_TRUE(quarn(command).out.starts_with("next: alpha (")) << largestFirst;
  }
}

TEST(MoveNext, withoutApplicationsItEndsWithTwo) {
  EXPECT_EQ(shown(quarn({"move", "next", "--yes"})), shown({2, "nothing eligible to move.\n", ""}));
}

TEST(MoveNext, withEveryApplicationFilteredOutItEndsWithTwo) {
  makeApp("Xcode", 10'000);
  makeApp("Store", 10'000);
  scene::write("/Applications/Store.app/Contents/_MASReceipt/receipt", "receipt");
  EXPECT_EQ(shown(quarn({"move", "next", "--yes"})), shown({2, "nothing eligible to move.\n", ""}));
}

TEST(MoveNext, aMissingDriveEndsWithOneBeforeAnythingIsChosen) {
  EXPECT_EQ(shown(quarn({"move", "next", "--target-drive", "Nope"})),
            failed("Target drive not found: Nope. Run `move drives` to list mounts."));
}

TEST(MoveNext, aRefusedBundleEndsWithOneAndIsTakenAgain) {
  makeApp("Small", 10'000);
  makeApp("Big", 90'000);
  scene::write(apps + "Small.app/other", "taken");
  const auto before = scene::tree("/Applications");
  const std::string bytes = sizeOf("/Applications/Small.app");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(
        shown(quarn({"move", "next", "--yes"})),
        shown({1,
               next("Small", bytes) + "[1/1] Small (" + bytes + ")\n    FAIL: Destination already exists.\n",
               ""}));
  }
  EXPECT_EQ(scene::tree("/Applications"), before);
}

TEST(MoveNext, tooLittleSpaceSkipsAndEndsWithOne) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  makeApp("Foo", 2'000'000);
  const std::string bytes = sizeOf("/Applications/Foo.app");
  EXPECT_EQ(shown(quarn({"move", "next", "--yes", "--target-drive", "Tiny"})),
            shown({1,
                   "next: Foo (" + bytes +
                       " across 1 jobs)\n      /Applications/Foo.app\n"
                       "      -> /Volumes/Tiny\nSKIP: not enough space on drive.\n",
                   ""}));
}

TEST(MoveNext, aDeclinedQuestionEndsWithOne) {
  makeApp("Foo", 10'000);
  const std::string bytes = sizeOf("/Applications/Foo.app");
  EXPECT_EQ(shown(quarn({"move", "next"}, {.input = "n\n"})),
            shown({1, next("Foo", bytes) + "Proceed? [y/N] aborted.\n", ""}));
  EXPECT_FALSE(scene::isLink("/Applications/Foo.app"));
}

TEST(MoveNext, dataMovesWithItUnlessLeftOut) {
  makeApp("Foo", 10'000);
  const std::string data = scene::home + "/Library/Application Support/Foo";
  scene::writeBytes(data + "/a", 10'000);
  const std::string bytes = sizeOf("/Applications/Foo.app");
  const std::string both = size(allocated("/Applications/Foo.app") + allocated(data));
  EXPECT_EQ(shown(quarn({"move", "next"}, {.input = ""})),
            shown({1,
                   "next: Foo (" + both +
                       " across 2 jobs)\n      /Applications/Foo.app\n"
                       "      -> /Volumes/X9\nProceed? [y/N] aborted.\n",
                   ""}));
  EXPECT_EQ(shown(timelessly(quarn({"move", "next", "--yes", "--no-data"}))),
            printed(next("Foo", bytes) + done("Foo", bytes)));
  EXPECT_FALSE(scene::isLink(data));
}

TEST(MoveNext, aLinkedApplicationWithoutDataIsTakenAndSucceedsWithNoJob) {
  scene::makeApp("/Volumes/X9/Foo.app");
  scene::link("/Applications/Foo.app", "/Volumes/X9/Foo.app");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(shown(quarn({"move", "next", "--yes"})),
              printed("next: Foo (Zero KB across 0 jobs)\n      /Applications/Foo.app\n"
                      "      -> /Volumes/X9\n"));
  }
}

TEST(MoveNext, nothingIsSnapshottedFirst) {
  makeApp("Foo", 10'000);
  quarn({"move", "next", "--yes"});
  EXPECT_TRUE(scene::isLink("/Applications/Foo.app"));
  EXPECT_EQ(quarn({"snapshot", "list"}).out, "No local snapshots.\n");
}

}  // namespace
