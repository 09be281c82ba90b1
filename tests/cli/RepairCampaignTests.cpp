#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

#include "Platform/Json.h"
#include "tests/cli/CallSweep.h"
#include "tests/support/Scene.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// Each repair, and all of them in one run, met by a fault at its n-th system call. By default a sample; all
/// calls with QUARN_CAMPAIGN=all. The judge knows no order of steps: whatever happens, every byte that was
/// there stands in some file, nobody else's item has changed, an application that was in use is in use and
/// where it was, the records can be read, and a second run without a fault leaves nothing to repair.

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
const std::string library = scene::home + "/Library";

struct Repair {
  std::string name;
  std::vector<void (*)()> scenes;
  std::string flag = {};

  Lines words() const {
    Lines words = {"quarn", "health", "repair", "--yes", "--no-snapshot"};
    if (!flag.empty()) words.push_back(flag);
    return words;
  }
};

std::ostream& operator<<(std::ostream& out, const Repair& repair) {
  return out << repair.name;
}

/// Every file of it has a content of its own.
void makeApp(const std::string& bundle) {
  scene::makeApp(bundle, {.identifier = "com.example." + fs::path(bundle).stem().string()}, 0);
  scene::write(bundle + "/Contents/MacOS/Foo", "#!/bin/sh\n# " + bundle + "\n");
  scene::write(bundle + "/Contents/Info.plist",
               scene::read(bundle + "/Contents/Info.plist") + "<!-- " + bundle + " -->");
  scene::write(bundle + "/Contents/Resources/own", "resource of " + bundle);
}

void deadLink() {
  scene::link("/Applications/Dead.app", "/nowhere/Dead.app");
}
void renamedRoot() {
  scene::write("/Volumes/X9/ExternalQuarn/Data/Notes/file", "notes");
  scene::link(library + "/Application Support/Notes", "/Volumes/X9/Quarn/Data/Notes");
}
void remnant() {
  scene::write(apps + "/Empty.app/Contents/left", "left of Empty");
  scene::link("/Applications/Empty.app", apps + "/Empty.app");
}
void broughtBack() {
  makeApp("/Applications/Back.app");
  makeApp(apps + "/Back.app");
}
void orphan() {
  makeApp(apps + "/Orphan.app");
  scene::makeLauncher(scene::home + "/Applications/Starter.app", apps + "/Orphan.app");
}
void staleRows() {
  makeApp(apps + "/Tracked.app");
  scene::link("/Applications/Tracked.app", apps + "/Tracked.app");
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('t', 'Tracked', "
      "'com.example.Tracked')");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('t', '/gone/1'), ('t', '/gone/2')");
}
void suite() {
  makeApp(apps + "/Suite/One.app");
  makeApp(apps + "/Suite/Two.app");
  scene::link("/Applications/Suite", apps + "/Suite");
  scene::makeLauncher("/Applications/Two.app", "/elsewhere/Two.app");
}
void linkedPreferences() {
  scene::write("/Volumes/X9/ExternalQuarn/Data/com.example.plist", "preferences");
  scene::link(library + "/Preferences/com.example.plist", "/Volumes/X9/ExternalQuarn/Data/com.example.plist");
}

const std::vector<Repair>& repairs() {
  static const std::vector<Repair> all = {
      {"dangling", {deadLink}},
      {"repointed", {renamedRoot}},
      {"empty", {remnant}},
      {"reclaimed", {broughtBack}, "--reclaim-reverted"},
      {"reSymlinked", {broughtBack}, "--re-symlink-reverted"},
      {"orphan", {orphan}},
      {"rows", {staleRows}},
      {"launchers", {suite}},
      {"preferences", {linkedPreferences}},
      {"queue",
       {deadLink, renamedRoot, remnant, broughtBack, orphan, staleRows, suite, linkedPreferences},
       "--re-symlink-reverted"},
      {"queueThatReclaims",
       {deadLink, renamedRoot, remnant, broughtBack, orphan, staleRows, suite, linkedPreferences},
       "--reclaim-reverted"},
  };
  return all;
}

