// Every stand-in takes the same orders.

#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Orders : public RoomCase {
 protected:
  /// One tool stands for all, since they all obey through the same script.
  Finished ordered(const std::string& orders, const std::string& script) const {
    return play("cd /tmp; told tmutil " + orders + "\n" + script);
  }

  /// Calls the shell function `before` with the name of each tool, runs it, and prints its name and status.
  Finished eachTool(const std::string& before) const {
    return play(
        "cd /tmp; bsdtar -cf A.zip --format zip /etc/passwd; cp A.zip A.dmg; echo a >a; app A.app\n"
        "codesign -s 'Developer ID Application: Foo' A.app; echo t >A.app/Contents/CodeResources\n"
        "mkdir payload; package A.pkg; sign A.pkg apple\n" +
        before +
        "\nrun() { before \"${1##*/}\"; \"$@\" >out 2>err; echo \"${1##*/} $?\"; }\n"
        "run codesign -dv A.app; run ditto a b; run ditto -x -k A.zip d; run hdiutil attach A.dmg -plist\n"
        "run /System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
        "lsregister -f A.app\n"
        "run mdutil -s /; run spctl -a -vv A.app; run tmutil localsnapshot; run xcrun stapler validate "
        "A.app; run gantrix true; run installer -pkg A.pkg -target /; run pkgutil --check-signature A.pkg; "
        "run "
        "pkgutil --forget com.example.foo; run xar -xf A.pkg; run xattr -cr A.app; run "
        "/usr/libexec/quarn-room/sign-package A.pkg "
        "apple");
  }

  static std::string eachWith(const std::string& status) {
    std::string lines;
    for (const std::string tool :
         {"codesign", "ditto", "ditto", "hdiutil", "lsregister", "mdutil", "spctl", "tmutil", "xcrun",
          "gantrix", "installer", "pkgutil", "pkgutil", "xar", "xattr", "sign-package"})
      lines += tool + " " + status + "\n";
    return lines;
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Orders, everyWayOfScripts, nameOf);

const std::string list = "tmutil listlocalsnapshots /";

}  // namespace

TEST_P(Orders, areObeyedByEveryTool) {
  if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
  EXPECT_EQ(eachTool("before() { told $1 'fail 7'; }").out, eachWith("7"));
}

TEST_P(Orders, areNotNeededByAnyToolNorTheRoomsOtherTools) {
  if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
  const std::string spoilt =
      "for t in find du ps sed; do rm /usr/bin/$t; printf '#!/bin/sh\\nexit 9\\n' >/usr/bin/$t; "
      "chmod 755 /usr/bin/$t; done\n";
  EXPECT_EQ(eachTool("before() { :; }\n" + spoilt).out, eachWith("0"));
}

TEST_P(Orders, letAToolFailWithAStatusAndAText) {
  const Finished finished = ordered("'fail 7 It  broke: \"why\".'", list);
  EXPECT_EQ(finished.status, 7);
  EXPECT_EQ(finished.out, "");
  EXPECT_EQ(finished.err, "It  broke: \"why\".\n");
  EXPECT_EQ(ordered("'fail 3'", list).err, "");
}

TEST_P(Orders, letAToolWriteLinesOfItsOwnFirst) {
  const Finished finished = ordered("'# a note' '' 'out one' 'err two' 'out a  \"b\"\\c' 'fail 0'", list);
  EXPECT_EQ(finished.out, "one\na  \"b\"\\c\n");
  EXPECT_EQ(finished.err, "two\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(ordered("'out one'", list).out, "one\nSnapshots for disk /:\n");
}

TEST_P(Orders, letAToolFloodBothOutputs) {
  const Finished finished = ordered("'flood 3' 'fail 2'", list);
  EXPECT_TRUE(finished.out == std::string(3 << 20, 'x')) << finished.out.size();
  EXPECT_TRUE(finished.err == finished.out) << finished.err.size();
}

TEST_P(Orders, letAToolWait) {
  const Finished finished =
      ordered("'wait-until /tmp/go now'",
              "(" + list + " >list; echo ended) & sleep 0.3; echo going; touch 'go now'; wait; cat list");
  EXPECT_EQ(finished.out, "going\nended\nSnapshots for disk /:\n");
}

TEST_P(Orders, letAToolHangUntilItIsAskedToEnd) {
  EXPECT_EQ(ordered("hang", "timeout 0.3 " + list).status, 124);
}

// timeout(1) says 137 and not 124 where the first signal did not do.
TEST_P(Orders, letAToolHangUntilItIsKilled) {
  EXPECT_EQ(ordered("'hang deaf'", "timeout -k 0.3 0.3 " + list).status, 137);
}

TEST_P(Orders, recordWhatAToolWasGiven) {
  EXPECT_EQ(ordered("'record /tmp/calls'",
                    list + " >list; tmutil localsnapshot 'a  b' '' >list; tmutil 2>list; cat calls")
                .out,
            "tmutil\tlistlocalsnapshots\t/\ntmutil\tlocalsnapshot\ta  b\t\ntmutil\n");
}

TEST_P(Orders, holdForTheWordsThatTheyName) {
  const std::pair<std::string, int> patterns[] = {
      {"localsnapshot", 0}, {"list*", 9}, {"/", 9}, {"tmutil", 0}, {"[!/]", 0}};
  for (const auto& [pattern, status] : patterns)
    EXPECT_EQ(ordered("'on " + pattern + " fail 9'", list).status, status) << pattern;
}

TEST_P(Orders, holdOnceWhenTheySaySo) {
  EXPECT_EQ(ordered("'once on --other fail 8' 'once fail 9' 'once fail 9'",
                    "for i in 1 2 3; do status " + list +
                        " | tail -1; done; status tmutil --other | tail -1; cat /var/db/*tools/*")
                .out,
            "9\n9\n0\n8\n");
}

TEST_P(Orders, areRefusedWhenMisspelt) {
  for (const std::string order : {"fial 1", "once fial 1", "on / fial 1", "offline"}) {
    const Finished finished = ordered("'" + order + "'", list);
    EXPECT_EQ(finished.status, 99) << order;
    EXPECT_EQ(finished.err, "tmutil: unknown order in /var/db/quarn-room-tools/tmutil: " + order + "\n");
  }
}

}  // namespace quarn::tests
