#include <cstdlib>
#include <ctime>

#include "Platform/HostPlatform.h"
#include "QuarnCore/move/APFSSnapshotService.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using APFSSnapshotService::Snapshot;

void tmutil(const std::string& script) {
  scene::replaceTool("/usr/bin/tmutil", "#!/bin/sh\n" + script + "\n");
}

APFSSnapshotService::CreateResult create() {
  return APFSSnapshotService::create(hostPlatform(), std::nullopt);
}

/// What `create` makes of a tool that prints this.
std::optional<Snapshot> createdFrom(const std::string& printfFormat) {
  tmutil("printf '" + printfFormat + "'");
  return create().snapshot;
}

/// 31 January 2026, 9:05:00 where the program runs.
Moment localMoment() {
  std::tm parts{};
  parts.tm_year = 126;
  parts.tm_mday = 31;
  parts.tm_hour = 9;
  parts.tm_min = 5;
  parts.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&parts));
}

TEST(APFSSnapshotService, withoutTheToolNothingIsSupported) {
  EXPECT_TRUE(APFSSnapshotService::isSupported(hostPlatform()));
  scene::removeTool("/usr/bin/tmutil");
  EXPECT_FALSE(APFSSnapshotService::isSupported(hostPlatform()));
  const auto result = create();
  EXPECT_FALSE(result.snapshot);
  EXPECT_EQ(result.standardOutput, "");
  EXPECT_EQ(result.standardError, "tmutil not present");
  EXPECT_FALSE(result.succeeded);
  EXPECT_TRUE(APFSSnapshotService::list(hostPlatform()).empty());
}

TEST(APFSSnapshotService, theDateBehindItsMarkNamesTheSnapshot) {
  ::setenv("TZ", "America/New_York", 1);
  ::tzset();
  tmutil("echo NOTE: purgeable; echo 'Created local snapshot with date: 2026-01-31-090500'; echo note >&2");
  const auto result = create();
  ASSERT_TRUE(result.snapshot);
  EXPECT_EQ(*result.snapshot, (Snapshot{"com.apple.TimeMachine.2026-01-31-090500.local", localMoment()}));
  EXPECT_EQ(*result.snapshot->createdAt, Moment{std::chrono::seconds(1'769'868'300)})
      << "nine in New York is fourteen elsewhere";
  EXPECT_EQ(result.standardOutput, "NOTE: purgeable\nCreated local snapshot with date: 2026-01-31-090500\n");
  EXPECT_EQ(result.standardError, "note\n");
  EXPECT_TRUE(result.succeeded);
}

TEST(APFSSnapshotService, blanksAroundTheDateAreTrimmedAndTheFirstMarkCounts) {
  EXPECT_EQ(createdFrom("\\n\\nx date:   2026-01-31-090500 \\t\\ny date: 2027-01-31-090500\\n")->name,
            "com.apple.TimeMachine.2026-01-31-090500.local");
}

TEST(APFSSnapshotService, aDateThatIsNoneStillNamesTheSnapshot) {
  EXPECT_EQ(createdFrom("date: soon\\n"), (Snapshot{"com.apple.TimeMachine.soon.local", std::nullopt}));
  EXPECT_EQ(createdFrom("date: 2026-13-01-000000\\n")->createdAt, std::nullopt);
}

TEST(APFSSnapshotService, aStatusOf0WithoutTheMarkSucceedsWithNoSnapshot) {
  tmutil("echo 'Created a local snapshot'");
  const auto result = create();
  EXPECT_TRUE(result.succeeded);
  EXPECT_FALSE(result.snapshot);
}

TEST(APFSSnapshotService, aFailingToolDoesNotSucceedWhateverItPrints) {
  tmutil("echo 'date: 2026-01-31-090500'; echo 'Failed to create local snapshot' >&2; exit 1");
  const auto result = create();
  EXPECT_FALSE(result.succeeded);
  EXPECT_EQ(result.snapshot->name, "com.apple.TimeMachine.2026-01-31-090500.local");
  EXPECT_EQ(result.standardError, "Failed to create local snapshot\n");
}

TEST(APFSSnapshotService, theToolGetsItsFixedWordsAndNoLabel) {
  tmutil("echo \"$#:$*\" >>/tmp/arguments");
  APFSSnapshotService::create(hostPlatform(), "a label");
  APFSSnapshotService::list(hostPlatform());
  EXPECT_EQ(scene::read("/tmp/arguments"), "1:localsnapshot\n2:listlocalsnapshots /\n");
}

TEST(APFSSnapshotService, aListKeepsTheSnapshotsInTheirOrderAndKnowsNoDates) {
  tmutil(
      "echo 'Snapshots for disk /:'; echo; echo com.apple.TimeMachine.2026-01-31-090500.local\n"
      "echo com.apple.os.update-ABC; echo ' com.apple.TimeMachine.2025-01-31-090500.local'");
  EXPECT_EQ(APFSSnapshotService::list(hostPlatform()),
            (std::vector<Snapshot>{{"com.apple.TimeMachine.2026-01-31-090500.local", std::nullopt},
                                   {" com.apple.TimeMachine.2025-01-31-090500.local", std::nullopt}}));
}

TEST(APFSSnapshotService, aDateWithMoreBehindItInOnePieceOfTheNameIsRead) {
  tmutil(
      "echo com.apple.TimeMachine.2026-01-31-090500xx.local\n"
      "echo com.apple.TimeMachine.2026-01-31-090500x.local\n"
      "echo com.apple.TimeMachine.xx2026-01-31-090500.local\n"
      "echo com.apple.TimeMachine.a-name-that-is-long-enough.2026-01-31-090500xx");
  EXPECT_EQ(APFSSnapshotService::list(hostPlatform()),
            (std::vector<Snapshot>{
                {"com.apple.TimeMachine.2026-01-31-090500xx.local", localMoment()},
                {"com.apple.TimeMachine.2026-01-31-090500x.local", std::nullopt},
                {"com.apple.TimeMachine.xx2026-01-31-090500.local", std::nullopt},
                {"com.apple.TimeMachine.a-name-that-is-long-enough.2026-01-31-090500xx", std::nullopt}}))
      << "a piece counts from 19 characters on, and the first one decides";
}

TEST(APFSSnapshotService, noLineEndBelongsToAName) {
  for (const std::string end : {"\\r\\n", "\\r", "\\n", "\\302\\205", "\\342\\200\\250"}) {
    EXPECT_EQ(createdFrom("note" + end + "date: 2026-01-31-090500" + end + end),
              (Snapshot{"com.apple.TimeMachine.2026-01-31-090500.local", localMoment()}))
        << end;
    tmutil("printf 'header" + end + end + "com.apple.TimeMachine.a.local" + end +
           "com.apple.TimeMachine.b.local" + end + "'");
    EXPECT_EQ(APFSSnapshotService::list(hostPlatform()),
              (std::vector<Snapshot>{{"com.apple.TimeMachine.a.local", std::nullopt},
                                     {"com.apple.TimeMachine.b.local", std::nullopt}}))
        << end;
  }
}

TEST(APFSSnapshotService, theListOfAFailingToolIsStillRead) {
  tmutil("echo com.apple.TimeMachine.a.local; exit 1");
  EXPECT_EQ(APFSSnapshotService::list(hostPlatform()).size(), 1u);
}

}  // namespace
}  // namespace quarn
