#include <cerrno>
#include <gtest/gtest.h>

#include "tests/cli/CallSweep.h"
#include "tests/cli/ScaffoldScenes.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// The generator met by a fault at its n-th system call, and the script it writes at its n-th tool. Whatever
/// happens, what stood there is whole at its place or where a line says, and nothing else has changed.

using namespace scaffolds;

namespace {

namespace fs = std::filesystem;

const std::string script = project + "/build.command";
const Words generator = {"quarn", "scaffold", "build-command", "--app-name", "Kite", "--preset",
                         "make",  "-o",       script};

Words withForce() {
  Words words = generator;
  words.push_back("--force");
  return words;
}

class ScaffoldFaults : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
    scene::makeFolder(project);
    ASSERT_EQ(scene::run(generator).status, 0);
    complete_ = scene::read(script);
  }

  void setScene() {
    for (const auto& item : fs::directory_iterator(project)) fs::remove_all(item.path());
    scene::write(project + "/mine", "mine");
    scene::write(script, "old");
    fs::permissions(script, fs::perms(0600));
  }

  /// What is wrong with what a run left behind.
  std::string problems(const sweep::Met& met, bool canClearUp) const {
    const std::string text = scene::read(script);
    const bool isNew = text == complete_, isDone = isNew && modeOf(script) == 0755;
    std::string problems;
    if (!isNew && text != "old") problems += "NEITHER\n";
    if (scene::read(project + "/mine") != "mine") problems += "FOREIGN\n";
    if (canClearUp && scene::tree(project).size() != 3) problems += "LEFT SOMETHING\n";
    if (!met.wasEnded && met.status != (isDone ? 0 : 1))
      problems += "STATUS " + std::to_string(met.status) + "\n";
    if (!isDone && met.said.find("Wrote ") != std::string::npos) problems += "A LIE\n";
    if (!met.wasEnded && !isDone && met.said.find("error\t") == std::string::npos) problems += "NO WORD\n";
    return problems;
  }

  bool judged(const std::optional<sweep::Met>& met, bool canClearUp) {
    if (!met) return false;
    ++runs_;
    const std::string now = problems(*met, canClearUp);
    if (!now.empty()) ADD_FAILURE() << met->fault << "\n" << now << met->said;
    EXPECT_EQ(scene::run(withForce()).status, 0);
    EXPECT_EQ(scene::read(script), complete_);
    EXPECT_EQ(modeOf(script), 0755u);
    EXPECT_EQ(scene::tree(project).size(), 3u) << "the next run clears up";
    return met->wasMet;
  }

  std::string complete_;
  int runs_ = 0;
};

TEST_F(ScaffoldFaults, killedAtAChangingCallTheGeneratorLeavesOneScriptOrTheOther) {
  sweep::forEachCall(1, 1, [this](int n) {
    setScene();
    return judged(sweep::killedAt(n, withForce()), false);
  });
  EXPECT_GE(runs_, 5);
}

TEST_F(ScaffoldFaults, aChangingCallOfTheGeneratorThatFailsIsTold) {
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, ENOSPC, EACCES, EROFS}) {
      const scene::Failure failure{scene::CallKind::changing, error, forGood};
      sweep::forEachCall(1, 1, [&](int n) {
        setScene();
        return judged(sweep::failedAt(n, failure, withForce()), !forGood);
      });
    }
  }
  EXPECT_GE(runs_, 8 * 4);
}

TEST_F(ScaffoldFaults, aLookThatFailsReplacesNoScript) {
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, EACCES}) {
      const scene::Failure failure{scene::CallKind::looking, error, forGood};
      sweep::forEachCall(1, 1, [&](int n) {
        setScene();
        const auto before = scene::tree(project);
        const auto met = sweep::failedAt(n, failure, generator);
        if (!met) return false;
        ++runs_;
        EXPECT_EQ(scene::tree(project), before) << met->fault << met->said;
        EXPECT_NE(met->status, 0) << met->fault;
        return met->wasMet;
      });
    }
  }
  EXPECT_GE(runs_, 4 * 2) << "one look at the place of the script, and the run without a fault";
}

/// A tool of the script ends it, before or after its work, or fails without doing any.
enum class Fault { killedBefore, killedAfter, fails };

