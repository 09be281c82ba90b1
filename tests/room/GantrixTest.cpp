#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Gantrix : public RoomCase {};

INSTANTIATE_TEST_SUITE_P(Way, Gantrix, everyWayOfScripts, nameOf);

}  // namespace

TEST_P(Gantrix, runsACommandWithItsWordsAndGivesItsStatus) {
  EXPECT_EQ(
      says("echo 'printf \"<%s>\" \"$@\"; cat; exit 7' >/tmp/s; echo in | status /usr/local/bin/gantrix bash "
           "/tmp/s 'a  b' '' '*'"),
      "<a  b><><*>in\n7\n");
  EXPECT_EQ(
      says("cd /tmp; mkdir d; ln -s d l; status gantrix rm -f l nothing; ls; status gantrix rm -rf d; ls"),
      "0\nd\n0\n");
}

TEST_P(Gantrix, looksForTheCommandInTheFoldersOfTheSystem) {
  EXPECT_EQ(
      says("for f in /usr/local/bin /tmp; do printf '#!/bin/sh\\necho wrong\\n' >$f/true; chmod 755 $f/true; "
           "done; cd /tmp; PATH=/tmp:$PATH; status gantrix true; status gantrix pkgutil --pkgs=x; "
           "status gantrix tmutil 2>/dev/null; gantrix sh -c 'echo $PATH'; status gantrix no-such-tool "
           "2>/dev/null"),
      "0\n1\n64\n/usr/bin:/bin:/usr/sbin:/sbin\n127\n");
}

TEST_P(Gantrix, recordsWhatItWasAskedAndObeysItsOtherOrders) {
  EXPECT_EQ(says("told gantrix 'record /tmp/calls' 'on rm fail 1 not you'; gantrix true 'a b'; "
                 "status gantrix rm /tmp/calls; cat /tmp/calls"),
            "not you\n1\ngantrix\ttrue\ta b\ngantrix\trm\t/tmp/calls\n");
}

TEST_P(Gantrix, canLieElsewhere) {
  EXPECT_EQ(
      says(
          "mkdir -p ~/.codex/skills/gantrix; mv /usr/local/bin/gantrix ~/.codex/skills/gantrix; told gantrix "
          "'record /tmp/calls'; ~/.codex/skills/gantrix/gantrix echo here; cat /tmp/calls"),
      "here\ngantrix\techo\there\n");
}

TEST_P(Gantrix, needsACommand) {
  EXPECT_EQ(says("status gantrix"), "usage: gantrix command [argument ...]\n64\n");
}

}  // namespace quarn::tests
