#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "QuarnCLI/dispatch/CommandTable.h"
#include "tests/support/Patterns.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Lines = std::set<std::string>;

/// The lines of runs that all ended with status 0.
class Told {
 public:
  void run(const Words& words) {
    const scene::Run run = scene::quarn(words);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    std::istringstream text(run.out);
    for (std::string line; std::getline(text, line);) lines_.push_back(line);
  }
  bool has(const std::string& pattern) const {
    return std::any_of(lines_.begin(), lines_.end(),
                       [&](const std::string& line) { return patterns::match(line, pattern); });
  }
  std::string all() const {
    std::string text;
    for (const std::string& line : lines_) text += line + "\n";
    return text;
  }

 private:
  Words lines_;
};

const Command& commandNamed(const std::string& words) {
  for (const auto* group : CommandTable::groups()) {
    for (const auto* command : group->commands) {
      if (command->words == words) return *command;
    }
  }
  throw std::out_of_range(words);
}

/// A whole line; "…" stands for any text, and a last "N" for a number.
std::string patternOf(std::string_view text) {
  std::string pattern = patterns::replace(std::string(text), R"([.?()\[\]|])", "\\$&");
  pattern = patterns::replace(pattern, "…", ".+");
  return patterns::replace(pattern, " N$", " [0-9]+");
}

void expectTold(const std::string& words, const Told& told) {
  const auto& lines = commandNamed(words).tellingLines;
  EXPECT_FALSE(lines.empty()) << words;
  for (const auto& line : lines)
    EXPECT_TRUE(told.has(patternOf(line.text))) << line.text << "\n" << told.all();
}

/// An application whose place on the drive is taken, so that it can't be moved.
void makeTaken() {
  scene::makeApp("/Applications/Foo.app");
  scene::write("/Volumes/X9/ExternalQuarn/Apps/Foo.app/foreign", "foreign");
}

TEST(TellingLines, arePrintedByUninstallRunAsItsRowSays) {
  Told told;
  const std::string support = "/Library/Application Support/com.example.foo";
  scene::makeApp("/Applications/Foo.app");
  scene::write(support + "/data", "data");
  // Nobody but an administrator can take anything out of it, nor put anything aside there.
  fs::permissions("/Library/Application Support", fs::perms(0555));
  told.run({"uninstall", "run", "/Applications/Foo.app"});
  fs::permissions("/Library/Application Support", fs::perms(0755));
  expectTold("uninstall run", told);
}

TEST(TellingLines, arePrintedByMoveAllAsItsRowSays) {
  Told told;
  told.run({"move", "all"});
  makeTaken();
  told.run({"move", "all"});
  told.run({"move", "all", "--yes"});
  scene::removeTool("/usr/bin/tmutil");
  told.run({"move", "all", "--yes"});
  expectTold("move all", told);
}

TEST(TellingLines, arePrintedByMoveNextAsItsRowSays) {
  scene::makeApp("/Applications/Foo.app");
  Told told;
  told.run({"move", "next", "--yes"});
  told.run({"move", "next", "--yes"});
  expectTold("move next", told);
}

TEST(TellingLines, arePrintedByMoveOneAsItsRowSays) {
  makeTaken();
  Told told;
  told.run({"move", "one", "com.example.foo"});
  told.run({"move", "one", "com.example.foo", "--yes"});
  fs::remove_all("/Applications/Foo.app");
  scene::makeApp("/Volumes/X9/Foo.app");
  scene::link("/Applications/Foo.app", "/Volumes/X9/Foo.app");
  told.run({"move", "one", "com.example.foo", "--yes"});
  expectTold("move one", told);
}

TEST(TellingLines, arePrintedByMovePathAsItsRowSays) {
  const Words command = {
      "move", "path", "--source", "/Users/me/Movies", "--destination", "/Volumes/X9/Movies"};
  scene::write("/Users/me/Movies/a.mov", "film");
  Told told;
  told.run(command);
  fs::rename("/Users/me/Movies", "/Users/me/Films");
  scene::link("/Users/me/Movies", "/Users/me/Films");
  told.run(command);
  expectTold("move path", told);
}

TEST(TellingLines, arePrintedByMovePlanAsItsRowSays) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  scene::makeApp("/Applications/Foo.app", {}, 2'000'000);
  Told told;
  told.run({"move", "plan", "--target-drive", "Tiny"});
  expectTold("move plan", told);
}