void clear() {
  for (const std::string folder : {"/Applications", "/Users/me", "/Users/you", "/Volumes/X9"}) {
    scene::makeFolder(folder);
    for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
  }
  for (const std::string folder : {"/Application Support", "/Preferences", "/Containers"})
    scene::makeFolder(library + folder);
  scene::makeFolder(scene::home + "/Applications");
}

Lines foreignPlaces() {
  return {"/Users/you", scene::home + "/Documents", "/Volumes/X9/Other", "/Applications/Other.app",
          scene::home + "/Linked"};
}

void makeForeign() {
  scene::write("/Users/you/report", "somebody else's");
  scene::write(scene::home + "/Documents/letter", "a letter");
  scene::write("/Volumes/X9/Other/film", "a film");
  scene::link(scene::home + "/Linked", "/Users/you");
  makeApp("/Applications/Other.app");
  scene::write(scene::driveTrash() + "/Orphan.app/old", "thrown away before");
  scene::write(scene::home + "/.Trash/Two.app/old", "thrown away at home");
  scene::makeInstallsDB();
  scene::sql("INSERT INTO installs (install_id, app_name, notes) VALUES ('o', 'Other', 'kept')");
}

/// Moved applications that are in use, one by a link and one by a launcher. No repair is about them.
void makeLive() {
  makeApp(apps + "/Live.app");
  scene::link("/Applications/Live.app", apps + "/Live.app");
  makeApp(apps + "/Opened.app");
  scene::makeLauncher("/Applications/Opened.app", apps + "/Opened.app");
  std::string records;
  for (const std::string name : {"Live.app", "Opened.app"}) {
    records += (records.empty() ? "" : ",") + (R"({"destinationPath":")" + apps + "/" + name) +
               R"(","movedAt":"2026-01-31T09:05:00Z","sizeBytes":1,"sourcePath":"/Applications/)" + name +
               "\"}";
  }
  scene::write(scene::manifest, "[" + records + "]");
}

bool isRecord(const std::string& path) {
  return path.starts_with(fs::path(scene::installsDB).parent_path().string()) ||
         path.starts_with(fs::path(scene::manifest).parent_path().string());
}

/// What stands in files, wherever. Only records may change.
std::set<std::string> contents() {
  std::set<std::string> found;
  // Where the home can't be looked at, its Trash isn't found, and that of the startup volume takes an item.
  for (const std::string top : {"/Applications", "/Users", "/Volumes/X9", "/.Trashes"}) {
    if (!fs::exists(top)) continue;
    for (const auto& item : fs::recursive_directory_iterator(top)) {
      if (item.is_regular_file() && !item.is_symlink() && !isRecord(item.path()))
        found.insert(scene::read(item.path()));
    }
  }
  return found;
}

Lines foreignTrees() {
  Lines trees;
  for (const std::string& place : foreignPlaces()) {
    for (const std::string& line : scene::tree(place)) trees.push_back(place + ": " + line);
  }
  return trees;
}

bool isApplication(const fs::path& bundle) {
  return fs::exists(bundle / "Contents/Info.plist") && fs::exists(bundle / "Contents/MacOS");
}

/// Whether a link leads to an application, or to a folder of them.
bool isLive(const fs::path& link) {
  if (!fs::is_symlink(link) || !fs::is_directory(link)) return false;
  const fs::directory_iterator inside(link);
  return isApplication(link) ||
         std::any_of(begin(inside), end(inside), [](const auto& item) { return isApplication(item.path()); });
}

