#include "tests/cli/InstallScenes.h"

/// `install run`: what it prints and records.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::timeless;
using installs::Words;

namespace {

const std::string app = "/Users/me/Foo.app";
const std::string moved = installs::apps + "/Foo.app";
const std::string action = "installed-app\t/Applications/Foo.app\t" + moved;

class InstallRun : public installs::WithArchives {
 protected:
  void SetUp() override {
    WithArchives::SetUp();
    scene::makeApp(app);
  }
};

std::string toml(const std::string& source, const std::string& option, const std::string& actions,
                 const std::string& changedPaths, const std::string& receipts = {}) {
  return printed("id = \"ID\"\nsource = \"" + source + "\"\noption = \"" + option + "\"\nactions = [" +
                 actions + "]\nchangedPaths = [" + changedPaths + "]\nnewReceipts = [" + receipts + "]\n");
}

TEST_F(InstallRun, printsTheSessionInThreeForms) {
  const std::string whole =
      toml(app, "trusted-external", "\"" + action + "\"", "\"/Applications/Foo.app\", \"" + moved + "\"");
  for (const Words& flags :
       {Words{}, Words{"--format", "toml"}, Words{"--format", "bogus"}, Words{"--format"}})
    EXPECT_EQ(timeless(installs::run(app, flags)), whole);
  EXPECT_EQ(timeless(installs::run(app, {"--format", "tsv"})),
            printed("session\tID\ttrusted-external\t" + app + "\n"));
  EXPECT_EQ(timeless(installs::run(app, {"--format", "human"})), printed("Installed session ID\n"));
}

TEST_F(InstallRun, tellsEachStepOnStandardErrorWhenItIsAskedTo) {
  for (const Words& flags : {Words{"--progress"}, Words{"--verbose"}, Words{"--verbose", "--progress"}}) {
    Words words = flags;
    words.insert(words.end(), {"--format", "human"});
    EXPECT_EQ(timeless(installs::run(app, words)),
              shown({0, "Installed session ID\n",
                     "progress\tinspect\tapp\t" + app +
                         "\nprogress\tsnapshot-before\tfiles\tN\nprogress\tevents\tskip-focused\n"
                         "progress\tsource\tapp\t" +
                         app + "\nprogress\tcopy-app\t" + app + "\t" + moved + "\nprogress\tverify-app\t" +
                         moved + "\nprogress\tlauncher-app\t/Applications/Foo.app\t" + moved +
                         "\nprogress\tsigned-launcher\t/Applications/Foo.app\n"
                         "progress\tregistered-launcher\t/Applications/Foo.app\nprogress\t" +
                         action + "\nprogress\tsnapshot-after\tfiles\tN\nprogress\tsession\tID\n"}));
    for (const std::string& item : {std::string("/Applications/Foo.app"), moved})
      std::filesystem::remove_all(item);
  }
}

TEST_F(InstallRun, aSecondTimeUsesTheCopyAndTheLauncherThatAreThere) {
  installs::run(app);
  const auto copy = scene::tree(moved), launcher = scene::tree("/Applications/Foo.app");
  EXPECT_EQ(timeless(installs::run(app, {"--progress", "--format", "human"})),
            shown({0, "Installed session ID\n",
                   "progress\tinspect\tapp\t" + app +
                       "\nprogress\tsnapshot-before\tfiles\tN\nprogress\tevents\tskip-focused\n"
                       "progress\tsource\tapp\t" +
                       app + "\nprogress\treuse-app\t" + moved +
                       "\nprogress\treuse-launcher\t/Applications/Foo.app\n"
                       "progress\tregistered-launcher\t/Applications/Foo.app\nprogress\t" +
                       action + "\nprogress\tsnapshot-after\tfiles\tN\nprogress\tsession\tID\n"}));
  EXPECT_EQ(scene::tree(moved), copy);
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), launcher);
  EXPECT_EQ(installs::namesIn(scene::driveTrash()), Words{});
}

