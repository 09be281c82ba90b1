#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

#include "tests/cli/AnyMoment.h"
#include "tests/cli/BackupScenes.h"
#include "tests/cli/CallSweep.h"
#include "tests/cli/DriveScenes.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// `backup create` met by a fault at its n-th system call. Whatever happens, the sources and what was on the
/// drive before are as they were, a backup that is recorded is whole, and one that was told of is recorded.

using namespace backups;

namespace {

namespace fs = std::filesystem;

const Lines command = {"quarn", "backup", "create", "--target-drive", "/Volumes/X9"};
const std::string line = "QUARN_SOURCE_ROOT=" + source + " quarn backup create --target-drive /Volumes/X9";
const std::string earlier = folder + "/20200101_000000";

void setCrowdedScene() {
  for (const std::string top : {"/Applications", "/Users/me", "/Volumes/X9"}) {
    fs::permissions(top, fs::perms::owner_all);
    for (const auto& item : fs::directory_iterator(top)) fs::remove_all(item);
  }
  setScene();
  scene::write(source + "/quarn-notes", "with the word");
  scene::write(source + "/app-notes", "without it");
  scene::write(earlier + "/SourceApp/old", "an earlier backup");
  scene::write(earlier + "/backup.json",
               "{\"id\":\"20200101_000000\",\"rootPath\":\"" + earlier +
                   "\",\"createdAt\":0,\"sourceFileCount\":1,\"backupFileCount\":1}");
  scene::write("/Volumes/X9/Photos/photo", "foreign");
}

/// The contents of the files of a tree, whatever these are called.
std::multiset<std::string> bytesOf(const std::string& tree) {
  std::multiset<std::string> bytes;
  if (!scene::exists(tree)) return bytes;
  for (const auto& [name, content] : fault::contents(tree)) bytes.insert(content);
  return bytes;
}

class Trial {
 public:
  Trial() {
    setCrowdedScene();
    for (const std::string& item : untouched()) before_.push_back(scene::tree(item));
  }

  /// `said` is empty for a run whose words nobody heard.
  std::string problems(const std::string& said = "") const {
    std::string problems;
    for (std::size_t i = 0; i < untouched().size(); ++i)
      if (scene::tree(untouched()[i]) != before_[i]) problems += "CHANGED: " + untouched()[i] + "\n";
    for (const std::string& root : recorded()) problems += problemsOf(root);
    if (const auto at = said.find("backup\t"); at != std::string::npos) {
      const std::string id = said.substr(at + 7, 15);
      if (scene::read(folder + "/" + id + "/backup.json").empty()) problems += "TOLD AND NOT RECORDED\n";
    }
    return problems;
  }
  std::string problemsNowAndNext(const std::string& said = "") const {
    const std::string now = problems(said);
    return now + problemsOfNextRun();
  }
  std::string lies(const sweep::Met& met) const {
    const bool isTold = met.said.find("backup\t") != std::string::npos;
    const bool isError = met.said.find("error\t") != std::string::npos;
    if (met.status == 0 && isTold && !isError) return "";
    return met.status == 1 && isError ? "" : "STATUS " + std::to_string(met.status) + "\n";
  }
  /// After one more run, without a fault.
  std::string problemsOfNextRun() const {
    const auto ofNow = recorded().size();
    // A backup of the same second would have to wait for the next one.
    for (const std::string& name : fault::names(folder))
      if (folder + "/" + name != earlier) fs::rename(folder + "/" + name, folder + "/before-" + name);
    const auto again = create();
    std::string problems = this->problems(again.out);
    if (again.status != 0 || recorded().size() != ofNow + 1) problems += "NO BACKUP\n";
    return problems.empty() ? "" : problems + "it said:\n" + again.out + again.err;
  }

 private:
  static const Lines& untouched() {
    static const Lines items = {source, app, earlier, "/Volumes/X9/Photos"};
    return items;
  }
  /// The new backups that have a record.
  static Lines recorded() {
    Lines found;
    for (const std::string& name : fault::names(folder)) {
      const std::string root = folder + "/" + name;
      if (root != earlier && scene::exists(root + "/backup.json")) found.push_back(root);
    }
    return found;
  }
  static std::string problemsOf(const std::string& root) {
    std::string problems;
    const auto count = std::to_string(bytesOf(source).size() + bytesOf(app).size());
    if (scene::read(root + "/backup.json").find("\"sourceFileCount\":" + count + ",") == std::string::npos)
      problems += "NO TRUE RECORD: " + root + "\n";
    auto copied = bytesOf(root + "/SourceApp");
    // It may be in the Trash, which is also where that of another backup is.
    copied.insert("without it");
    auto wanted = bytesOf(source);
    if (copied.count("without it") == 2) wanted.insert("without it");
    if (copied != wanted) problems += "NOT WHOLE: " + root + "/SourceApp\n";
    if (bytesOf(root + "/InstalledApp.app") != bytesOf(app))
      problems += "NOT WHOLE: " + root + "/InstalledApp.app\n";
    for (const auto& item : fs::recursive_directory_iterator(root)) {
      const std::string name = item.path().filename();
      if (name.find("quarn") != std::string::npos ||
          (name.find("Quarn") != std::string::npos && name != ".QuarnTrash"))
        problems += "NAMED: " + item.path().string() + "\n";
    }
    return problems;
  }

