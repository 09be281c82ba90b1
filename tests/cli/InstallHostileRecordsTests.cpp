#include <sys/stat.h>

#include "tests/cli/InstallScenes.h"

/// Option files and sessions that somebody else may have written, or that are damaged.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::Words;

namespace {

namespace fs = std::filesystem;

const std::string app = "/Users/me/Foo.app";

class HostileOptions : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(app);
    scene::write("/Users/me/Documents/Apps/Foo.app/precious", "precious");
  }
};

TEST_F(HostileOptions, aBrokenFileIsNoOption) {
  for (const std::string& content :
       {std::string(), std::string("id = \"own\""), std::string("id = "), std::string("\xFF\xFE"),
        std::string("\0\0", 2), std::string(300, '['), installs::optionFile("own").substr(0, 100)}) {
    scene::write(installs::optionsRoot + "/own.toml", content);
    EXPECT_EQ(shown(installs::run(app, {}, "own")), failed("Unknown option: own")) << content;
  }
  EXPECT_FALSE(scene::exists(installs::sessionsRoot));
  fs::remove(installs::optionsRoot + "/own.toml");
  ASSERT_EQ(::mkfifo((installs::optionsRoot + "/own.toml").c_str(), 0644), 0);
  EXPECT_EQ(shown(installs::run(app, {}, "own")), failed("Unknown option: own"));
  EXPECT_EQ(installs::run(app).status, 0) << "the others stay";
}

TEST_F(HostileOptions, aFileThatMayNotBeReadIsNoOption) {
  installs::writeOption("own");
  ::chmod((installs::optionsRoot + "/own.toml").c_str(), 0);
  EXPECT_EQ(shown(installs::run(app, {}, "own")), failed("Unknown option: own"));
}

TEST_F(HostileOptions, aFolderOutsideOfTheDriveIsRefused) {
  scene::link("/Volumes/X9/Out", "/Users/me/Documents");
  for (const std::string root :
       {"..", "../../Users/me/Documents", "ExternalQuarn/../../../Users/me/Documents", "Out", "Out/deeper"}) {
    SCOPED_TRACE(root);
    installs::writeOption("own", {{"externalRootName", "\"" + root + "\""}});
    const auto before = installs::wholeTree();
    const auto run = installs::run(app, {}, "own");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("error\tThe folder for applications isn’t on the drive: ")) << run.err;
    EXPECT_EQ(installs::wholeTree(), before);
    installs::expectOneFailedSession(app);
  }
  EXPECT_EQ(installs::run(app).status, 0);
}

TEST_F(HostileOptions, anAbsoluteFolderIsMeantBelowTheDrive) {
  installs::writeOption("own", {{"externalRootName", "\"/Users/me/Documents\""}});
  const auto documents = scene::tree("/Users/me/Documents");
  const auto run = installs::run(app, {}, "own");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(scene::tree("/Users/me/Documents"), documents);
  EXPECT_EQ(scene::tree("/Volumes/X9/Users/me/Documents/Apps/Foo.app"), scene::tree(app));
}

TEST_F(HostileOptions, aFolderOfLaunchersInTheWayOfTheCopyOrTheSourceIsRefused) {
  for (const std::string& root : {installs::apps, installs::apps + "/Foo.app/Contents"}) {
    SCOPED_TRACE(root);
    installs::writeOption("own", {{"applicationLinkRoot", "\"" + root + "\""}});
    const auto before = scene::tree(app);
    const auto run = installs::run(app, {}, "own");
    EXPECT_EQ(run.status, 1) << run.out;
    EXPECT_EQ(scene::tree(app), before);
    installs::expectOneFailedSession(app);
  }
}

std::string answerTo(const Words& words) {
  return shown(installs::quarn(words));
}

void expectNoSession(const std::string& id) {
  EXPECT_EQ(answerTo({"resume", id}), failed("No session with id " + id));
  EXPECT_EQ(answerTo({"uninstall-plan", id}), failed("Session not found."));
  EXPECT_EQ(answerTo({"uninstall", id}), failed("Session not found."));
}

