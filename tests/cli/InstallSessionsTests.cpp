#include "tests/cli/InstallScenes.h"

/// `install sessions`, `pending`, `resume`, `uninstall-plan` and `uninstall`: what they print of sessions,
/// and do.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::Words;

namespace {

std::string answerTo(const Words& words) {
  return shown(installs::quarn(words));
}

TEST(InstallSessions, noneIsOneLineFeedInTSVAndNothingOtherwise) {
  EXPECT_EQ(answerTo({"sessions"}), printed("\n"));
  EXPECT_EQ(answerTo({"sessions", "--format", "human"}), printed(""));
  EXPECT_EQ(answerTo({"sessions", "--format", "toml"}), printed(""));
}

TEST(InstallSessions, areListedFromTheNewestInThreeForms) {
  installs::writeSession("b", {{"createdAt", "100"}, {"status", "\"failed\""}});
  installs::writeSession("c", {{"createdAt", "300.5"},
                               {"actions", R"(["did\tthis","and \"that\""])"},
                               {"changedPaths", R"(["\/Applications\/C.app"])"},
                               {"newReceipts", "[\"com.c\"]"}});
  installs::writeSession("a", {{"createdAt", "200"}});
  const std::string tsv =
      "session\tc\ttrusted-external\t/Users/me/c.pkg\nsession\ta\ttrusted-external\t/Users/me/a.pkg\n"
      "session\tb\ttrusted-external\t/Users/me/b.pkg\n";
  for (const Words& words : {Words{"sessions"}, Words{"sessions", "--format", "tsv"},
                             Words{"sessions", "--format", "bogus"}, Words{"sessions", "--format"}})
    EXPECT_EQ(answerTo(words), printed(tsv));
  EXPECT_EQ(answerTo({"sessions", "--format", "human"}),
            printed("c\t/Users/me/c.pkg\na\t/Users/me/a.pkg\nb\t/Users/me/b.pkg\n"));
  const auto empty = [](const std::string& id) {
    return "id = \"" + id + "\"\nsource = \"/Users/me/" + id +
           ".pkg\"\noption = \"trusted-external\"\nactions = []\nchangedPaths = []\nnewReceipts = []\n";
  };
  EXPECT_EQ(
      answerTo({"sessions", "--format", "toml"}),
      printed("id = \"c\"\nsource = \"/Users/me/c.pkg\"\noption = \"trusted-external\"\n"
              "actions = [\"did\tthis\", \"and \\\"that\\\"\"]\nchangedPaths = [\"/Applications/C.app\"]\n"
              "newReceipts = [\"com.c\"]\n" +
              empty("a") + empty("b")));
}

TEST(InstallPending, noneIsASentence) {
  const std::string sentence = printed("No installer sessions awaiting externalization.\n");
  EXPECT_EQ(answerTo({"pending"}), sentence);
  installs::writeSession("done");
  installs::writeSession("failed", {{"status", "\"failed\""}});
  EXPECT_EQ(answerTo({"pending"}), sentence);
}

TEST(InstallPending, areListedBelowAHeaderFromTheNewest) {
  const std::string pending = "\"pendingExternalize\"";
  installs::writeSession("old", {{"createdAt", "1"}, {"status", pending}});
  installs::writeSession(
      "new", {{"createdAt", "2"},
              {"status", pending},
              {"pendingExternalizeApps", R"(["\/Applications\/A.app","\/Applications\/B C.app"])"}});
  installs::writeSession("done", {{"createdAt", "3"}});
  EXPECT_EQ(
      answerTo({"pending"}),
      printed(
          "id\tsource\toption\ttarget-drive\tpending-apps\n"
          "new\t/Users/me/new.pkg\ttrusted-external\t/Volumes/X9\t/Applications/A.app,/Applications/B C.app\n"
          "old\t/Users/me/old.pkg\ttrusted-external\t/Volumes/X9\t\n"));
}

void writePending(const std::string& id, const std::string& apps,
                  const std::string& option = "trusted-external") {
  installs::writeSession(id, {{"status", "\"pendingExternalize\""},
                              {"optionID", "\"" + option + "\""},
                              {"pendingExternalizeApps", apps}});
}

TEST(InstallResume, ofWhatHasEndedChangesNothingAndSaysSo) {
  installs::writeSession("a");
  installs::writeSession("b", {{"status", "\"failed\""}});
  const auto before = scene::tree(installs::sessionsRoot);
  EXPECT_EQ(answerTo({"resume", "a"}), shown({0, "session\ta\tdone\n", "resume-noop\ta\tdone\n"}));
  EXPECT_EQ(answerTo({"resume", "b"}), shown({0, "session\tb\tfailed\n", "resume-noop\tb\tfailed\n"}));
  EXPECT_EQ(scene::tree(installs::sessionsRoot), before);
}

