#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string app = "/Applications/Foo.app";
const std::string question = "Proceed? [y/N] ";

const std::optional<std::string> refusals[] = {"n\n",    "N\n",  "no\n",   "\n",    "",
                                               " y\n",   "y \n", "yeah\n", "ye\n",  "yess\n",
                                               "n\ny\n", "да\n", "\ty\n",  "y\r\n", std::nullopt};

TEST(Prompt, onlyYAndYesInAnyLetterCaseGoOn) {
  for (const std::string answer : {"y\n", "Y\n", "yes\n", "YES\n", "yEs\n", "y", "Yes", "y\nn\n"}) {
    scene::makeApp(app);
    const auto run = quarn({"move", "one", app}, {.input = answer});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find(" (1 jobs)\n" + question + "[1/1] Foo ("), std::string::npos) << run.out;
    EXPECT_TRUE(scene::isLink(app)) << answer;
    std::filesystem::remove(app);
    std::filesystem::remove_all("/Volumes/X9/ExternalQuarn");
  }
}

TEST(Prompt, anythingElseAndTheEndOfInputAbortMoveOneWithoutFailure) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  const std::string start = "Foo  ->  X9   " + sizeOf(app) + " (1 jobs)\n";
  for (const auto& answer : refusals) {
    EXPECT_EQ(shown(quarn({"move", "one", app}, {.input = answer})), printed(start + question + "aborted.\n"))
        << answer.value_or("closed");
  }
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::tree(scene::drive).size(), 1U);
}

TEST(Prompt, aDeclinedMoveAllEndsWithoutFailureAndTakesNoSnapshot) {
  scene::makeApp(app);
  for (const auto& answer : refusals) {
    const auto run = quarn({"move", "all"}, {.input = answer});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.ends_with(")\n" + question + "aborted.\n")) << run.out;
  }
  EXPECT_FALSE(scene::isLink(app));
  EXPECT_EQ(quarn({"snapshot", "list"}).out, "No local snapshots.\n");
}

TEST(Prompt, anAcceptedMoveAllTakesItsSnapshotAfterTheAnswer) {
  scene::makeApp(app);
  scene::removeTool("/usr/bin/tmutil");
  const auto run = quarn({"move", "all"}, {.input = "yes\n"});
  EXPECT_NE(run.out.find(question + "snapshot: skipped (tmutil not present)\n[1/1]"), std::string::npos)
      << run.out;
  EXPECT_TRUE(scene::isLink(app));
}

TEST(Prompt, aDeclinedMoveNextEndsWithOne) {
  scene::makeApp(app);
  for (const auto& answer : refusals) {
    const auto run = quarn({"move", "next"}, {.input = answer});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.ends_with("      -> /Volumes/X9\n" + question + "aborted.\n")) << run.out;
  }
  EXPECT_FALSE(scene::isLink(app));
  EXPECT_EQ(quarn({"move", "next"}, {.input = "Y\n"}).status, 0);
  EXPECT_TRUE(scene::isLink(app));
}

TEST(Prompt, aDeclinedMovePathEndsWithoutFailureAndChangesNothing) {
  scene::write("/Users/me/Movies/a.mov", "film");
  for (const auto& answer : refusals) {
    const auto run =
        quarn({"move", "path", "--source", "/Users/me/Movies", "--destination", "/Volumes/X9/deep/Movies"},
              {.input = answer});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.ends_with("\n" + question + "aborted.\n")) << run.out;
  }
  EXPECT_EQ(scene::read("/Users/me/Movies/a.mov"), "film");
  EXPECT_EQ(scene::tree(scene::drive).size(), 1U);
}

TEST(Prompt, anAcceptedMovePathGoesOn) {
  for (const std::string answer : {"y\n", "YES\n"}) {
    scene::write("/Users/me/Movies/a.mov", "film");
    EXPECT_EQ(quarn({"move", "path", "--source", "/Users/me/Movies", "--destination", "/Volumes/X9/Movies"},
                    {.input = answer})
                  .status,
              0);
    EXPECT_EQ(scene::target("/Users/me/Movies"), "/Volumes/X9/Movies");
    std::filesystem::remove("/Users/me/Movies");
    std::filesystem::remove_all("/Volumes/X9/Movies");
  }
}

}  // namespace
