#include <gtest/gtest.h>

#include "tests/cli/Faults.h"
#include "tests/support/IsAlive.h"

using namespace expected;
using namespace fault;
using scene::quarn;

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

const std::string data = scene::home + "/Library/Application Support/Foo";

/// The three commands that move applications, so that each takes the one that is there.
const Words runs[] = {{"move", "all", "--yes", "--no-snapshot", "--include-running"},
                      {"move", "next", "--yes", "--include-running"},
                      {"move", "one", app, "--yes"}};

Words with(Words command, const std::string& flag) {
  command.push_back(flag);
  return command;
}

void clear() {
  for (const std::string& item : {app, data, scene::drive + "/ExternalQuarn", scene::home + "/.Trash"}) {
    fs::remove_all(item);
  }
}

TEST(RunFlags, noDataLeavesTheDataWhereItIs) {
  for (const Words& command : runs) {
    SCOPED_TRACE(command[1]);
    clear();
    scene::makeApp(app);
    scene::write(data + "/a", "text");
    EXPECT_EQ(quarn(with(command, "--no-data")).status, 0);
    EXPECT_EQ(scene::target(app), moved);
    EXPECT_FALSE(scene::isLink(data));
    EXPECT_EQ(quarn(command).status, 0);
    EXPECT_TRUE(scene::isLink(data));
    EXPECT_EQ(scene::read(data + "/a"), "text");
  }
}

TEST(RunFlags, progressShowsTheBytesOnStandardErrorAndWithoutItNothingStandsThere) {
  for (const Words& command : runs) {
    SCOPED_TRACE(command[1]);
    clear();
    scene::makeApp(app);
    const std::string bytes = sizeOf(app);
    EXPECT_EQ(quarn(with(command, "--progress")).err, "    " + bytes + " / " + bytes + "  100%   \r\n");
    clear();
    scene::makeApp(app);
    EXPECT_EQ(quarn(command).err, "");
    EXPECT_EQ(scene::target(app), moved);
  }
}

TEST(RunFlags, quitRunningAsksTheApplicationToQuitAndWithoutItItIsLeftAlone) {
  const std::string executable = app + "/Contents/MacOS/Foo";
  for (const Words& command : runs) {
    SCOPED_TRACE(command[1]);
    clear();
    fs::remove("/tmp/ready");
    scene::makeApp(app);
    fs::copy_file("/bin/sh", executable, fs::copy_options::overwrite_existing);
    scene::Background process(
        {executable, "-c", "trap 'exit 7' TERM; : >/tmp/ready; while :; do sleep 0.05; done"});
    ASSERT_TRUE(scene::appears("/tmp/ready"));
    EXPECT_NE(quarn(command).out.find("    FAIL: App is running: Foo.app. "), std::string::npos);
    EXPECT_TRUE(scene::isAlive(process.pid()));
    EXPECT_EQ(quarn(with(command, "--quit-running")).status, 0);
    EXPECT_EQ(scene::target(app), moved);
    EXPECT_EQ(process.wait(), 7);
  }
}

}  // namespace
