#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "tests/cli/CallSweep.h"
#include "tests/cli/DedupeScenes.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// `dedupe run --yes` met by a fault at its n-th system call. Whatever happens, each duplicate stands whole
/// at its place or in the Trash, everything else is as it was, and what was said of each item is so.

using namespace dedupes;

namespace {

namespace fs = std::filesystem;

const Lines command = {"quarn", "dedupe", "run", "--yes", "--format", "tsv"};
/// One bundle by two paths is one of them.
const Lines duplicates = {launcher, "/Applications/Tools/L.app", own + "/Bar.app"};
const Lines foreign = {app,
                       "/Applications/Bar.app",
                       "/Applications/Elsewhere.app",
                       "/Applications/Linked",
                       "/Applications/Link.app",
                       trash + "/L.app",
                       "/Volumes/X9",
                       "/Users/me/Documents"};

/// Every file of it has a content of its own.
void makeLauncher(const std::string& bundle, const std::string& target) {
  scene::makeLauncher(bundle, target);
  scene::write(bundle + "/Contents/MacOS/Foo", "#!/bin/sh\n# " + bundle + "\n");
}

void clear() {
  for (const std::string folder : {"/Applications", "/Users/me", "/Volumes/X9"}) {
    fs::permissions(folder, fs::perms::owner_all);
    for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
  }
  fs::remove_all("/.Trashes");
  fs::remove_all("/Users/.Trashes");
}

void setCrowdedScene() {
  clear();
  scene::makeApp(app);
  makeLauncher(launcher, app);
  makeLauncher("/Applications/Tools/L.app", "/nowhere/Foo.app");
  scene::link("/Applications/Linked", "Tools");
  scene::makeApp("/Volumes/X9/Foo.app");
  makeLauncher("/Applications/Elsewhere.app", "/Volumes/X9/Foo.app");
  scene::link("/Applications/Link.app", "Foo Launcher.app");
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
  scene::makeApp(own + "/Bar.app", {.identifier = "com.example.bar.externallauncher"}, 7'000);
  scene::write(trash + "/L.app/old", "thrown away before");
  scene::write("/Users/me/Documents/letter", "a letter");
}

class Trial {
 public:
  Trial() {
    setCrowdedScene();
    for (const std::string& item : duplicates) whole_.push_back(scene::tree(item));
    for (const std::string& item : foreign) foreign_.push_back(scene::tree(item));
  }

  std::string problems() const {
    std::string problems;
    for (std::size_t i = 0; i < foreign.size(); ++i) {
      if (scene::tree(foreign[i]) != foreign_[i]) problems += "CHANGED: " + foreign[i] + "\n";
    }
    for (std::size_t i = 0; i < duplicates.size(); ++i) {
      if (placesOf(i).size() != 1) problems += "NOT WHOLE ONCE: " + duplicates[i] + "\n";
    }
    return problems;
  }

  /// What was said of each item, and the status.
  std::string lies(const sweep::Met& met) const {
    std::string lies;
    bool haveAllGone = met.said.find("error\t") == std::string::npos;
    std::istringstream lines(met.said);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("trash\t")) continue;
      const Lines field = fields(line);
      const bool succeeded = field[2] == "true";
      haveAllGone = haveAllGone && succeeded;
      if (succeeded == scene::exists(field[1])) lies += "NOT SO: " + line + "\n";
      if (succeeded && !isWholeAt(field[3])) lies += "NOT THERE: " + line + "\n";
      if (!succeeded && field[4].empty()) lies += "NO REASON: " + line + "\n";
    }
    if (met.status != (haveAllGone ? 0 : 1)) lies += "STATUS " + std::to_string(met.status) + "\n";
    return lies;
  }

  /// After one more run, without a fault.
  std::string problemsOfNextRun() const {
    const auto again = dedupe({"run", "--yes"});
    std::string problems = this->problems();
    if (again.status != 0) problems += "STATUS " + std::to_string(again.status) + "\n";
    if (dedupe({"scan"}).status != 0) problems += "LEFT\n";
    for (const std::string& item : duplicates) {
      if (scene::exists(item)) problems += "LEFT: " + item + "\n";
    }
    return problems.empty() ? "" : problems + "it said:\n" + again.out + again.err;
  }

 private:
  static Lines fields(const std::string& line) {
    Lines found;
    std::istringstream text(line);
    for (std::string field; std::getline(text, field, '\t');) found.push_back(field);
    found.resize(5);
    return found;
  }
  bool isWholeAt(const std::string& place) const {
    return std::find(whole_.begin(), whole_.end(), scene::tree(place)) != whole_.end();
  }
  Lines placesOf(std::size_t i) const {
    Lines places;
    Lines candidates;
    // Where a volume or the home can't be looked at, another Trash takes an item, and what is said tells
    // which.
    for (const std::string top : {"/Applications", "/Users", "/.Trashes"}) {
      if (!fs::exists(top)) continue;
      for (const auto& item : fs::recursive_directory_iterator(top)) {
        if (item.path().extension() == ".app") candidates.push_back(item.path());
      }
    }
    for (const std::string& place : candidates) {
      if (scene::tree(place) == whole_[i]) places.push_back(place);
    }
    return places;
  }

  std::vector<Lines> whole_, foreign_;
};

class DedupeCampaign : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    const std::string now = trial.problems() + (met->wasEnded ? "" : trial.lies(*met));
    const std::string next = trial.problemsOfNextRun();
    tally_.judge(met->fault, met->said, now, next);
    return met->wasMet;
  }
  bool failAt(int n, const scene::Failure& failure) {
    const Trial trial;
    return judged(trial, sweep::failedAt(n, failure, command));
  }

  sweep::Tally tally_{"dedupe"};
};

TEST_F(DedupeCampaign, killedAtAChangingCallLeavesEachItemWhole) {
  sweep::forEachCall(1, 1, [this](int n) {
    const Trial trial;
    return judged(trial, sweep::killedAt(n, command));
  });
  EXPECT_GE(tally_.runs(), 4) << "one call for each item, and the run without a fault";
}

TEST_F(DedupeCampaign, aChangingCallThatFailsIsToldAndLeavesItsItemWhole) {
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, ENOSPC, EACCES, EROFS}) {
      const scene::Failure failure{scene::CallKind::changing, error, forGood};
      sweep::forEachCall(1, 1, [&](int n) { return failAt(n, failure); });
    }
  }
  EXPECT_GE(tally_.runs(), 8 * 4);
}

TEST_F(DedupeCampaign, aLookThatFailsRemovesNothingThatIsNoDuplicate) {
  // The calls before these are of the loader, or of a sanitizer that reads how it is to behave.
  int first = 40;
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, EACCES}) {
      const scene::Failure failure{scene::CallKind::looking, error, forGood};
      sweep::forEachCall(first += 3, 97, [&](int n) { return failAt(n, failure); });
    }
  }
  EXPECT_GE(tally_.runs(), 20);
}

}  // namespace