  std::vector<Lines> before_;
};

class BackupCampaign : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }
  BackupCampaign() { ::setenv("QUARN_SOURCE_ROOT", source.c_str(), 1); }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    const std::string now = trial.problems(met->said) + (met->wasEnded ? "" : trial.lies(*met));
    const std::string next = trial.problemsOfNextRun();
    tally_.judge(met->fault, met->said, now, next);
    return met->wasMet;
  }
  bool failAt(int n, const scene::Failure& failure) {
    const Trial trial;
    return judged(trial, sweep::failedAt(n, failure, command));
  }

  sweep::Tally tally_{"backup"};
};

TEST_F(BackupCampaign, killedAtAChangingCallChangesNothingElseAndTellsOfNoHalfBackup) {
  sweep::forEachCall(1, 7, [this](int n) {
    const Trial trial;
    return judged(trial, sweep::killedAt(n, command));
  });
  EXPECT_GE(tally_.runs(), 5);
}

TEST_F(BackupCampaign, aChangingCallThatFailsIsToldOrMadeGoodFor) {
  sweep::forEachFailingChange(2, 23,
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
  EXPECT_GE(tally_.runs(), 16);
}

TEST_F(BackupCampaign, aLookThatFailsMakesNoHalfBackup) {
  int first = 40;
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, EACCES}) {
      const scene::Failure failure{scene::CallKind::looking, error, forGood};
      sweep::forEachCall(first += 3, 61, [&](int n) { return failAt(n, failure); });
    }
  }
  EXPECT_GE(tally_.runs(), 12);
}

TEST(BackupSignals, endARunAtAnyMomentAndLeaveNoHalfBackup) {
  anymoment::Moments moments(std::chrono::milliseconds(30));
  for (int i = 0; i < anymoment::rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      const Trial trial;
      const auto ended = anymoment::bySignal("/usr/bin/env " + line, number, moments.next());
      EXPECT_EQ(trial.problemsNowAndNext(ended.said), "") << ended.how << "\n" << ended.said;
    }
    const Trial trial;
    const auto ended = anymoment::byClosedPipe(line, moments.next());
    EXPECT_EQ(trial.problemsNowAndNext(), "") << ended.how;
  }
}

class BackupDrives : public testing::Test {
 protected:
  BackupDrives() { ::setenv("QUARN_SOURCE_ROOT", source.c_str(), 1); }
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "drives can't be mounted in this room";
  }
};

TEST_F(BackupDrives, thatAreFullGetNoRecord) {
  const Trial trial;
  scene::plug("Full", "200k");
  scene::writeBytes(source + "/large", 400'000);
  const auto run = scene::quarn({"backup", "create", "--target-drive", "/Volumes/Full"}, from(source));
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "error\tYou can’t save the file “quarn” because the volume “Full” is out of space.\n");
  EXPECT_EQ(list("/Volumes/Full").out, "");
  const auto made = fault::names("/Volumes/Full/QuarnBackups");
  ASSERT_EQ(made.size(), 1U);
  EXPECT_EQ(fault::names("/Volumes/Full/QuarnBackups/" + made[0]), Lines{}) << "half a copy is removed";
}

TEST_F(BackupDrives, thatAreReadOnlySaySo) {
  setCrowdedScene();
  scene::plug("Fixed", "1m", true);
  const auto run = scene::quarn({"backup", "create", "--target-drive", "/Volumes/Fixed"}, from(source));
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_EQ(run.err,
            "error\tYou can’t save the file “QuarnBackups” because the volume “Fixed” is read only.\n");
}

TEST_F(BackupDrives, pulledOutAtAnyCallGetNoBackupBesideThem) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const PocketDrive pocket;
  int runs = 0;
  for (const bool leavesItsMountPoint : {false, true}) {
    sweep::forEachCall(leavesItsMountPoint ? 2 : 1, 9, [&](int n) {
      const Trial trial;
      const auto met = sweep::pulledAt(n, leavesItsMountPoint, command);
      if (!met) return false;
      ++runs;
      EXPECT_EQ(trial.lies(*met) + trial.problemsNowAndNext(met->said), "") << met->fault << "\n"
                                                                            << met->said;
      return true;
    });
  }
  std::printf("%d runs\n", runs);
}

}  // namespace