TEST(HostileSessions, ofAFormerFormAreReadAsDone) {
  installs::writeSession("old", {{"status", ""}, {"targetDrivePath", ""}, {"pendingExternalizeApps", ""}});
  EXPECT_EQ(answerTo({"sessions"}), printed("session\told\ttrusted-external\t/Users/me/old.pkg\n"));
  EXPECT_EQ(answerTo({"pending"}), printed("No installer sessions awaiting externalization.\n"));
  EXPECT_EQ(answerTo({"resume", "old"}), shown({0, "session\told\tdone\n", "resume-noop\told\tdone\n"}));
  EXPECT_EQ(answerTo({"uninstall", "old"}), printed(""));
}

TEST(HostileSessions, thatArePendingWithoutADriveStayPending) {
  scene::makeApp("/Applications/Foo.app");
  installs::writeSession("old", {{"status", "\"pendingExternalize\""},
                                 {"targetDrivePath", ""},
                                 {"pendingExternalizeApps", R"(["\/Applications\/Foo.app"])"}});
  const auto before = installs::wholeTree();
  const auto run = installs::quarn({"resume", "old"});
  EXPECT_EQ(shown(run),
            shown({0, "session\told\tpartial — some apps still pending\npending\t/Applications/Foo.app\n",
                   "externalize-safe-apps\t1\nsession-partial\told\n"}));
  EXPECT_EQ(installs::wholeTree(), before);
}

TEST(HostileSessions, withMoreKeysAreRead) {
  installs::writeSession("a", {{"more", R"({"x":[1,2,{"y":null}]})"}, {"ID", "\"b\""}});
  EXPECT_EQ(answerTo({"uninstall-plan", "a"}), printed(""));
}

TEST(HostileSessions, thatCannotBeReadAreLeftOut) {
  const std::string whole = installs::sessionFile("good");
  for (std::size_t bytes = 0; bytes < whole.size(); bytes += 7)
    scene::write(installs::sessionsRoot + "/cut" + std::to_string(bytes) + "/session.json",
                 whole.substr(0, bytes));
  scene::write(installs::sessionsRoot + "/file", "no folder");
  scene::makeFolder(installs::sessionsRoot + "/empty");
  scene::makeFolder(installs::sessionsRoot + "/folder/session.json");
  scene::makeFolder(installs::sessionsRoot + "/pipe");
  ASSERT_EQ(::mkfifo((installs::sessionsRoot + "/pipe/session.json").c_str(), 0644), 0);
  scene::link(installs::sessionsRoot + "/dangling", "/nowhere");
  installs::writeSession("secret");
  ::chmod((installs::sessionsRoot + "/secret/session.json").c_str(), 0);
  installs::writeSession("closed");
  ::chmod((installs::sessionsRoot + "/closed").c_str(), 0);
  installs::writeSession("wrong", {{"status", "\"bogus\""}});
  installs::writeSession("typed", {{"changedPaths", "\"/Applications\""}});
  installs::writeSession("listed", {{"changedPaths", "[1]"}});
  installs::writeSession(".hidden");
  installs::writeSession("good");
  EXPECT_EQ(answerTo({"sessions"}), printed("session\tgood\ttrusted-external\t/Users/me/good.pkg\n"));
  for (const std::string id : {"cut7", "file", "empty", "folder", "pipe", "dangling", "secret", "closed",
                               "wrong", "typed", "listed"}) {
    SCOPED_TRACE(id);
    expectNoSession(id);
  }
  ::chmod((installs::sessionsRoot + "/closed").c_str(), 0755);
}