TEST_F(InstallRun, aLinkInPlaceOfTheCopyIsSetAsideAndNotWhatItLeadsTo) {
  scene::makeApp("/Volumes/X9/Elsewhere.app", {.version = "9"});
  const auto elsewhere = scene::tree("/Volumes/X9/Elsewhere.app");
  scene::link(moved, "/Volumes/X9/Elsewhere.app");
  const auto run = installs::run(app, {"--progress"});
  EXPECT_NE(run.err.find("progress\tstash-existing-app\t" + moved + "\tsymlink destination\n"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(scene::isLink(moved));
  EXPECT_EQ(scene::target(scene::driveTrash() + "/Foo.app"), "/Volumes/X9/Elsewhere.app");
  EXPECT_EQ(scene::tree("/Volumes/X9/Elsewhere.app"), elsewhere);
}

TEST_F(InstallRun, anOtherCopyIsSetAsideWithItsReason) {
  scene::makeApp(moved, {}, 100);
  const auto former = scene::tree(moved);
  const auto run = installs::run(app, {"--progress"});
  EXPECT_NE(run.err.find("progress\tstash-existing-app\t" + moved + "\t"), std::string::npos) << run.err;
  EXPECT_EQ(scene::tree(moved), scene::tree(app));
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), former);
}

TEST_F(InstallRun, aPackageTellsItsStepsAndWhatItBrought) {
  const std::string file = installs::package();
  const auto run = installs::run(file, {"--progress", "--format", "tsv"});
  EXPECT_EQ(timeless(run),
            shown({0, "session\tID\ttrusted-external\t" + file + "\n",
                   "progress\tinspect\tpkg\t" + file +
                       "\nprogress\tsnapshot-before\tfiles\tN\nprogress\tevents\tstart\n"
                       "progress\tsource\tpkg\t" +
                       file + "\nprogress\trun-pkg\t/usr/sbin/installer\t" + file +
                       "\nprogress\tinstalled-pkg\t" + file +
                       "\nprogress\tsnapshot-after\tfiles\tN\nprogress\tsession\tID\n"
                       "progress\texternalize-safe-apps\t1\nprogress\tsession-finalized\tID\n"}));
  const std::string session = installs::savedSessions().at(0);
  EXPECT_NE(session.find("\"newReceipts\":[\"com.example.pkg.New\"]"), std::string::npos) << session;
  EXPECT_NE(session.find("\"status\":\"done\""), std::string::npos) << session;
  EXPECT_EQ(installs::launcherTarget("/Applications/New.app"), installs::apps + "/New.app");
}

TEST_F(InstallRun, aScriptTellsItsSteps) {
  scene::write("/Users/me/a.sh", "echo to the screen\necho and more >&2\n");
  EXPECT_EQ(timeless(installs::runLenient("/Users/me/a.sh", {"--progress"})),
            shown({0,
                   "id = \"ID\"\nsource = \"/Users/me/a.sh\"\noption = \"tracked-script-external\"\n"
                   "actions = [\"ran-script\t/Users/me/a.sh\"]\nchangedPaths = []\nnewReceipts = []\n",
                   "progress\tinspect\tscript\t/Users/me/a.sh\nprogress\tsnapshot-before\tfiles\tN\n"
                   "progress\tevents\tstart\nprogress\tsource\tscript\t/Users/me/a.sh\n"
                   "progress\trun-script\t/bin/bash\t/Users/me/a.sh\nprogress\tran-script\t/Users/me/a.sh\n"
                   "progress\tsnapshot-after\tfiles\tN\nprogress\tsession\tID\n"}))
      << "what the script says isn't shown";
}

TEST_F(InstallRun, anImageAndAnArchiveTellTheirStepsAndThoseOfTheirItems) {
  scene::makeApp("/Users/me/content/One.app");
  scene::makeApp("/Users/me/content/Two.app");
  const std::string image = installs::image("/Users/me/content"),
                    archive = installs::zip("/Users/me/content");
  const auto ofImage = installs::run(image, {"--progress", "--format", "human"});
  EXPECT_EQ(ofImage.status, 0);
  EXPECT_NE(ofImage.err.find("progress\tsource\tdmg\t" + image +
                             "\nprogress\tdmg-mounted\t1\nprogress\tsource\tapp\t"),
            std::string::npos)
      << ofImage.err;
  EXPECT_EQ(installs::namesIn("/Volumes"), Words{"X9"}) << "detached";
  const auto ofArchive = installs::run(archive, {"--progress", "--format", "human"});
  EXPECT_NE(ofArchive.err.find("progress\tsource\tzip\t" + archive + "\nprogress\tsource\tapp\t" +
                               installs::temporary + "/QuarnZip-"),
            std::string::npos)
      << ofArchive.err;
  EXPECT_NE(ofArchive.err.find("progress\treuse-app\t" + installs::apps + "/Two.app\n"), std::string::npos)
      << ofArchive.err;
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
}

