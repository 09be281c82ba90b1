// Every stand-in takes the same orders.

#include <chrono>

#include "RoomCase.h"

namespace quarn::tests {

namespace {

struct Tool {
  std::string name;
  std::string run;   // ends with status 0 after `scene`
  std::string word;  // one of the words of `run`
};

const std::string scene =
    "cd /tmp; bsdtar -cf A.zip --format zip /etc/passwd 2>/dev/null; cp A.zip A.dmg; app A.app; codesign -f "
    "-s - A.app; echo t >A.app/Contents/CodeResources; echo a >a\n";

const Tool tools[] = {
    {"codesign", "codesign -dv A.app", "-dv"},
    {"ditto", "ditto --rsrc a b", "--rsrc"},
    {"ditto", "ditto -x -k A.zip b", "-x"},
    {"hdiutil", "hdiutil attach A.dmg -plist", "attach"},
    {"tmutil", "tmutil listlocalsnapshots /", "listlocalsnapshots"},
};

class Orders : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  Finished ordered(const Tool& tool, const std::string& orders, const std::string& script) const {
    return play(scene + "told " + tool.name + " " + orders + "\n" + script);
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Orders, everyWay, nameOf);

}  // namespace

TEST_P(Orders, changeNothingWhereThereAreNone) {
  for (const Tool& tool : tools) EXPECT_EQ(play(scene + tool.run).status, 0) << tool.name;
}

TEST_P(Orders, letAToolFailWithAStatusAndAText) {
  for (const Tool& tool : tools) {
    const Finished finished = ordered(tool, "'fail 7 It  broke: \"why\".'", tool.run);
    EXPECT_EQ(finished.status, 7) << tool.name;
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(finished.err, "It  broke: \"why\".\n");
    EXPECT_EQ(ordered(tool, "'fail 3'", tool.run).err, "");
  }
}

TEST_P(Orders, letAToolWriteLinesOfItsOwnFirst) {
  for (const Tool& tool : tools) {
    const Finished finished = ordered(tool, "'# a note' '' 'out one' 'err two' 'fail 0'", tool.run);
    EXPECT_EQ(finished.out, "one\n") << tool.name;
    EXPECT_EQ(finished.err, "two\n");
    EXPECT_EQ(finished.status, 0);
  }
}

TEST_P(Orders, letAToolFloodBothOutputs) {
  for (const Tool& tool : tools) {
    const Finished finished = ordered(tool, "'flood 1' 'fail 2'", tool.run);
    EXPECT_EQ(finished.out, std::string(1 << 20, 'x')) << tool.name;
    EXPECT_EQ(finished.err, finished.out);
  }
}

TEST_P(Orders, letAToolWait) {
  for (const Tool& tool : tools) {
    const Finished finished =
        ordered(tool, "'wait-until /tmp/go'",
                "(" + tool.run + " >/dev/null 2>&1; echo ended) & sleep 0.2; echo going; touch go; wait");
    EXPECT_EQ(finished.out, "going\nended\n") << tool.name;
  }
}

TEST_P(Orders, letAToolHangUntilItIsAskedToEnd) {
  for (const Tool& tool : tools)
    EXPECT_EQ(ordered(tool, "hang", "timeout 0.2 " + tool.run).status, 124) << tool.name;
}

TEST_P(Orders, letAToolHangUntilItIsKilled) {
  for (const Tool& tool : tools) {
    // It says 137 and not 124 where the first signal did not do.
    EXPECT_EQ(ordered(tool, "'hang deaf'", "timeout -k 0.2 0.2 " + tool.run).status, 137) << tool.name;
  }
}

TEST_P(Orders, recordWhatAToolWasGiven) {
  for (const Tool& tool : tools) {
    const Finished finished =
        ordered(tool, "'record /tmp/calls' 'fail 0'", tool.run + "; " + tool.run + " 'a  b'; cat calls");
    std::string words = tool.run.substr(tool.run.find(' '));
    for (char& c : words)
      if (c == ' ') c = '\t';
    EXPECT_EQ(finished.out, tool.name + words + "\n" + tool.name + words + "\ta  b\n");
  }
}

TEST_P(Orders, holdForTheWordsThatTheyName) {
  for (const Tool& tool : tools) {
    EXPECT_EQ(ordered(tool, "'on --other fail 9'", tool.run).status, 0) << tool.name;
    EXPECT_EQ(ordered(tool, "'on " + tool.word + " fail 9'", tool.run).status, 9);
    EXPECT_EQ(ordered(tool, "'on " + tool.word.substr(0, 2) + "* fail 9'", tool.run).status, 9);
  }
}

TEST_P(Orders, holdOnceWhenTheySaySo) {
  for (const Tool& tool : tools) {
    const Finished finished =
        ordered(tool, "'once on --other fail 8' 'once fail 9' 'once fail 9'",
                "for i in 1 2 3; do " + tool.run + " >/dev/null 2>&1; echo $?; done; cat /var/db/*tools/*");
    EXPECT_EQ(finished.out, "9\n9\n0\nonce on --other fail 8\n") << tool.name;
  }
}

TEST_P(Orders, areRefusedWhenMisspelt) {
  for (const Tool& tool : tools) {
    const Finished finished = ordered(tool, "'fial 1'", tool.run);
    EXPECT_EQ(finished.status, 99);
    EXPECT_EQ(finished.err,
              tool.name + ": unknown order in /var/db/quarn-room-tools/" + tool.name + ": fial 1\n");
  }
}

TEST_P(Orders, holdWhateverStandsInThePlaceOfOtherTools) {
  for (const Tool& tool : tools)
    EXPECT_EQ(
        play(scene + "for t in find du ps; do printf '#!/bin/sh\\nexit 9\\n' >/usr/bin/$t; done; " + tool.run)
            .status,
        0)
        << tool.name;
}

}  // namespace quarn::tests
