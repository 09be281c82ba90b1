#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>

#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

namespace {

const scene::Failure full{scene::CallKind::changing, ENOSPC, false};

TEST(FailedAt, theCallIsNotCarriedOutAndTheProgramLearnsTheError) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const auto run = scene::failedAt(1, full, {"mkdir", scratch.at("a"), scratch.at("b")});
  ASSERT_TRUE(run);
  EXPECT_TRUE(run->hasFailed);
  EXPECT_EQ(run->status, 1);
  EXPECT_NE(run->call.find(scratch.at("a")), std::string::npos) << run->call;
  EXPECT_NE(run->said.find("No space left on device"), std::string::npos) << run->said;
  EXPECT_FALSE(scene::exists(scratch.at("a")));
  EXPECT_TRUE(scene::exists(scratch.at("b"))) << "it failed once";
}

TEST(FailedAt, forGoodMeansEveryCallFromThenOn) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const auto run = scene::failedAt(2, {scene::CallKind::changing, EROFS, true},
                                   {"mkdir", scratch.at("a"), scratch.at("b"), scratch.at("c")});
  ASSERT_TRUE(run);
  EXPECT_TRUE(scene::exists(scratch.at("a")));
  EXPECT_FALSE(scene::exists(scratch.at("b")));
  EXPECT_FALSE(scene::exists(scratch.at("c")));
}

TEST(FailedAt, aProgramWithFewerCallsRunsThrough) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const auto run = scene::failedAt(2, full, {"mkdir", scratch.at("a")});
  ASSERT_TRUE(run);
  EXPECT_FALSE(run->hasFailed);
  EXPECT_EQ(run->status, 0);
}

TEST(FailedAt, aLookThatFailsIsCountedByItself) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  scene::write(scratch.at("a"), "text");
  bool wasRead = false;
  for (int n = 1; !wasRead && n < 100; ++n) {
    const auto run =
        scene::failedAt(n, {scene::CallKind::looking, EIO, false}, {"/bin/cat", scratch.at("a")});
    ASSERT_TRUE(run);
    ASSERT_TRUE(run->hasFailed) << "it reads the file";
    if (run->call != "read " + scratch.at("a")) continue;
    wasRead = true;
    EXPECT_EQ(run->status, 1);
    EXPECT_NE(run->said.find("Input/output error"), std::string::npos) << run->said;
  }
  EXPECT_TRUE(wasRead);
}

TEST(KilledAt, tellsWhatWasPrintedBefore) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const ScratchFolder scratch;
  const auto run = scene::killedAt(1, {"/bin/sh", "-c", "echo printed; : > " + scratch.at("a")});
  ASSERT_TRUE(run);
  EXPECT_EQ(run->status, -SIGKILL);
  EXPECT_EQ(run->said, "printed\n");
}

}  // namespace