/// What opens when somebody opens it, at which place, by link or launcher, with all that stands there.
Lines liveTrees() {
  Lines trees;
  const auto add = [&trees](const std::string& use, const std::string& copy) {
    trees.push_back(use + " opens " + copy);
    for (const std::string& line : scene::tree(copy)) trees.push_back(copy + ": " + line);
  };
  for (const auto& item : fs::directory_iterator("/Applications")) {
    if (isLive(item.path())) add(item.path(), fs::read_symlink(item.path()));
  }
  const fs::path launcher = "/Applications/Opened.app/Contents/Resources/ExternalAppTarget.txt";
  if (fs::exists(launcher)) add("Opened.app", scene::read(launcher));
  std::sort(trees.begin(), trees.end());
  return trees;
}

class Trial {
 public:
  explicit Trial(const Repair& repair) : words_(repair.words()) {
    clear();
    makeForeign();
    makeLive();
    for (const auto make : repair.scenes) make();
    contents_ = contents();
    foreign_ = foreignTrees();
    live_ = liveTrees();
  }

  std::string problems() const {
    std::string problems;
    const auto now = contents();
    for (const std::string& content : contents_) {
      if (!now.contains(content)) problems += "LOST: a file with " + content.substr(0, 60) + "\n";
    }
    if (foreignTrees() != foreign_) problems += "FOREIGN changed\n";
    // There may be more: an application that was brought back is moved again.
    const Lines live = liveTrees();
    for (const std::string& line : live_) {
      if (!std::binary_search(live.begin(), live.end(), line))
        problems += "NOT LIVE any more: " + line + "\n";
    }
    if (!quarn::Json::parse(scene::read(scene::manifest))) problems += "RECORD doesn't parse\n";
    if (scene::sql("PRAGMA integrity_check") != Lines{"ok"}) problems += "LEDGER is corrupt\n";
    if (scene::sql("SELECT notes FROM installs WHERE install_id='o'") != Lines{"kept"})
      problems += "LEDGER lost a row\n";
    return problems;
  }

  /// After one more run, without a fault.
  std::string problemsOfNextRun() const {
    const auto again = scene::quarn({words_.begin() + 1, words_.end()});
    std::string problems = this->problems();
    if (again.status != 0) problems += "STATUS " + std::to_string(again.status) + "\n";
    // What is left of an item whose link was removed is an orphan by now, and goes in a run of its own.
    scene::quarn({words_.begin() + 1, words_.end()});
    problems += this->problems();
    const auto check = scene::quarn({"health", "check"});
    if (check.status != 0) problems += "LEFT to repair:\n" + check.out;
    return problems.empty() ? "" : problems + "it said:\n" + again.out + again.err;
  }

 private:
  Lines words_;
  std::set<std::string> contents_;
  Lines foreign_;
  Lines live_;
};

class RepairCampaign : public testing::TestWithParam<Repair> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }

  void judge(const Trial& trial, const std::string& said, const std::string& fault) {
    const std::string now = trial.problems(), next = trial.problemsOfNextRun();
    tally_.judge(fault, said, now, next);
  }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    judge(trial, met->said, met->fault);
    return met->wasMet;
  }

  bool killAt(int n) {
    const Trial trial(GetParam());
    return judged(trial, sweep::killedAt(n, GetParam().words()));
  }

  bool failAt(int n, const scene::Failure& failure) {
    const Trial trial(GetParam());
    return judged(trial, sweep::failedAt(n, failure, GetParam().words()));
  }

  sweep::Tally tally_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(Of, RepairCampaign, testing::ValuesIn(repairs()),
                         [](const auto& repair) { return repair.param.name; });

TEST_P(RepairCampaign, killedAtAChangingCallLosesNothing) {
  sweep::forEachCall(1, 7, [this](int n) { return killAt(n); });
}

TEST_P(RepairCampaign, aChangingCallThatFailsLosesNothing) {
  sweep::forEachFailingChange(3, 41,
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
}

TEST_P(RepairCampaign, aLookThatFailsLosesNothing) {
  for (const bool forGood : {false, true}) {
    const scene::Failure failure{scene::CallKind::looking, EIO, forGood};
    sweep::forEachCall(forGood ? 150 : 40, 397, [&](int n) { return failAt(n, failure); });
  }
}

}  // namespace