TEST_F(InstallRun, aBlockedPackageOrScriptIsAnErrorAndAFailedSession) {
  const std::string package = "/Users/me/a.pkg", script = "/Users/me/a.sh";
  packages::component(package);
  scene::write(script, "touch /Users/me/ran\n");
  EXPECT_EQ(shown(installs::run(package)), failed("Untrusted package blocked."));
  installs::expectOneFailedSession(package);
  EXPECT_EQ(
      shown(installs::run(script)),
      failed("Shell scripts are blocked by this install option. Use an option with allowUntrustedScripts = "
             "true (e.g. tracked-script-external)."));
  installs::expectOneFailedSession(script);
  EXPECT_FALSE(scene::exists("/Users/me/ran"));
  const auto told = installs::run(package, {"--verbose"});
  EXPECT_EQ(timeless(told), shown({1, "",
                                   "progress\tinspect\tpkg\t" + package +
                                       "\nprogress\tsnapshot-before\tfiles\tN\nprogress\tevents\tstart\n"
                                       "progress\tsource\tpkg\t" +
                                       package +
                                       "\nprogress\tfailed\tUntrusted package blocked.\n"
                                       "error\tUntrusted package blocked.\n"}));
}

TEST_F(InstallRun, aScriptThatFailsIsToldInItsOwnWords) {
  scene::write("/Users/me/a.sh", "echo printed\necho oops >&2\nexit 3\n");
  EXPECT_EQ(shown(installs::runLenient("/Users/me/a.sh")), failed("oops\nprinted\n"));
  installs::expectOneFailedSession("/Users/me/a.sh");
}

TEST_F(InstallRun, aScriptThatFailsWithoutAWordIsToldByItsStatus) {
  scene::write("/Users/me/a.sh", "exit 3\n");
  EXPECT_EQ(shown(installs::runLenient("/Users/me/a.sh")),
            failed("The operation couldn’t be completed. (script-install error 3.)"));
}

TEST_F(InstallRun, gantrixIsUsedOnlyWhenItIsAskedFor) {
  const std::string file = installs::package();
  scene::write("/Users/me/a.sh", "true\n");
  installs::orders("gantrix", "record /Users/me/told\n");
  installs::run(file);
  installs::runLenient("/Users/me/a.sh");
  EXPECT_FALSE(scene::exists("/Users/me/told"));
  const auto run = installs::run(file, {"--use-gantrix", "--progress"});
  EXPECT_NE(run.err.find("progress\trun-pkg\t/usr/local/bin/gantrix\t" + file + "\n"), std::string::npos)
      << run.err;
  const auto ran = installs::runLenient("/Users/me/a.sh", {"--use-gantrix", "--progress"});
  EXPECT_NE(ran.err.find("progress\trun-script\t/usr/local/bin/gantrix\t/Users/me/a.sh\n"), std::string::npos)
      << ran.err;
  EXPECT_EQ(scene::read("/Users/me/told"),
            "gantrix\tinstaller\t-pkg\t" + file + "\t-target\t/\ngantrix\tbash\t/Users/me/a.sh\n");
}

TEST_F(InstallRun, gantrixIsLookedForInTheHomeFolderIfItIsNotInstalled) {
  scene::write("/Users/me/a.sh", "true\n");
  scene::removeTool("/usr/local/bin/gantrix");
  const std::string own = "/Users/me/.codex/skills/gantrix/gantrix";
  const auto missing = installs::runLenient("/Users/me/a.sh", {"--use-gantrix"});
  EXPECT_EQ(shown(missing), failed("The file “gantrix” doesn’t exist."));
  installs::expectOneFailedSession("/Users/me/a.sh");
  scene::makeFolder("/Users/me/.codex/skills/gantrix");
  scene::replaceTool(own, "#!/bin/sh\necho \"$@\" >/Users/me/told\n");
  EXPECT_EQ(installs::runLenient("/Users/me/a.sh", {"--use-gantrix"}).status, 0);
  EXPECT_EQ(scene::read("/Users/me/told"), "bash /Users/me/a.sh\n");
}

