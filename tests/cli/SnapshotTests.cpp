#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string tmutil = "/usr/bin/tmutil";

std::string tool(const std::string& body) {
  return "#!/bin/sh\n" + body + "\n";
}

TEST(Snapshot, aCreatedOneIsNamedAfterItsDate) {
  scene::replaceTool(tmutil, tool("echo \"$@\" >/tmp/asked\necho 'NOTE: purgeable.'\n"
                                  "echo 'Created local snapshot with date: 2026-01-31-090500  '"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})),
            printed("Created snapshot: com.apple.TimeMachine.2026-01-31-090500.local\n"));
  EXPECT_EQ(scene::read("/tmp/asked"), "localsnapshot\n");
}

TEST(Snapshot, theFirstLineWithADateCounts) {
  scene::replaceTool(tmutil, tool("printf '\\n\\nno\\nx date: one\\ny date: two\\n'"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})),
            printed("Created snapshot: com.apple.TimeMachine.one.local\n"));
}

TEST(Snapshot, aFailedToolIsToldWithItsWordsAndWithoutFailure) {
  scene::replaceTool(tmutil, tool("echo 'no room' >&2; exit 70"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Snapshot failed.\nno room\n\n"));
  scene::replaceTool(tmutil, tool("exit 70"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Snapshot failed.\n"));
  scene::replaceTool(tmutil, tool("echo 'Created local snapshot with date: 2026-01-31-090500'; exit 1"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Snapshot failed.\n"));
  scene::replaceTool(tmutil, tool("kill -9 $$"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Snapshot failed.\n"));
}

TEST(Snapshot, successWithoutARecognisedDateIsAFailureToThePerson) {
  for (const std::string body :
       {"echo odd", "true", "echo 'date:2026-01-31-090500'", "printf 'date: \\377'"}) {
    scene::replaceTool(tmutil, tool(body));
    EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Snapshot failed.\n")) << body;
  }
}

TEST(Snapshot, aToolThatCantBeStartedIsTold) {
  scene::replaceTool(tmutil, "no program");
  std::filesystem::permissions(tmutil, std::filesystem::perms::owner_read);
  EXPECT_EQ(shown(quarn({"snapshot", "create"})),
            printed("Snapshot failed.\nThe file “tmutil” doesn’t exist.\n"));
}

TEST(Snapshot, withoutTheToolSnapshotsAreNotSupported) {
  scene::removeTool(tmutil);
  EXPECT_EQ(shown(quarn({"snapshot", "create"})), printed("Local snapshots not supported on this volume.\n"));
  EXPECT_EQ(shown(quarn({"snapshot", "list"})), printed("No local snapshots.\n"));
}

TEST(Snapshot, theListNamesEachAndTellsHowToRestore) {
  scene::replaceTool(tmutil, tool("echo \"$@\" >/tmp/asked\necho 'Snapshots for disk /:'\n"
                                  "echo com.apple.TimeMachine.2026-01-31-090500.local\necho\n"
                                  "echo com.apple.other\n"
                                  "echo '  com.apple.TimeMachine.2026-02-01-100000.local'"));
  EXPECT_EQ(shown(quarn({"snapshot", "list"})),
            printed("com.apple.TimeMachine.2026-01-31-090500.local\n"
                    "  com.apple.TimeMachine.2026-02-01-100000.local\n---\n"
                    "Restore (from macOS Recovery): tmutil restore /Volumes/<disk>/.<snapshot>\n"));
  EXPECT_EQ(scene::read("/tmp/asked"), "listlocalsnapshots /\n");
}

TEST(Snapshot, anEmptyOrFailedListIsOneLine) {
  for (const std::string body : {"echo 'Snapshots for disk /:'", "true", "exit 1", "printf '\\377\\n'"}) {
    scene::replaceTool(tmutil, tool(body));
    EXPECT_EQ(shown(quarn({"snapshot", "list"})), printed("No local snapshots.\n")) << body;
  }
}

TEST(Snapshot, whatWasCreatedIsListed) {
  const std::string created = quarn({"snapshot", "create"}).out;
  const std::string mark = "Created snapshot: ";
  ASSERT_TRUE(created.starts_with(mark + "com.apple.TimeMachine.")) << created;
  EXPECT_EQ(shown(quarn({"snapshot", "list"})),
            printed(created.substr(mark.size()) +
                    "---\nRestore (from macOS Recovery): tmutil restore /Volumes/<disk>/.<snapshot>\n"));
}

TEST(Snapshot, aCarriageReturnBelongsToNoName) {
  scene::replaceTool(tmutil,
                     tool("printf 'x date: 2026-01-31-090500\\r\\ncom.apple.TimeMachine.a.local\\r\\n'"));
  EXPECT_EQ(shown(quarn({"snapshot", "create"})),
            printed("Created snapshot: com.apple.TimeMachine.2026-01-31-090500.local\n"));
  EXPECT_EQ(shown(quarn({"snapshot", "list"})),
            printed("com.apple.TimeMachine.a.local\n---\n"
                    "Restore (from macOS Recovery): tmutil restore /Volumes/<disk>/.<snapshot>\n"));
  scene::makeApp("/Applications/Foo.app");
  EXPECT_NE(
      quarn({"move", "all", "--yes"}).out.find("\nsnapshot: com.apple.TimeMachine.2026-01-31-090500.local\n"),
      std::string::npos);
}

TEST(Snapshot, wordsBehindTheActionDontMatter) {
  EXPECT_EQ(shown(quarn({"snapshot", "list", "--format", "toml", "x"})), printed("No local snapshots.\n"));
}

}  // namespace
