#include <gtest/gtest.h>

#include "tests/cli/Faults.h"
#include "tests/cli/Two.h"

using namespace fault;
using turns::milliseconds;
using turns::Two;

/// Two runs of different commands that meet at one item.

namespace {

namespace fs = std::filesystem;

const std::string data = scene::home + "/Library/Application Support/Foo";
const std::string movedData = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/Foo";

int times(const std::string& text, const std::string& piece) {
  int count = 0;
  for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
  return count;
}

std::string pathMove(const std::string& source, const std::string& destination, const std::string& flags) {
  return "quarn move path --source '" + source + "' --destination '" + destination + "' " + flags;
}

class Pairs : public testing::Test {
 protected:
  void SetUp() override {
    // Long enough that the runs meet at every step.
    replaceDitto("sleep 0.04; " + realDitto + "; code=$?; sleep 0.04; exit $code");
    fs::rename("/usr/bin/rsync", "/usr/libexec/quarn-room/rsync");
    scene::replaceTool(
        "/usr/bin/rsync",
        "#!/bin/sh\nsleep 0.04; /usr/libexec/quarn-room/rsync \"$@\"; code=$?; sleep 0.04\nexit "
        "$code\n");
    makeScene();
  }
  void makeScene() {
    for (const std::string& place : {app, data, scene::drive + "/ExternalQuarn", scene::driveTrash(),
                                     scene::drive + "/A", scene::drive + "/B", scene::drive + "/Foo",
                                     scene::home + "/A", scene::home + "/Library/Application Support/Quarn"})
      fs::remove_all(place);
    scene::makeApp(app, {}, 4000);
    scene::writeBytes(data + "/state", 3000);
    bundle = scene::tree(app);
    folder = scene::tree(data);
  }
  void makeNested() {
    scene::writeBytes(scene::home + "/A/top", 3000);
    scene::writeBytes(scene::home + "/A/B/film", 3000);
  }
  void expectBothMovedOnce(const Two& two) {
    EXPECT_EQ(scene::target(app), moved) << two.all();
    EXPECT_EQ(scene::tree(moved), bundle) << two.all();
    EXPECT_EQ(scene::target(data), movedData) << two.all();
    EXPECT_EQ(scene::tree(movedData), folder) << two.all();
    EXPECT_FALSE(scene::exists(scene::driveTrash())) << "what one run made, no other sets aside\n"
                                                     << two.all();
    EXPECT_EQ(times(two.all(), "s -> " + moved + "\n"), 1) << two.all();
    EXPECT_EQ(times(two.all(), "s -> " + movedData + "\n"), 1) << two.all();
    EXPECT_EQ(times(two.all(), "    FAIL: "),
              times(two.all(), "    FAIL: Destination already exists.\n") +
                  times(two.all(), "    FAIL: It has been moved since it was looked at: "))
        << two.all();
  }