TEST(HostileSessions, ofFiveMegabytesAreReadAndUndone) {
  scene::makeApp("/Applications/Foo.app");
  const std::string folder = "/Users/me/Documents/" + std::string(220, 'f') + "/";
  std::string paths = "[\"/Applications/Foo.app\"";
  for (int number = 10'000; number < 30'000; ++number)
    paths += ",\"" + folder + std::to_string(number) + "\"";
  installs::writeSession("huge", {{"changedPaths", paths + "]"}});
  ASSERT_GT(fs::file_size(installs::sessionsRoot + "/huge/session.json"), 4'900'000U);
  const auto run = installs::quarn({"uninstall-plan", "huge"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 20'001);
  EXPECT_TRUE(run.out.ends_with("\ntrash\t/Applications/Foo.app\n"));
  scene::write(folder + "10000", "precious");
  EXPECT_EQ(answerTo({"uninstall", "huge"}), printed(""));
  EXPECT_FALSE(scene::exists("/Applications/Foo.app"));
  EXPECT_EQ(scene::read(folder + "10000"), "precious");
}

TEST(HostileSessions, withTheIdentifierOfAnotherFolderAreNotThatSession) {
  scene::makeApp("/Applications/Foo.app");
  scene::write(installs::sessionsRoot + "/a/session.json",
               installs::sessionFile("b", {{"changedPaths", R"(["\/Applications\/Foo.app"])"}}));
  scene::write("/Users/me/elsewhere/session.json",
               installs::sessionFile("elsewhere", {{"changedPaths", R"(["\/Applications\/Foo.app"])"}}));
  const auto before = installs::wholeTree();
  for (const std::string id :
       {"a", "b", "../../../../elsewhere", "/Users/me/elsewhere", "a/../a", "./a", "a/"})
    expectNoSession(id);
  EXPECT_EQ(installs::wholeTree(), before);
}

TEST(HostileSessions, withPathsThatNoInstallationBringsTouchNothing) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(installs::apps + "/Foo.app");
  scene::write("/Users/me/Documents/precious", "precious");
  scene::write("/Volumes/X9/precious", "precious");
  const auto before = installs::wholeTree();
  for (const std::string path : {"/",
                                 "",
                                 ".",
                                 "..",
                                 "Foo.app",
                                 "/Users",
                                 "/Users/me",
                                 "/Users/me/Documents",
                                 "/Users/me/Documents/precious",
                                 "/Volumes",
                                 "/Volumes/X9",
                                 "/Volumes/X9/precious",
                                 "/Volumes/X9/ExternalQuarn",
                                 "/Applications",
                                 "/Applications/",
                                 "/Applications/../Users/me/Documents",
                                 "/Applications/Foo.app/..",
                                 "/Library",
                                 "/Library/Application Support",
                                 "/Users/me/Library/Application Support",
                                 "/Users/me/Library/Application Support/Quarn",
                                 "/etc",
                                 "/usr/bin"}) {
    SCOPED_TRACE(path);
    installs::writeSession("a", {{"changedPaths", "[\"" + path + "\"]"}});
    EXPECT_EQ(answerTo({"uninstall-plan", "a"}), printed("trash\t" + path + "\n"))
        << "the plan shows what is recorded";
    EXPECT_EQ(answerTo({"uninstall", "a"}), printed(""));
    EXPECT_EQ(installs::wholeTree(), before);
  }
  EXPECT_EQ(installs::namesIn(scene::home + "/.Trash"), Words{});
}

TEST(HostileSessions, withReceiptsThatLookLikeFlagsForgetNothing) {
  installs::orders("pkgutil", "record /Users/me/told\n");
  installs::writeSession(
      "a", {{"newReceipts", R"(["--forget-all","-x","","com.example.a b;touch /Users/me/ran"])"}});
  EXPECT_EQ(answerTo({"uninstall", "a"}), printed(""));
  EXPECT_EQ(scene::read("/Users/me/told"), "pkgutil\t--forget\tcom.example.a b;touch /Users/me/ran\n");
  EXPECT_FALSE(scene::exists("/Users/me/ran"));
}

TEST(HostileSessions, thatArePendingForWhatIsNoApplicationInItsPlaceMoveNothing) {
  scene::makeApp("/Users/me/Documents/Foo.app");
  scene::link("/Applications/Linked", "/Users/me/Documents");
  for (const std::string path :
       {"/Users/me/Documents/Foo.app", "/Users/me", "/Applications", "/", "Foo.app",
        "/Applications/../Users/me/Documents/Foo.app", "/Applications/Linked/Foo.app"}) {
    SCOPED_TRACE(path);
    installs::writeSession(
        "a", {{"status", "\"pendingExternalize\""}, {"pendingExternalizeApps", "[\"" + path + "\"]"}});
    const auto before = installs::wholeTree();
    const auto run = installs::quarn({"resume", "a"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(installs::wholeTree(), before);
  }
}

}  // namespace
