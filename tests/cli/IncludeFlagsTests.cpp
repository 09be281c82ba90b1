#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/cli/Expected.h"

using scene::quarn;

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

const std::vector<std::string> names = {"Xcode", "Store", "Busy"};

/// An application for each flag, and none that needs no flag.
class IncludeFlags : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp("/Applications/Xcode.app", {.identifier = "org.x"}, 100);
    scene::makeApp("/Applications/Store.app", {.identifier = "org.s"}, 100);
    scene::write("/Applications/Store.app/Contents/_MASReceipt/receipt", "receipt");
    scene::makeApp("/Applications/Busy.app", {}, 100);
    fs::copy_file("/bin/sleep", executable, fs::copy_options::overwrite_existing);
    running = std::make_unique<scene::Background>(Words{executable, "60"});
    const std::string exe = "/proc/" + std::to_string(running->pid()) + "/exe";
    for (int i = 0; i < 100 && scene::target(exe) != executable; ++i) ::usleep(20'000);
  }

  const std::string executable = "/Applications/Busy.app/Contents/MacOS/Foo";
  std::unique_ptr<scene::Background> running;
};

/// Which of the applications a run names; nobody answers its question.
Words named(Words command, const Words& flags) {
  command.insert(command.end(), flags.begin(), flags.end());
  const std::string out = quarn(command).out;
  Words found;
  for (const std::string& name : names) {
    if (out.find("/Applications/" + name + ".app") != std::string::npos) found.push_back(name);
  }
  return found;
}

TEST_F(IncludeFlags, eachTakesAlongWhatItNamesAndNoMore) {
  const Words commands[] = {{"move", "plan"}, {"move", "all", "--dry-run"}, {"move", "next"}};
  for (const Words& command : commands) {
    SCOPED_TRACE(command[1]);
    EXPECT_EQ(named(command, {}), Words{});
    EXPECT_EQ(named(command, {"--include-protected"}), Words{"Xcode"});
    EXPECT_EQ(named(command, {"--include-risky"}), Words{"Store"});
    EXPECT_EQ(named(command, {"--include-running"}), Words{"Busy"});
  }
}

TEST(LiveTools, theCommandLineThatStartedQuarnIsNotALiveTool) {
  const std::string list = scene::run({"/bin/ps", "-axo", "comm,args"}).out;
  for (const std::string word : {"cursor", "Cursor"}) {
    if (list.find(word) != std::string::npos) GTEST_SKIP() << "a process outside the room shows the word";
  }
  scene::makeApp("/Applications/Cursor Tools.app", {.identifier = "org.c"}, 100);
  const std::string out = scene::shell("quarn move plan --target-drive X9 # cursor\ntrue").out;
  EXPECT_NE(out.find("# apps eligible: 1 "), std::string::npos) << out;
}

}  // namespace