class ScaffoldScriptFaults : public testing::TestWithParam<Fault> {
 protected:
  void setScene() {
    for (const std::string folder : {"/Applications", "/Volumes/X9", "/Users/me"}) {
      for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item.path());
    }
    makeProjectWithScript();
    stopTheClock();
    scene::makeApp(installed, {}, 3'000);
    scene::makeApp(onDrive, {}, 5'000);
    scene::makeApp("/Applications/Other.app");
    scene::write(apps + "/Other.app/x", "other");
    old_ = {scene::tree(installed), scene::tree(onDrive)};
    foreign_ = foreign();
  }

  static std::vector<std::string> foreign() {
    auto all = scene::tree("/Applications/Other.app");
    for (const auto& more : scene::tree(apps + "/Other.app")) all.push_back(more);
    return all;
  }

  /// From now on the n-th tool that the script starts meets the fault.
  void faultAt(int n) {
    const std::string work = "\"/.host/usr/bin/$name\" \"$@\"";
    const std::string by = GetParam() == Fault::killedBefore  ? "kill -9 $PPID; exit"
                           : GetParam() == Fault::killedAfter ? work + "; kill -9 $PPID; exit"
                                                              : "exit 1";
    const std::string wrapper =
        "#!/bin/sh\nname=${0##*/}\necho >>/Users/me/count\n"
        "[ \"$name\" != codesign ] && [ \"$name\" != ditto ] || set -- /usr/libexec/quarn-room/$name \"$@\"\n"
        "[ \"$name\" != codesign ] && [ \"$name\" != ditto ] || name=env\n"
        "[ $(wc -l </Users/me/count) -ne " +
        std::to_string(n) + " ] || { " + by + "; }\nexec " + work + "\n";
    for (const std::string tool : {"mkdir", "mv", "rmdir", "ln", "make", "codesign"})
      makeScript(tools + "/" + tool, wrapper);
    scene::replaceTool("/usr/bin/ditto", wrapper);
  }
  void mend() {
    for (const std::string tool : {"mkdir", "mv", "rmdir", "ln", "make", "codesign"})
      fs::remove(tools + "/" + tool);
    fs::remove("/usr/bin/ditto");
    fs::copy_file("/usr/libexec/quarn-room/ditto", "/usr/bin/ditto");
  }

  /// Where a tree stands whole, at its place or in the stash.
  int placesOf(const std::vector<std::string>& whole, const std::string& place) const {
    int places = scene::tree(place) == whole ? 1 : 0;
    if (!scene::exists(stash)) return places;
    for (const auto& item : fs::directory_iterator(stash))
      places += scene::tree(item.path()) == whole ? 1 : 0;
    return places;
  }
  void expectNothingLost(const std::string& said) const {
    // A copy to another volume that was ended behind its work is there twice.
    EXPECT_GE(placesOf(old_[0], installed), 1) << said;
    EXPECT_GE(placesOf(old_[1], onDrive), 1) << said;
    EXPECT_EQ(foreign(), foreign_) << said;
  }

  void expectInstalled() const {
    EXPECT_EQ(scene::target(installed), onDrive);
    EXPECT_EQ(scene::tree(onDrive), scene::tree(project + "/build/Paper Kite.app"));
  }

  /// Where a run left its claim, the next one does nothing until that is removed.
  void removeClaim() const {
    if (!scene::exists(claim)) return;
    const auto before = scene::tree("/Users/me");
    const auto refused = build({drive});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.err.ends_with("remove that folder: rmdir /tmp/Paper\\ Kite.run\n")) << refused.err;
    EXPECT_EQ(scene::tree("/Users/me"), before);
    fs::remove(claim);
  }

  /// Whatever isn't at its place is where a line says.
  void expectTold(const std::string& said) const {
    if (!scene::exists(stash)) return;
    for (const auto& item : fs::directory_iterator(stash)) {
      const std::string name = item.path().filename();
      if (name.starts_with('.')) continue;
      EXPECT_NE(said.find(" -> " + stash + "/" + name + "\n"), std::string::npos) << name;
    }
  }

  std::vector<std::vector<std::string>> old_;
  std::vector<std::string> foreign_;
};

TEST_P(ScaffoldScriptFaults, loseNothingAtAnyTool) {
  int n = 0;
  for (bool wasMet = true; wasMet;) {
    setScene();
    faultAt(++n);
    const auto run = build({drive});
    mend();
    const bool wasStopped = run.status != 0;
    wasMet = scene::read("/Users/me/count").size() >= static_cast<std::size_t>(n);
    EXPECT_TRUE(wasMet || !wasStopped);
    const std::string said = "at tool " + std::to_string(n) + "\n" + run.out + run.err;
    SCOPED_TRACE(said);
    if (wasStopped) {
      // Before that, it is the build that is killed, and the script stops.
      const bool wasBuilt = run.out.find("==> ad-hoc sign") != std::string::npos;
      if (wasBuilt) {
        EXPECT_EQ(run.status == -9, GetParam() != Fault::fails);
      }
    }
    // The script may still be stopped when it takes its claim away.
    if (run.out.find("Done.") != std::string::npos) expectInstalled();
    if (GetParam() == Fault::fails) expectTold(run.out);
    expectNothingLost(said);
    removeClaim();
    const auto again = build({drive});
    EXPECT_EQ(again.status, 0) << again.out << again.err;
    EXPECT_FALSE(scene::exists(claim));
    expectInstalled();
    expectNothingLost("the next run: " + again.out);
    ASSERT_LT(n, 50);
  }
  EXPECT_GE(n, 12) << "the claim, make, codesign, two items that are moved aside, ditto and ln";
}

INSTANTIATE_TEST_SUITE_P(Each, ScaffoldScriptFaults,
                         testing::Values(Fault::killedBefore, Fault::killedAfter, Fault::fails),
                         [](const auto& row) {
                           return row.param == Fault::killedBefore  ? "killedBefore"
                                  : row.param == Fault::killedAfter ? "killedAfter"
                                                                    : "fails";
                         });

}  // namespace