TEST_F(InstallRun, anotherFolderOfLaunchersHoldsForThisRunOnly) {
  const auto run = installs::run(app, {"--application-link-root", "/Users/me/Mine", "--format", "human"});
  EXPECT_EQ(timeless(run), printed("Installed session ID\n"));
  EXPECT_EQ(installs::launcherTarget("/Users/me/Mine/Foo.app"), moved);
  EXPECT_FALSE(scene::exists("/Applications/Foo.app"));
  const std::string session = installs::savedSessions().at(0);
  EXPECT_NE(session.find(R"("actions":["installed-app\t\/Users\/me\/Mine\/Foo.app\t)"), std::string::npos)
      << session;
  EXPECT_EQ(session.find("applicationLinkRoot"), std::string::npos) << session;
}

TEST_F(InstallRun, aResumeTakesTheFolderOfLaunchersFromTheOption) {
  const std::string file = installs::package();
  // The folder for applications can't be made, so that the application stays pending.
  scene::write("/Volumes/X9/ExternalQuarn", "in the way");
  const auto run = installs::run(file, {"--application-link-root", "/Users/me/Mine", "--format", "tsv"});
  EXPECT_EQ(run.status, 0) << run.err;
  const std::string id = installs::namesIn(installs::sessionsRoot).at(0);
  std::filesystem::remove("/Volumes/X9/ExternalQuarn");
  EXPECT_EQ(
      shown(installs::quarn({"resume", id})),
      shown({0, "session\t" + id + "\tdone\n", "externalize-safe-apps\t1\nsession-finalized\t" + id + "\n"}));
  EXPECT_EQ(installs::launcherTarget("/Applications/New.app"), installs::apps + "/New.app");
  EXPECT_FALSE(scene::exists("/Users/me/Mine"));
}

/// How often a text occurs.
std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(InstallRun, aStepThatTakesTwoSecondsIsToldOfEachSecondFromThen) {
  const std::string file = installs::package();
  installs::orders("installer", "wait-until /tmp/go\n");
  scene::Background waiting({"/bin/sh", "-c", "sleep 4.5; touch /tmp/go"});
  const auto run = installs::run(file, {"--progress"});
  EXPECT_EQ(run.status, 0);
  const std::string begin =
      "progress\trun-pkg\t/usr/sbin/installer\t" + file + "\nprogress\tstill\trun-pkg\t2 s\n";
  EXPECT_NE(run.err.find(begin + "progress\tstill\trun-pkg\t3 s\n"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("still\trun-pkg\t1 s"), std::string::npos) << run.err;
  EXPECT_LE(countOf(run.err, "still\trun-pkg"), 4U) << run.err;
  EXPECT_EQ(waiting.wait(), 0);
}

TEST_F(InstallRun, aStepThatTakesLongIsNotToldOfUnlessAskedFor) {
  scene::write("/Users/me/a.sh", "sleep 3\n");
  const auto run = installs::runLenient("/Users/me/a.sh", {"--format", "human"});
  EXPECT_EQ(timeless(run), printed("Installed session ID\n"));
}

TEST_F(InstallRun, theStepBeforeTheFirstLineIsTheStart) {
  const std::string archive = [] {
    scene::makeApp("/Users/me/content/Foo.app");
    return installs::zip("/Users/me/content");
  }();
  installs::orders("ditto", "wait-until /tmp/go\n");
  scene::Background waiting({"/bin/sh", "-c", "sleep 3.5; touch /tmp/go"});
  const auto run = installs::run(archive, {"--progress"});
  EXPECT_TRUE(run.err.starts_with("progress\tstill\tstart\t2 s\n")) << run.err;
  waiting.wait();
}

}  // namespace