TEST(InstallResume, takesWhatIsPendingToTheDrive) {
  scene::makeApp("/Applications/Foo.app");
  const auto app = scene::tree("/Applications/Foo.app");
  writePending("a", R"(["\/Applications\/Foo.app","\/Applications\/Gone.app"])");
  EXPECT_EQ(answerTo({"resume", "a"}),
            shown({0, "session\ta\tdone\n", "externalize-safe-apps\t1\nsession-finalized\ta\n"}));
  EXPECT_EQ(scene::tree(installs::apps + "/Foo.app"), app);
  EXPECT_EQ(installs::launcherTarget("/Applications/Foo.app"), installs::apps + "/Foo.app");
  EXPECT_EQ(scene::tree(scene::home + "/.Trash/Foo.app"), app);
  EXPECT_EQ(answerTo({"pending"}), printed("No installer sessions awaiting externalization.\n"));
  EXPECT_EQ(answerTo({"resume", "a"}), shown({0, "session\ta\tdone\n", "resume-noop\ta\tdone\n"}));
}

TEST(InstallResume, ontoADriveThatIsAwayListsWhatIsStillPending) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  installs::writeSession(
      "a", {{"status", "\"pendingExternalize\""},
            {"targetDrivePath", "\"/Volumes/Away\""},
            {"pendingExternalizeApps", R"(["\/Applications\/Bar.app","\/Applications\/Foo.app"])"}});
  const auto applications = scene::tree("/Applications");
  EXPECT_EQ(answerTo({"resume", "a"}),
            shown({0,
                   "session\ta\tpartial — some apps still pending\npending\t/Applications/Bar.app\n"
                   "pending\t/Applications/Foo.app\n",
                   "externalize-safe-apps\t2\nsession-partial\ta\n"}));
  EXPECT_EQ(scene::tree("/Applications"), applications);
}

TEST(InstallResume, withoutItsOptionIsAnError) {
  writePending("a", "[]", "gone");
  EXPECT_EQ(answerTo({"resume", "a"}), failed("Unknown option id gone"));
}

TEST(InstallUninstallPlan, listsContentsBeforeTheirFolderAndThenTheReceipts) {
  installs::writeSession("a", {{"changedPaths", R"(["\/b","\/a\/x","\/a","\/a\/x\/y"])"},
                               {"newReceipts", R"(["com.b","com.a"])"}});
  EXPECT_EQ(answerTo({"uninstall-plan", "a"}),
            printed("trash\t/b\ntrash\t/a/x/y\ntrash\t/a/x\ntrash\t/a\nforget-receipt\tcom.b\n"
                    "forget-receipt\tcom.a\n"));
  installs::writeSession("failed", {{"status", "\"failed\""}});
  EXPECT_EQ(answerTo({"uninstall-plan", "failed"}), printed(""));
}

TEST(InstallUninstall, doesWhatThePlanSaysAndPrintsNothing) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(installs::apps + "/Foo.app");
  scene::makeApp("/Applications/Other.app");
  scene::write("/Library/LaunchAgents/com.example.foo.plist", "x");
  scene::write("/var/db/quarn-room-receipts/com.example.foo", "");
  scene::write("/var/db/quarn-room-receipts/com.example.other", "");
  installs::writeSession("a", {{"changedPaths", R"(["\/Applications\/Foo.app","\/Applications\/Gone.app",)"
                                                R"("\/Library\/LaunchAgents\/com.example.foo.plist",)"
                                                R"("\/Volumes\/X9\/ExternalQuarn\/Apps\/Foo.app"])"},
                               {"newReceipts", R"(["com.example.foo","com.example.none"])"}});
  const auto session = scene::tree(installs::sessionsRoot);
  EXPECT_EQ(answerTo({"uninstall", "a"}), printed(""));
  EXPECT_EQ(installs::namesIn("/Applications"), (Words{"Other.app", "Utilities"}));
  EXPECT_EQ(installs::namesIn(installs::apps), Words{});
  EXPECT_EQ(installs::namesIn("/Library/LaunchAgents"), Words{});
  EXPECT_EQ(installs::namesIn("/var/db/quarn-room-receipts"), Words{"com.example.other"});
  EXPECT_EQ(installs::namesIn(scene::home + "/.Trash"), (Words{"Foo.app", "com.example.foo.plist"}));
  EXPECT_EQ(installs::namesIn(scene::driveTrash()), Words{"Foo.app"});
  EXPECT_EQ(scene::tree(installs::sessionsRoot), session) << "the session stays";
  EXPECT_EQ(answerTo({"uninstall", "a"}), printed("")) << "a second time finds nothing to do";
}

TEST(InstallUninstall, ofAFailedSessionDoesNothing) {
  installs::writeSession("a", {{"status", "\"failed\""}});
  const auto before = installs::wholeTree();
  EXPECT_EQ(answerTo({"uninstall", "a"}), printed(""));
  EXPECT_EQ(installs::wholeTree(), before);
}

TEST(InstallUninstall, undoesARunOfAnApplication) {
  scene::makeApp("/Users/me/Foo.app");
  const auto before = installs::wholeTree();
  ASSERT_EQ(installs::run("/Users/me/Foo.app").status, 0);
  const std::string id = installs::namesIn(installs::sessionsRoot).at(0);
  EXPECT_EQ(answerTo({"uninstall-plan", id}),
            printed("trash\t" + installs::apps + "/Foo.app\ntrash\t/Applications/Foo.app\n"));
  EXPECT_EQ(answerTo({"uninstall", id}), printed(""));
  std::filesystem::remove_all("/Volumes/X9/ExternalQuarn");
  EXPECT_EQ(installs::wholeTree(), before);
}

}  // namespace
