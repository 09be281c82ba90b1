#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string foo = "/Applications/Foo.app";

/// A drive, and an application that fills it to the last byte.
class ExactFit : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
    scene::plug("Tiny", "1m");
    scene::makeApp(foo);
    const auto missing = freeBytes("/Volumes/Tiny") - allocated(foo);
    scene::writeBytes(foo + "/Contents/Resources/rest", static_cast<std::size_t>(missing));
    ASSERT_EQ(allocated(foo), freeBytes("/Volumes/Tiny"));
  }
  /// What a command of the group says about a move to the drive.
  static scene::Run says(std::vector<std::string> words) {
    words.insert(words.begin(), "move");
    words.insert(words.end(), {"--target-drive", "Tiny"});
    return quarn(words, {.input = "n\n"});
  }
  static void addOneBlock() { scene::writeBytes(foo + "/Contents/Resources/more", 1); }
};

TEST_F(ExactFit, isPlannedWithoutAWarning) {
  EXPECT_EQ(says({"plan"}).out.find("WARNING"), std::string::npos);
  addOneBlock();
  EXPECT_NE(says({"plan"}).out.find("# WARNING: queue is "), std::string::npos);
}

TEST_F(ExactFit, isEnoughForAll) {
  EXPECT_EQ(says({"all", "--dry-run"}).status, 0);
  addOneBlock();
  EXPECT_EQ(says({"all", "--dry-run"}).status, 1);
}

TEST_F(ExactFit, isEnoughForOne) {
  EXPECT_NE(says({"one", foo}).out.find("Proceed? [y/N] aborted."), std::string::npos);
  addOneBlock();
  const auto refused = says({"one", foo});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.err.starts_with("error\tNot enough space: need ")) << refused.err;
}

TEST_F(ExactFit, isEnoughForNext) {
  EXPECT_NE(says({"next"}).out.find("Proceed? [y/N] aborted."), std::string::npos);
  addOneBlock();
  EXPECT_NE(says({"next"}).out.find("SKIP: not enough space on drive."), std::string::npos);
}

}  // namespace
