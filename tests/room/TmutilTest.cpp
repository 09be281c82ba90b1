#include <gtest/gtest.h>

#include "TestRoom.h"
#include "tests/support/Patterns.h"

namespace quarn::tests {

namespace {

// Any room will do.
const TestRoom& room() {
  static const TestRoom any(Way::mounts);
  return any;
}

}  // namespace

TEST(Tmutil, remembersTheSnapshotsItTook) {
  const Finished finished =
      room()("tmutil listlocalsnapshots /; tmutil localsnapshot && tmutil listlocalsnapshots /");
  EXPECT_TRUE(patterns::match(
      finished.out,
      "Snapshots for disk /:\n"
      "NOTE: local snapshots are considered purgeable and may be removed at any time by deleted\\(8\\).\n"
      "Created local snapshot with date: (20[0-9]{2}-[0-9]{2}-[0-9]{2}-[0-9]{6})\n"
      "Snapshots for disk /:\n"
      "com.apple.TimeMachine.\\1.local\n"))
      << finished.out;
}

TEST(Tmutil, refusesAnythingElse) {
  for (const std::string words : {"", "deletelocalsnapshots /", "listlocalsnapshots /Volumes"}) {
    const Finished finished = room()("tmutil " + words);
    EXPECT_EQ(finished.status, 64) << words;
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(finished.err.rfind("usage: tmutil ", 0), 0U);
  }
}

}  // namespace quarn::tests
