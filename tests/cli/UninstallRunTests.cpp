#include <sys/stat.h>

#include "tests/cli/UninstallScenes.h"

/// `uninstall run`: what it prints and does.

using namespace uninstalls;
using expected::failed;
using expected::printed;
using expected::shown;

namespace {

const std::string cache = library + "/Caches/com.example.foo";
const std::string receipts = "/var/db/quarn-room-receipts";

void makeFoo() {
  scene::makeApp(foo);
  scene::writeBytes(cache + "/x", 20'000);
}

std::string item(const std::string& path, const std::string& category, const std::string& size,
                 const std::string& where) {
  return "[[items]]\noriginalPath = \"" + path + "\"\ncategory = \"" + category + "\"\nsizeBytes = " + size +
         "\nsucceeded = true\n" + (where.empty() ? "" : "trashedTo = \"" + where + "\"\n");
}

std::string head(const std::string& id, bool isDry) {
  return "id = \"" + id + "\"\nappPath = \"" + foo +
         "\"\nappName = \"Foo\"\nbundleId = \"com.example.foo\"\ndryRun = " + (isDry ? "true" : "false") +
         "\nforgottenReceipts = []\n";
}

TEST(UninstallRun, printsWhatWentAndWhereItIs) {
  makeFoo();
  const std::string ofFoo = bytes(foo), ofCache = bytes(cache);
  const auto run = quarn({"run", foo});
  const std::string id = onlySession();
  EXPECT_EQ(shown(run), printed(head(id, false) + item(foo, "executable", ofFoo, trash + "/Foo.app") +
                                item(cache, "caches", ofCache, trash + "/com.example.foo")));
  EXPECT_EQ(answerTo({"sessions", "--format", "toml"}), shown(run));
  EXPECT_FALSE(scene::exists(foo));
  EXPECT_FALSE(scene::exists(cache));
}

TEST(UninstallRun, printsASessionAsTSVAndForPeople) {
  makeFoo();
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
  EXPECT_EQ(answerTo({"run", "/Applications/Bar.app", "--format", "human"}),
            printed("Uninstalled Bar — 1 items, dry=false\n"));
  const auto run = quarn({"run", foo, "--format", "tsv", "--dry-run"});
  EXPECT_TRUE(run.out.starts_with("session\tid\tapp\tdry\titems\nsession\t")) << run.out;
  EXPECT_TRUE(run.out.ends_with("\t" + foo + "\ttrue\t2\n")) << run.out;
}

TEST(UninstallRun, writesNothingInADryRun) {
  makeFoo();
  const auto before = scene::tree("/Users/me");
  const auto run = quarn({"run", foo, "--dry-run"});
  EXPECT_EQ(run.status, 0);
  const std::string id = run.out.substr(6, 15);
  EXPECT_EQ(shown(run), printed(head(id, true) + item(foo, "executable", bytes(foo), "") +
                                item(cache, "caches", bytes(cache), "")));
  EXPECT_EQ(scene::tree("/Users/me"), before);
  EXPECT_TRUE(scene::exists(foo));
  EXPECT_EQ(answerTo({"sessions"}), printed("session\tid\tapp\tdry\titems\n"));
}

TEST(UninstallRun, tellsEachStepOnStandardErrorIfAsked) {
  for (const char* flag : {"--progress", "--verbose"}) {
    makeFoo();
    EXPECT_EQ(quarn({"run", foo, "--dry-run", flag}).err,
              "progress\tuninstall-start\t" + foo + "\tdry=true\nprogress\tdry-trash\texecutable\t" + foo +
                  "\nprogress\tdry-trash\tcaches\t" + cache +
                  "\nprogress\tuninstall-done\titems=2\treceipts=0\n");
    const auto run = quarn({"run", foo, flag});
    const std::string id = run.out.substr(6, 15);
    EXPECT_EQ(run.err, "progress\tuninstall-start\t" + foo + "\tdry=false\nprogress\ttrash\texecutable\t" +
                           foo + "\nprogress\ttrash\tcaches\t" + cache + "\nprogress\tsession\t" + id +
                           "\nprogress\tuninstall-done\titems=2\treceipts=0\n");
  }
}

/// A run waits for a second without a session.
void forgetSessions() {
  std::filesystem::remove_all(sessions);
}

TEST(UninstallRun, takesWhatTheFlagsNameAndNothingElse) {
  const Words all = {"Application Support/com.example.foo",
                     "Caches/com.example.foo",
                     "Logs/com.example.foo",
                     "Preferences/com.example.foo.plist",
                     "Containers/com.example.foo",
                     "LaunchAgents/com.example.foo.plist"};
  const std::pair<std::string, std::string> rows[] = {
      {"--include-data", all[0]},  {"--include-caches", all[1]},     {"--include-logs", all[2]},
      {"--include-prefs", all[3]}, {"--include-containers", all[4]}, {"--include-launch-agents", all[5]},
      {"--include-receipts", ""},  {"--include-launch-daemons", ""}, {"--executable-only", ""},
      {"--minimal", ""},
  };
  scene::write("/Library/LaunchDaemons/com.example.foo.plist", "x");
  scene::write(receipts + "/com.example.foo", "x");
  for (const auto& [flag, taken] : rows) {
    forgetSessions();
    scene::makeApp(foo);
    for (const std::string& path : all) scene::write(library + "/" + path + "/x", "x");
    EXPECT_EQ(quarn({"run", foo, flag}).status, 0);
    EXPECT_FALSE(scene::exists(foo));
    for (const std::string& path : all)
      EXPECT_EQ(scene::exists(library + "/" + path), path != taken) << flag << path;
  }
  EXPECT_TRUE(scene::exists("/Library/LaunchDaemons/com.example.foo.plist"));
  EXPECT_TRUE(scene::exists(receipts + "/com.example.foo"));
}

TEST(UninstallRun, takesTheCopyOnTheDriveOnlyIfItIsNamed) {
  scene::makeApp(copyOfFoo);
  const auto copy = scene::tree(copyOfFoo);
  scene::link(foo, copyOfFoo);
  EXPECT_EQ(quarn({"run", foo}).status, 0);
  EXPECT_FALSE(scene::isLink(foo));
  EXPECT_EQ(scene::tree(copyOfFoo), copy);
  scene::link(foo, copyOfFoo);
  EXPECT_EQ(quarn({"run", foo, "--include-external-target"}).status, 0);
  EXPECT_FALSE(scene::exists(copyOfFoo));
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), copy);
}