  std::vector<std::string> bundle;
  std::vector<std::string> folder;
  // By names that hold no path: a path in the other run's command line would count as a running application.
  const std::string one = "quarn move one com.example.foo --yes";
};

TEST_F(Pairs, theNextOneAndTheSameByNameMoveEachItemOnce) {
  for (const int gap : {0, 0, 10, 40, 80, 120, 160, 200, 280, 400}) {
    makeScene();
    expectBothMovedOnce(Two("quarn move next --yes", one, milliseconds(gap)));
  }
}

TEST_F(Pairs, allOfThemAndOneOfThemMoveEachItemOnce) {
  for (const int gap : {0, 0, 10, 40, 80, 120, 160, 200, 280, 400}) {
    makeScene();
    expectBothMovedOnce(Two("quarn move all --yes --no-snapshot", one, milliseconds(gap)));
    makeScene();
    expectBothMovedOnce(Two(one, "quarn move all --yes --no-snapshot", milliseconds(gap)));
  }
}

TEST_F(Pairs, ofBackAndRestoreOneBringsItHomeAndTheOtherRefuses) {
  for (const int gap : {0, 0, 2, 5, 10, 20, 40, 80}) {
    makeScene();
    ASSERT_EQ(moveOne({"--no-data"}).status, 0);
    const Two two("quarn move back Foo", "quarn move restore " + app, milliseconds(gap));
    EXPECT_EQ(scene::tree(app), bundle) << two.all();
    EXPECT_FALSE(scene::exists(moved)) << two.all();
    EXPECT_EQ(times(two.all(), "moved back: ") + times(two.all(), "restored: "), 1) << two.all();
    EXPECT_EQ(times(two.all(), "error\t"), 1) << two.all();
  }
}

TEST_F(Pairs, aFolderAndOneInsideItBothMoveWhicheverComesFirst) {
  const std::string outer = pathMove("/Users/me/A", "/Volumes/X9/A", "--yes");
  const std::string inner = pathMove("/Users/me/A/B", "/Volumes/X9/B", "--yes");
  for (const int gap : {0, 0, 2, 5, 10, 20, 50, 100, 150, 250}) {
    for (const bool outerFirst : {true, false}) {
      makeScene();
      makeNested();
      const std::string film = scene::read(scene::home + "/A/B/film"),
                        top = scene::read(scene::home + "/A/top");
      const Two two(outerFirst ? outer : inner, outerFirst ? inner : outer, milliseconds(gap));
      EXPECT_EQ(scene::target(scene::home + "/A"), "/Volumes/X9/A") << two.all();
      EXPECT_EQ(scene::read(scene::home + "/A/top"), top) << two.all();
      EXPECT_EQ(scene::read(scene::home + "/A/B/film"), film) << two.all();
      EXPECT_EQ(times(two.all(), "linked: ") + times(two.all(), "error\t"), 2) << two.all();
      if (times(two.all(), "linked: ") == 2) {
        EXPECT_EQ(scene::target("/Volumes/X9/A/B"), "/Volumes/X9/B") << two.all();
      }
    }
  }
}

TEST_F(Pairs, ofTheMoveOfAnApplicationAndOfItsDataByPathEachItemHasOnePlace) {
  const std::string byPath = pathMove(data, "/Volumes/X9/Foo", "--yes");
  for (const int gap : {0, 5, 20, 60, 120, 200, 300}) {
    for (const bool pathFirst : {true, false}) {
      makeScene();
      const Two two(pathFirst ? byPath : one, pathFirst ? one : byPath, milliseconds(gap));
      EXPECT_EQ(scene::target(app), moved) << two.all();
      EXPECT_EQ(scene::tree(moved), bundle) << two.all();
      const std::string place = scene::target(data);
      EXPECT_EQ(scene::tree(place), folder) << two.all();
      EXPECT_EQ(times(two.all(), "linked: ") + times(two.all(), "s -> " + movedData), 1) << two.all();
      EXPECT_EQ(times(two.all(), "linked: "), place == "/Volumes/X9/Foo" ? 1 : 0) << two.all();
    }
  }
}

TEST_F(Pairs, ofTheMoveOfAnApplicationAndOfItsBundleByPathOneIsDone) {
  const std::string byPath = pathMove(app, "/Volumes/X9/Foo", "--yes");
  for (const int gap : {0, 10, 60, 150, 300}) {
    makeScene();
    const Two two(one + " --no-data", byPath, milliseconds(gap));
    const std::string place = scene::target(app);
    EXPECT_EQ(scene::tree(place), bundle) << two.all();
    EXPECT_EQ(times(two.all(), "linked: "), place == "/Volumes/X9/Foo" ? 1 : 0) << two.all();
    EXPECT_EQ(times(two.all(), "s -> " + moved), place == moved ? 1 : 0) << two.all();
  }
}

/// A run that waits at its question, and is answered once another has come and gone.
class Question {
 public:
  explicit Question(const std::string& command)
      : run_({"/bin/sh", "-c",
              "{ while [ ! -e /tmp/answer ]; do sleep 0.01; done; echo y; } | " + command +
                  " >/tmp/asked 2>&1"}) {
    for (int i = 0; i < 2000 && scene::read("/tmp/asked").find("Proceed? [y/N] ") == std::string::npos; ++i)
      std::this_thread::sleep_for(milliseconds(5));
  }
  ~Question() { answered(); }
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;
  std::string answered() {
    scene::write("/tmp/answer", "");
    run_.wait();
    return scene::read("/tmp/asked");
  }

 private:
  scene::Background run_;
};

TEST_F(Pairs, aPathMoveThatBecameOneOntoItselfWhileItAskedIsRefused) {
  makeNested();
  const std::string film = scene::read(scene::home + "/A/B/film");
  Question inner(pathMove("/Users/me/A/B", "/Volumes/X9/A/B", ""));
  ASSERT_EQ(scene::shell(pathMove("/Users/me/A", "/Volumes/X9/A", "--yes")).status, 0);
  const auto before = scene::tree("/Volumes/X9/A");
  const std::string said = inner.answered();
  EXPECT_NE(said.find("error\tDestination lies inside the source: /Volumes/X9/A/B\n"), std::string::npos)
      << said;
  EXPECT_EQ(scene::tree("/Volumes/X9/A"), before);
  EXPECT_EQ(scene::read(scene::home + "/A/B/film"), film);
}

TEST_F(Pairs, aPathThatWasMovedWhileAnotherRunAskedIsALinkAlready) {
  makeNested();
  Question same(pathMove("/Users/me/A", "/Volumes/X9/A", ""));
  ASSERT_EQ(scene::shell(pathMove("/Users/me/A", "/Volumes/X9/A", "--yes")).status, 0);
  const auto before = scene::tree("/Volumes/X9/A");
  const std::string said = same.answered();
  EXPECT_NE(said.find("already symlink: /Users/me/A -> /Volumes/X9/A\n"), std::string::npos) << said;
  EXPECT_EQ(scene::tree("/Volumes/X9/A"), before);
}

TEST_F(Pairs, anApplicationThatWasMovedWhileAnotherRunAskedIsRefused) {
  Question asked("quarn move one com.example.foo --no-data");
  ASSERT_EQ(scene::shell(one + " --no-data").status, 0);
  const std::string said = asked.answered();
  EXPECT_NE(said.find("    FAIL: It has been moved since it was looked at: "), std::string::npos) << said;
  EXPECT_EQ(scene::target(app), moved);
  EXPECT_EQ(scene::tree(moved), bundle);
}

}  // namespace
