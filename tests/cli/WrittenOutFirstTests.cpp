#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>

#include "tests/cli/Faults.h"
#include "tests/support/linux/CallsOf.h"
#include "tests/support/linux/KilledAt.h"

using namespace expected;
using namespace fault;

namespace {

using Bytes = std::multiset<std::string>;

/// The content of every file below a folder, whatever the files are called.
Bytes bytesBelow(const std::string& folder) {
  Bytes found;
  for (const auto& [name, content] : contents(folder)) found.insert(content);
  return found;
}

/// What lay on the side of the copy at two moments.
struct Watched {
  std::optional<Bytes> atTheLastFlush, atTheFirstRemoval;
  std::optional<int> status;
};

bool isSameVolume(const std::string& a, const std::string& b) {
  struct stat ofA, ofB;
  return ::stat(a.c_str(), &ofA) == 0 && ::stat(b.c_str(), &ofB) == 0 && ofA.st_dev == ofB.st_dev;
}

/// Runs a command that carries a tree to another volume, and looks into the folder of the copy whenever its
/// volume is written out, until something of the tree is about to be removed.
Watched watched(const std::vector<std::string>& command, const std::string& tree, const std::string& copies) {
  Watched seen;
  scene::TracedProgram program(command);
  while (const auto stop = program.next()) {
    const auto call = scene::callEntered(program, *stop);
    if (!call || seen.atTheFirstRemoval) continue;
    const bool isFlush = call->name == "syncfs" && isSameVolume(call->paths[0], copies);
    if (isFlush || call->name == "sync") seen.atTheLastFlush = bytesBelow(copies);
    if (call->name == "unlinkat" && call->paths[0].starts_with(tree + "/"))
      seen.atTheFirstRemoval = bytesBelow(copies);
  }
  seen.status = program.status();
  return seen;
}

TEST(WrittenOutFirst, theCopyIsOnTheDriveBeforeTheApplicationGoes) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::makeApp(app, {}, 4000);
  const Bytes bytes = bytesBelow(app);
  ASSERT_EQ(bytes.size(), 3U);
  const auto seen = watched({"quarn", "move", "one", app, "--yes"}, app, apps);
  EXPECT_EQ(seen.status, 0);
  EXPECT_EQ(scene::target(app), moved);
  EXPECT_EQ(seen.atTheLastFlush, bytes);
  EXPECT_EQ(seen.atTheFirstRemoval, bytes);
}

TEST(WrittenOutFirst, theCopyAtHomeIsOnItsVolumeBeforeTheOneOnTheDriveGoes) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::makeApp(app, {}, 4000);
  const Bytes bytes = bytesBelow(app);
  ASSERT_EQ(moveOne().status, 0);
  const auto seen = watched({"quarn", "move", "back", app}, moved, "/Applications");
  EXPECT_EQ(seen.status, 0);
  EXPECT_FALSE(scene::isLink(app));
  EXPECT_EQ(seen.atTheLastFlush, bytes);
  EXPECT_EQ(seen.atTheFirstRemoval, bytes);
}

TEST(WrittenOutFirst, theCopyAtTheTopOfAVolumeIsOnThatVolumeBeforeTheOtherGoes) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::plug("Y", "8m");
  scene::writeBytes("/Volumes/X9/Stuff/Film/a.mov", 3000);
  scene::writeBytes("/Volumes/X9/Stuff/Film/Sub/b.mov", 5000);
  scene::link("/Volumes/Y/Film", "/Volumes/X9/Stuff/Film");
  const Bytes bytes = bytesBelow("/Volumes/X9/Stuff/Film");
  const auto seen =
      watched({"quarn", "move", "restore", "/Volumes/Y/Film"}, "/Volumes/X9/Stuff/Film", "/Volumes/Y");
  EXPECT_EQ(seen.status, 0);
  EXPECT_EQ(seen.atTheLastFlush, bytes);
  EXPECT_EQ(seen.atTheFirstRemoval, bytes);
}

TEST(WrittenOutFirst, theRecordReachesTheDiskBeforeItTakesItsName) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  scene::makeApp(app, {}, 4000);
  const auto run = scene::callsOf({"quarn", "move", "one", app, "--yes"});
  ASSERT_TRUE(run);
  const auto named = std::find_if(run->calls.begin(), run->calls.end(), [](const scene::Call& call) {
    return call.name.starts_with("rename") && call.paths[1] == scene::manifest;
  });
  ASSERT_NE(named, run->calls.end());
  const auto written = std::find_if(run->calls.begin(), named, [&](const scene::Call& call) {
    return call.name == "fsync" && call.paths[0] == named->paths[0];
  });
  EXPECT_NE(written, named) << named->paths[0];
}

}  // namespace
