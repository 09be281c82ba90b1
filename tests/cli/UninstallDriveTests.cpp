#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

#include "tests/cli/CallSweep.h"
#include "tests/cli/CampaignLooks.h"
#include "tests/cli/DriveScenes.h"
#include "tests/cli/UninstallCampaign.h"
#include "tests/support/linux/KilledAt.h"

/// Uninstalling where a volume is full, read-only, another one than that of the home, or pulled out.

using campaign::says;
using uninstalls::application;
using uninstalls::driveCopy;
using uninstalls::jobOf;
using uninstalls::Trial;

namespace {

namespace fs = std::filesystem;

const std::string support = scene::home + "/Library/Application Support/Quarn";

/// For as long as it lives, a volume is mounted somewhere.
class Mounted {
 public:
  Mounted(const std::string& place, const std::string& options, unsigned long flags = 0) : place_(place) {
    scene::makeFolder(place);
    if (::mount("tmpfs", place.c_str(), "tmpfs", flags, options.c_str()) != 0)
      scene::fail("can't mount " + place);
  }
  ~Mounted() { ::umount2(place_.c_str(), MNT_DETACH); }
  Mounted(const Mounted&) = delete;
  Mounted& operator=(const Mounted&) = delete;

 private:
  const std::string place_;
};

void remount(const std::string& place, unsigned long flags) {
  if (::mount(nullptr, place.c_str(), nullptr, MS_REMOUNT | flags, nullptr) != 0)
    scene::fail("can't remount " + place);
}

void fill(const std::string& place) {
  struct statvfs found {};
  ::statvfs(place.c_str(), &found);
  std::ofstream file(place + "/filling", std::ios::binary);
  const std::string block(found.f_bsize, 'x');
  while (file.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) continue;
}

class UninstallDrives : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "drives can't be mounted in this room";
    uninstalls::quickenTools();
  }
};

const trees::Session::Item& itemOf(const trees::Session& session, const std::string& place) {
  for (const auto& item : session.items)
    if (item.place == place) return item;
  scene::fail("no item " + place);
}

TEST_F(UninstallDrives, whereNothingCanBeRecordedItIsSaidWhatWent) {
  for (const bool isFull : {false, true}) {
    const Trial trial(jobOf("application"));
    const auto run = [&] {
      const Mounted volume(support, "size=64k,mode=0755");
      if (isFull) {
        fill(support);
      } else {
        remount(support, MS_RDONLY);
      }
      return scene::quarn({"uninstall", "run", application});
    }();
    EXPECT_EQ(run.status, 1) << run.out << run.err;
    EXPECT_TRUE(says(run.err, "error\t")) << run.err;
    EXPECT_EQ(trial.lostContents(), "");
    for (const std::string& item : jobOf("application").goes) {
      EXPECT_EQ(trial.placesOf(item).size(), 1U) << item;
      EXPECT_NE(scene::exists(item), says(run.err, "originalPath = \"" + item + "\"\n")) << item << run.err;
    }
  }
}

TEST_F(UninstallDrives, aCopyOnADriveThatIsReadOnlyStaysAndTheSessionSaysSo) {
  const Trial trial(jobOf("link"));
  remount(scene::drive, MS_RDONLY);
  const auto run = scene::quarn(jobOf("link").arguments);
  EXPECT_EQ(trial.problems({run.status, run.out + run.err}), "") << run.out << run.err;
  remount(scene::drive, 0);
  EXPECT_EQ(trial.left(), 1U);
  ASSERT_EQ(trial.sessions().size(), 1U);
  const auto copy = itemOf(trial.sessions()[0], driveCopy);
  EXPECT_FALSE(copy.succeeded);
  EXPECT_FALSE(copy.trashedTo);
}

TEST_F(UninstallDrives, onADriveThatIsFullTheCopyGoesToItsTrash) {
  const Trial trial(jobOf("link"));
  scene::makeFolder(scene::driveTrash());
  fill(scene::drive);
  const auto run = scene::quarn(jobOf("link").arguments);
  fs::remove(scene::drive + "/filling");
  EXPECT_EQ(trial.problems({run.status, run.out + run.err}), "") << run.out << run.err;
  EXPECT_EQ(trial.left(), 0U) << run.out << run.err;
}

TEST_F(UninstallDrives, whatLiesOnAVolumeOfItsOwnGoesToTheTrashOfThatVolume) {
  const std::string caches = scene::home + "/Library/Caches", cache = caches + "/com.example.foo";
  const Mounted volume(caches, "size=1m,mode=0755");
  // The scene is set on the volume, whose top it can't remove.
  scene::makeApp(application, {}, 100);
  scene::write(cache + "/file", "a cache");
  const auto whole = scene::tree(cache);
  const auto run = scene::quarn({"uninstall", "run", application});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(scene::tree(scene::driveTrash(caches) + "/com.example.foo"), whole) << run.out;
  EXPECT_TRUE(says(run.out, "trashedTo = \"" + scene::driveTrash(caches) + "/com.example.foo\"\n"))
      << run.out;
}

TEST_F(UninstallDrives, withoutItsDriveOnlyTheLinkGoes) {
  const PocketDrive pocket;
  for (const bool leavesItsMountPoint : {false, true}) {
    const Trial trial(jobOf("link"));
    PocketDrive::pull(leavesItsMountPoint);
    const auto run = scene::quarn(jobOf("link").arguments);
    PocketDrive::plug();
    EXPECT_EQ(trial.problems({run.status, run.out + run.err}), "") << run.out << run.err;
    // What it is called stands in the copy, so its cache can't be found, either.
    EXPECT_EQ(trial.left(), 2U) << run.out << run.err;
    EXPECT_FALSE(scene::isLink(application));
    EXPECT_EQ(trial.placesOf(driveCopy), uninstalls::Lines{driveCopy});
  }
}

TEST_F(UninstallDrives, aDrivePulledOutAtAnyCallKeepsWhatIsOnIt) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const PocketDrive pocket;
  int runs = 0;
  for (const bool leavesItsMountPoint : {false, true}) {
    sweep::forEachCall(leavesItsMountPoint ? 2 : 1, 5, [&](int n) {
      const Trial trial(jobOf("link"), {driveCopy});
      const auto met = sweep::pulledAt(n, leavesItsMountPoint, jobOf("link").words());
      if (!met) return false;
      ++runs;
      const std::string now = trial.problems({met->status, met->said, false});
      EXPECT_EQ(now + trial.problemsOfNextRun(), "") << met->fault << "\n" << met->said;
      return true;
    });
  }
  std::printf("%d runs\n", runs);
}

}  // namespace
