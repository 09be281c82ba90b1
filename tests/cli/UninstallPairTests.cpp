#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Two.h"
#include "tests/cli/UninstallCampaign.h"

/// Uninstalls that aren't alone: the outcome is that of one order or of the other, or one of the two refuses
/// with a sentence; and what one run made, no other sets aside.

using campaign::says;
using turns::milliseconds;
using turns::Two;
using uninstalls::application;
using uninstalls::driveCopy;
using uninstalls::jobOf;
using uninstalls::Lines;
using uninstalls::Trial;

namespace {

namespace fs = std::filesystem;

const std::vector<int> gaps = {0, 0, 10, 40, 100, 200};
const std::string orders = "/var/db/quarn-room-tools/";
const std::string notFound = "error\tApp not found: " + application + "\n";
const std::string home = scene::home + "/.Trash/";

/// A second run while a tool of the first one waits. Standard output and error of both.
struct Met {
  std::string first, second;
  std::string all() const { return first + "--\n" + second; }

  Met(const std::string& tool, const std::string& one, const std::string& other) {
    for (const char* file : {"/tmp/begun", "/tmp/go", "/tmp/1.out", "/tmp/2.out"}) fs::remove(file);
    scene::write(orders + tool, "record /tmp/begun\nwait-until /tmp/go\n");
    scene::Background early({"/bin/sh", "-c", one + " >/tmp/1.out 2>&1"});
    EXPECT_TRUE(scene::appears("/tmp/begun")) << scene::read("/tmp/1.out");
    scene::Background late({"/bin/sh", "-c", other + " >/tmp/2.out 2>&1"});
    for (int i = 0; i < 3000 && (!scene::exists("/tmp/2.out") || scene::read("/tmp/2.out").empty()); ++i)
      std::this_thread::sleep_for(milliseconds(20));
    scene::write("/tmp/go", "");
    early.wait();
    late.wait();
    first = scene::read("/tmp/1.out");
    second = scene::read("/tmp/2.out");
    fs::remove(orders + tool);
  }
};

/// Each order of two commands, with each gap.
template <class Judge>
void inBothOrders(const std::string& one, const std::string& other, const Judge& judge) {
  for (const int gap : gaps) {
    for (const bool isSwapped : {false, true})
      judge([&] { return Two(isSwapped ? other : one, isSwapped ? one : other, milliseconds(gap)); });
  }
}

/// What the session says of an item; nothing if it isn't in one.
std::optional<trees::Session::Item> recorded(const Trial& trial, const std::string& place) {
  for (const auto& session : trial.sessions())
    for (const auto& item : session.items)
      if (item.place == place) return item;
  return std::nullopt;
}

/// The place of the application's bundle, which is the same wherever it was moved.
class Bundle {
 public:
  explicit Bundle(const std::string& place) : tree_(scene::tree(place)) {}
  bool isAt(const std::string& place) const { return !scene::isLink(place) && scene::tree(place) == tree_; }