TEST(UninstallRun, refusesWithASentence) {
  scene::makeApp("/System/Applications/Foo.app");
  scene::makeFolder("/Users/me/Documents");
  const std::pair<std::string, std::string> rows[] = {
      {"/System/Applications/Foo.app", "Refusing to uninstall system app: /System/Applications/Foo.app"},
      {"/Users/me/Documents", "Refusing to uninstall: “Documents” isn’t an application."},
      {"/Users/me", "Refusing to uninstall: “me” belongs where it is."},
      {"Documents/..", "Refusing to uninstall: “..” belongs where it is."},
      {"/Volumes/X9/", "Refusing to uninstall: “X9” belongs where it is."},
  };
  for (const auto& [path, message] : rows) {
    EXPECT_EQ(answerTo({"run", path}), failed(message));
    EXPECT_EQ(answerTo({"run", path, "--dry-run"}), failed(message));
  }
  EXPECT_FALSE(scene::exists(sessions));
}

TEST(UninstallRun, namesWhatIsStillThere) {
  const std::string support = "/Library/Application Support/com.example.foo";
  makeFoo();
  scene::write(support + "/x", "x");
  ::chmod("/Library/Application Support", 0555);
  const auto run = quarn({"run", foo});
  ::chmod("/Library/Application Support", 0755);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "warning\t“" + support + "” is still there.\n");
  EXPECT_TRUE(run.out.ends_with("originalPath = \"" + support +
                                "\"\ncategory = \"applicationSupport\"\nsizeBytes = " + bytes(support) +
                                "\nsucceeded = false\nstashedTo = \"/Library/Application Support/"
                                ".QuarnTrash\"\n"))
      << run.out;
  EXPECT_EQ(scene::read(support + "/x"), "x");
}