TEST(TellingLines, arePrintedByTheSnapshotCommandsAsTheirRowsSay) {
  Told listed;
  listed.run({"snapshot", "list"});
  expectTold("snapshot list", listed);

  Told created;
  scene::replaceTool("/usr/bin/tmutil", "#!/bin/sh\nexit 70\n");
  created.run({"snapshot", "create"});
  scene::removeTool("/usr/bin/tmutil");
  created.run({"snapshot", "create"});
  expectTold("snapshot create", created);
}

TEST(TellingLines, arePrintedByHealthRepairAsItsRowSays) {
  const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
  Told told;
  told.run({"health", "repair"});
  scene::link("/Applications/Home.app", "/Users/me");
  scene::link("/Users/me/Library/Preferences/com.example.plist", "/nowhere");
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  scene::makeApp(apps + "/Shut.app");
  scene::link("/Applications/Shut.app", apps + "/Shut.app");
  fs::permissions(apps + "/Shut.app/Contents", fs::perms::none);
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\nexit 1\n");
  scene::removeTool("/usr/bin/tmutil");
  told.run({"health", "repair", "--yes"});
  fs::permissions(apps + "/Shut.app/Contents", fs::perms(0755));
  told.run({"health", "repair", "--yes", "--re-symlink-reverted"});
  expectTold("health repair", told);
}

TEST(TellingLines, arePrintedByTheInstallCommandsAsTheirRowsSay) {
  const std::string sessions = "/Users/me/Library/Application Support/Quarn/InstallerSessions/";
  const auto session = [&](const std::string& id, const std::string& status) {
    scene::write(
        sessions + id + "/session.json",
        "{\"id\":\"" + id +
            "\",\"sourcePath\":\"\",\"optionID\":\"trusted-external\",\"createdAt\":1,\"actions\":[],"
            "\"changedPaths\":[],\"newReceipts\":[],\"status\":\"" +
            status +
            "\",\"targetDrivePath\":\"/Volumes/None\","
            "\"pendingExternalizeApps\":[\"/Applications/Foo.app\"]}");
  };
  Told inspected, pending, resumed, installed;
  inspected.run({"install", "inspect", "/Users/me/none.txt"});
  expectTold("install inspect", inspected);
  pending.run({"install", "pending"});
  expectTold("install pending", pending);
  scene::makeApp("/Applications/Foo.app");
  session("a", "failed");
  session("b", "pendingExternalize");
  resumed.run({"install", "resume", "a"});
  resumed.run({"install", "resume", "b"});
  expectTold("install resume", resumed);
  scene::makeApp("/Users/me/Bar.app");
  installed.run({"install", "run", "/Users/me/Bar.app", "--option", "trusted-external", "--target-drive",
                 "/Volumes/X9"});
  expectTold("install run", installed);
}

TEST(TellingLines, arePrintedByDedupeRunAsItsRowSays) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeLauncher("/Applications/Launcher.app", "/Applications/Foo.app");
  Told told;
  told.run({"dedupe", "run"});
  expectTold("dedupe run", told);
}

TEST(TellingLines, arePrintedByThePluginCommandsAsTheirRowsSay) {
  const Words install = {"install",        "plugins",    "install", "/Users/me/plug-ins",
                         "--target-drive", "/Volumes/X9"};
  const auto with = [&](const Words& flags) {
    Words words = install;
    words.insert(words.end(), flags.begin(), flags.end());
    return words;
  };
  Told inspected, installed;
  inspected.run({"install", "plugins", "inspect", "/Users/me/plug-ins"});
  expectTold("install plugins inspect", inspected);
  installed.run(install);
  scene::write("/Users/me/plug-ins/A.vst3/code", "code");
  installed.run(install);
  installed.run(with({"--dry-run", "--yes"}));
  installed.run(with({"--yes"}));
  installed.run(with({"--yes", "--no-overwrite"}));
  expectTold("install plugins install", installed);
}

TEST(TellingLines, areAllShownByACaseHere) {
  Lines telling;
  for (const auto* group : CommandTable::groups()) {
    for (const auto* command : group->commands) {
      if (!command->tellingLines.empty()) telling.emplace(command->words);
    }
  }
  EXPECT_EQ(telling, (Lines{"dedupe run", "health repair", "install inspect", "install pending",
                            "install plugins inspect", "install plugins install", "install resume",
                            "install run", "move all", "move next", "move one", "move path", "move plan",
                            "snapshot create", "snapshot list", "uninstall run"}));
}

}  // namespace
}  // namespace quarn