 private:
  const Lines tree_;
};

// The same application.

TEST(UninstallPairs, ofTwoOfOneApplicationOneFindsItGone) {
  for (const std::string job : {"application", "link", "launcher"}) {
    for (const int gap : gaps) {
      const Trial trial(jobOf(job));
      const Two two(jobOf(job).line(), jobOf(job).line(), milliseconds(gap));
      EXPECT_EQ(trial.problems({0, two.all(), true}), "") << two.all();
      EXPECT_TRUE(two.oneSays(notFound)) << two.all();
      EXPECT_TRUE(two.oneSays("id = \"")) << two.all();
      EXPECT_EQ(trial.left(), 0U) << two.all();
      EXPECT_EQ(trial.sessions().size(), 1U) << two.all();
    }
  }
}

TEST(UninstallPairs, aSecondRunWaitsWhileTheFirstOnePlans) {
  uninstalls::slowTools();
  for (const std::string tool : {"mdutil", "pkgutil"}) {
    const Trial trial(jobOf("application"));
    const Met met(tool, jobOf("application").line(), jobOf("application").line());
    EXPECT_EQ(trial.problems({0, met.all(), true}), "") << met.all();
    EXPECT_TRUE(says(met.second, turns::waiting)) << met.all();
    EXPECT_TRUE(says(met.second, notFound)) << met.all();
    EXPECT_EQ(trial.sessions().size(), 1U) << met.all();
  }
}

// Two applications.

TEST(UninstallPairs, ofTwoApplicationsInOneSecondBothSessionsStay) {
  const std::string other = "/Applications/Other.app";
  inBothOrders(jobOf("launcher").line(), "quarn uninstall run " + other, [&](const auto& begin) {
    const Trial trial(jobOf("launcher"));
    const Bundle bundle(other);
    const Two two = begin();
    EXPECT_EQ(trial.lostContents(), "") << two.all();
    EXPECT_FALSE(says(two.all(), "error\t")) << two.all();
    const auto sessions = trial.sessions();
    ASSERT_EQ(sessions.size(), 2U) << two.all();
    EXPECT_NE(sessions[0].id, sessions[1].id);
    EXPECT_NE(sessions[0].app, sessions[1].app);
    EXPECT_EQ(trial.left(), 0U);
    EXPECT_TRUE(bundle.isAt(home + "Other.app"));
  });
}

// Beside commands that change the same application.

TEST(UninstallPairs, anApplicationIsMovedBeforeItsLinkGoesOrGoesItself) {
  const std::string move = "quarn move one com.example.foo --no-data --yes --target-drive X9";
  inBothOrders(jobOf("application").line(), move, [&](const auto& begin) {
    const Trial trial(jobOf("application"));
    const Bundle bundle(application);
    const Two two = begin();
    EXPECT_EQ(trial.lostContents(), "") << two.all();
    EXPECT_FALSE(scene::exists(application)) << two.all();
    EXPECT_EQ(trial.left(), 0U) << two.all();
    const bool wasMoved = says(two.all(), "ok in ");
    // There is an older one of this name in the Trash.
    const auto item = recorded(trial, application);
    ASSERT_TRUE(item && item->succeeded && item->trashedTo) << two.all();
    EXPECT_TRUE(bundle.isAt(wasMoved ? driveCopy : *item->trashedTo)) << two.all();
    EXPECT_EQ(scene::target(*item->trashedTo), wasMoved ? driveCopy : "") << two.all();
  });
}

TEST(UninstallPairs, anApplicationComesHomeBeforeItGoesOrStaysOnTheDrive) {
  const std::string uninstall = "quarn uninstall run " + application;
  inBothOrders(uninstall, "quarn move back Foo", [&](const auto& begin) {
    const Trial trial(jobOf("link"));
    const Bundle bundle(driveCopy);
    const Two two = begin();
    EXPECT_EQ(trial.lostContents(), "") << two.all();
    EXPECT_FALSE(scene::exists(application)) << two.all();
    const auto item = recorded(trial, application);
    ASSERT_TRUE(item && item->succeeded && item->trashedTo) << two.all();
    const bool cameHome = !scene::isLink(*item->trashedTo);
    EXPECT_TRUE(bundle.isAt(cameHome ? *item->trashedTo : driveCopy)) << two.all();
    EXPECT_NE(cameHome, says(two.all(), "error\t")) << two.all();
  });
}

TEST(UninstallPairs, aRepairMakesNothingOfWhatIsJustGoing) {
  for (const std::string job : {"link", "launcher", "application"}) {
    inBothOrders(jobOf(job).line(), "quarn health repair --yes --no-snapshot", [&](const auto& begin) {
      const Trial trial(jobOf(job));
      const Two two = begin();
      EXPECT_EQ(trial.lostContents(), "") << two.all();
      EXPECT_EQ(trial.left(), 0U) << two.all();
      EXPECT_EQ(trial.sessions().size(), 1U) << two.all();
      for (const std::string& item : jobOf(job).goes)
        EXPECT_EQ(trial.placesOf(item).size(), 1U) << item << two.all();
      EXPECT_FALSE(says(two.all(), "error\t")) << two.all();
    });
  }
}

TEST(UninstallPairs, anApplicationIsInstalledBeforeItGoesOrAfterIt) {
  const std::string source = scene::home + "/Downloads/Foo.app";
  const std::string install =
      "quarn install run " + source + " --option trusted-external --target-drive /Volumes/X9";
  inBothOrders(jobOf("application").line(), install, [&](const auto& begin) {
    const Trial trial(jobOf("application"));
    const Bundle bundle(application);
    scene::makeApp(source, {}, 500);
    const Bundle fresh(source);
    const Two two = begin();
    EXPECT_EQ(trial.lostContents(), "") << two.all();
    EXPECT_TRUE(fresh.isAt(driveCopy)) << two.all();
    EXPECT_FALSE(says(two.all(), "error\t")) << two.all();
    // By the one or by the other.
    const auto item = recorded(trial, application);
    ASSERT_TRUE(item && item->succeeded && item->trashedTo) << two.all();
    const bool wentItself = bundle.isAt(*item->trashedTo);
    const bool launcherWent = scene::exists(*item->trashedTo + "/Contents/Resources/ExternalAppTarget.txt");
    EXPECT_NE(wentItself, launcherWent) << two.all();
    EXPECT_EQ(scene::exists(application), wentItself) << two.all();
    EXPECT_EQ(trial.placesOf(application).size(), 1U) << two.all();
  });
}

}  // namespace