TEST(UninstallRun, tellsWhatWentIfItCantBeRecorded) {
  makeFoo();
  scene::write(sessions, "a file");
  const std::string ofFoo = bytes(foo), ofCache = bytes(cache);
  const auto run = quarn({"run", foo});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  const std::string id = run.err.substr(6, 15);
  EXPECT_TRUE(run.err.starts_with(head(id, false) + item(foo, "executable", ofFoo, trash + "/Foo.app") +
                                  item(cache, "caches", ofCache, trash + "/com.example.foo") + "error\t"))
      << run.err;
  EXPECT_TRUE(scene::exists(trash + "/Foo.app"));
  EXPECT_TRUE(scene::exists(trash + "/com.example.foo"));
}

TEST(UninstallRun, findsNothingTheSecondTime) {
  makeFoo();
  EXPECT_EQ(quarn({"run", foo}).status, 0);
  EXPECT_EQ(answerTo({"run", foo}), failed("App not found: " + foo));
}

TEST(UninstallRun, takesNamesOfEveryKind) {
  for (const std::string& name :
       {std::string("with blank"), std::string("with 'quotes\""), std::string("with\ttab"),
        std::string("line\nfeed"), std::string("e\xCC\x81t\xC3\xA9"), std::string("$(x)`;&*?[a]\\"),
        std::string(251, 'n')}) {
    const std::string bundle = "/Applications/" + name + ".app";
    scene::makeApp(bundle, {.identifier = "id." + name.substr(0, 200)});
    scene::write(library + "/Caches/" + name + "/x", "x");
    scene::write(library + "/Caches/neighbour of " + name.substr(0, 200) + "/x", "x");
    const auto app = scene::tree(bundle);
    forgetSessions();
    const auto run = quarn({"run", bundle});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(scene::exists(bundle)) << name;
    EXPECT_EQ(scene::tree(trash + "/" + name + ".app"), app);
    EXPECT_TRUE(scene::exists(library + "/Caches/neighbour of " + name.substr(0, 200) + "/x"));
    EXPECT_FALSE(scene::exists(library + "/Caches/" + name));
  }
}

TEST(UninstallRun, comesThroughToolsThatAreMissingOrFail) {
  for (const char* script : {"exit 1", "echo x; exit 1", "kill -9 $$", "yes | head -c 3000000; exit 1"}) {
    makeFoo();
    scene::replaceTool("/usr/sbin/pkgutil", script);
    scene::replaceTool("/usr/bin/mdutil", script);
    EXPECT_EQ(quarn({"run", foo}).status, 0) << script;
    EXPECT_FALSE(scene::exists(foo));
  }
  makeFoo();
  scene::removeTool("/usr/sbin/pkgutil");
  scene::removeTool("/usr/bin/mdutil");
  EXPECT_EQ(quarn({"run", foo}).status, 0);
  EXPECT_FALSE(scene::exists(foo));
}

TEST(UninstallPlan, showsReceiptsOfOthersUnderTheirOwnNames) {
  makeFoo();
  for (const char* id : {"com.example.foo", "com.example.foo2", "com.exampleXfoo", "com.example.bar"})
    scene::write(receipts + "/" + std::string(id), "x");
  const auto run = quarn({"plan", foo, "--format", "human"});
  const auto at = run.out.find("[Receipts]\n");
  ASSERT_NE(at, std::string::npos) << run.out;
  for (const char* id : {"com.example.foo", "com.example.foo2", "com.exampleXfoo"})
    EXPECT_NE(run.out.find("  - " + std::string(id) + " (0 bytes, medium)\n", at), std::string::npos)
        << run.out;
  EXPECT_EQ(run.out.find("com.example.bar"), std::string::npos);
}

TEST(UninstallPlan, comesThroughIdentifiersThatMeanMoreToTheTool) {
  for (const char* id : {"com.example.*", "(", "[", "^", "com\\", "-f", "--pkgs"}) {
    scene::makeApp(foo, {.identifier = id});
    const auto run = quarn({"plan", foo, "--format", "human"});
    EXPECT_EQ(run.status, 0) << id << run.err;
  }
}

}  // namespace
