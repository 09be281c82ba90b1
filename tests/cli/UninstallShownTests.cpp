#include "tests/cli/UninstallScenes.h"

/// `uninstall apps`, `inspect`, `plan` and `sessions`: what they print.

using namespace uninstalls;
using expected::failed;
using expected::printed;

namespace {

TEST(UninstallArguments, thatAreMissingOrUnknownAreErrors) {
  EXPECT_EQ(answerTo({}), failed("Missing uninstall action."));
  for (const char* action : {"bogus", "", "App", "--format"})
    EXPECT_EQ(answerTo({action}), failed("Unknown uninstall action: " + std::string(action)));
  scene::makeApp(foo);
  for (const char* action : {"inspect", "plan", "run"}) {
    EXPECT_EQ(answerTo({action}), failed("Missing app path."));
    EXPECT_EQ(answerTo({action, ""}), failed("Missing app path."));
    EXPECT_EQ(answerTo({action, "--format", "tsv", foo}), failed("Missing app path."));
    EXPECT_EQ(answerTo({action, "/Applications/None.app"}), failed("App not found: /Applications/None.app"));
    EXPECT_EQ(answerTo({action, "None.app"}), failed("App not found: None.app"));
  }
  EXPECT_TRUE(scene::exists(foo));
}

TEST(UninstallApps, areListedInThreeForms) {
  scene::makeApp(foo);
  scene::makeApp("/Users/me/Applications/Bar.app", {.identifier = ""});
  const std::string tsv =
      "app\tkind\tid\tname\tpath\n"
      "app\tuserApplications\t-\tBar\t/Users/me/Applications/Bar.app\n"
      "app\tnormal\tcom.example.foo\tFoo\t/Applications/Foo.app\n";
  for (const Words& words : {Words{"apps"}, Words{"apps", "--format", "tsv"},
                             Words{"apps", "--format", "json"}, Words{"apps", "--format"}})
    EXPECT_EQ(answerTo(words), printed(tsv));
  EXPECT_EQ(answerTo({"apps", "--format", "human"}),
            printed("userApplications\tBar\t/Users/me/Applications/Bar.app\n"
                    "normal\tFoo\t/Applications/Foo.app\n"));
  EXPECT_EQ(answerTo({"apps", "--format", "toml"}),
            printed("[[apps]]\nname = \"Bar\"\npath = \"/Users/me/Applications/Bar.app\"\n"
                    "kind = \"userApplications\"\nbundleId = \"\"\n"
                    "[[apps]]\nname = \"Foo\"\npath = \"/Applications/Foo.app\"\n"
                    "kind = \"normal\"\nbundleId = \"com.example.foo\"\n"));
}

TEST(UninstallApps, ofWhichThereAreNoneGiveTheHeader) {
  EXPECT_EQ(answerTo({"apps"}), printed("app\tkind\tid\tname\tpath\n"));
  EXPECT_EQ(answerTo({"apps", "--format", "human"}), printed(""));
  EXPECT_EQ(answerTo({"apps", "--format", "toml"}), printed("\n"));
}

TEST(UninstallApps, withATabInTheirNameBreakTheColumns) {
  scene::makeApp("/Applications/A.app", {.displayName = "A\tand \"B\\\""});
  EXPECT_EQ(answerTo({"apps"}),
            printed("app\tkind\tid\tname\tpath\n"
                    "app\tnormal\tcom.example.foo\tA\tand \"B\\\"\t/Applications/A.app\n"));
  EXPECT_EQ(answerTo({"apps", "--format", "toml"}),
            printed("[[apps]]\nname = \"A\tand \\\"B\\\\\\\"\"\npath = \"/Applications/A.app\"\n"
                    "kind = \"normal\"\nbundleId = \"com.example.foo\"\n"));
}

TEST(UninstallInspect, showsAnApplicationInThreeForms) {
  scene::makeApp(foo, {.displayName = "Foo Tool"});
  const std::string tsv =
      "inspect\t/Applications/Foo.app\nkind\tnormal\nname\tFoo Tool\nbundle-id\tcom.example.foo\n"
      "version\t1.2.3\ndeveloper\t-\nmac-app-store\tfalse\nlogin-items\tfalse\nsystem-extension\tfalse\n"
      "symlink\tfalse\nquarn-launcher\tfalse\n";
  EXPECT_EQ(answerTo({"inspect", foo}), printed(tsv));
  EXPECT_EQ(answerTo({"inspect", foo, "--format", "bogus"}), printed(tsv));
  EXPECT_EQ(answerTo({"inspect", foo, "--format", "human"}),
            printed("Foo Tool (com.example.foo)\nkind: normal\npath: /Applications/Foo.app\n"));
  EXPECT_EQ(
      answerTo({"inspect", foo, "--format", "toml"}),
      printed("name = \"Foo Tool\"\npath = \"/Applications/Foo.app\"\nkind = \"normal\"\n"
              "bundleId = \"com.example.foo\"\nversion = \"1.2.3\"\ndeveloper = \"\"\nmacAppStore = false\n"
              "loginItems = false\nsystemExtension = false\nsymlink = false\nquarnLauncher = false\n"
              "externalTarget = \"\"\n"));
}

TEST(UninstallInspect, showsALinkThatDangles) {
  scene::link(foo, copyOfFoo);
  EXPECT_EQ(answerTo({"inspect", foo}),
            printed("inspect\t/Applications/Foo.app\nkind\tsymlink\nname\tFoo\nbundle-id\t-\n"
                    "version\t-\ndeveloper\t-\nmac-app-store\tfalse\nlogin-items\tfalse\n"
                    "system-extension\tfalse\nsymlink\ttrue\nquarn-launcher\tfalse\nexternal-target\t" +
                    copyOfFoo + "\n"));
  EXPECT_EQ(answerTo({"inspect", foo, "--format", "human"}),
            printed("Foo (-)\nkind: symlink\npath: /Applications/Foo.app\ntarget: " + copyOfFoo + "\n"));
}

TEST(UninstallInspect, takesAPathFromTheCurrentFolder) {
  scene::makeApp("/Users/me/Applications/Foo.app");
  const auto run = scene::quarn({"uninstall", "inspect", "Applications/Foo.app/", "--format", "human"});
  EXPECT_EQ(run.out, "Foo (com.example.foo)\nkind: userApplications\npath: /Users/me/Applications/Foo.app\n");
}

void makePlannedFoo() {
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  scene::writeBytes(library + "/Caches/com.example.foo/x", 20'000);
  scene::writeBytes(scene::home + "/.foo", 5'000);
  scene::write("/Library/LaunchDaemons/com.example.foo.plist", "x");
}

std::string tomlCandidate(const std::string& path, const std::string& category, const std::string& confidence,
                          const std::string& size, bool isSelected, const std::string& reason,
                          bool isPrivileged = false) {
  return "[[candidates]]\npath = \"" + path + "\"\ncategory = \"" + category + "\"\nconfidence = \"" +
         confidence + "\"\nsizeBytes = " + size + "\ndefaultSelected = " + (isSelected ? "true" : "false") +
         "\nreason = \"" + reason + "\"\nprivileged = " + (isPrivileged ? "true" : "false") + "\n";
}

/// With the sum of the sizes of the paths.
std::string sum(const Words& paths) {
  std::int64_t total = 0;
  for (const std::string& path : paths) total += expected::allocated(path);
  return std::to_string(total);
}

const std::string cache = library + "/Caches/com.example.foo";
const std::string dotfile = scene::home + "/.foo";
const std::string daemon = "/Library/LaunchDaemons/com.example.foo.plist";

std::string tomlOfFoo(const std::string& selectedBytes) {
  // What a link leads to is measured.
  return "appPath = \"" + foo + "\"\ntotalBytes = " + sum({copyOfFoo, copyOfFoo, cache, dotfile, daemon}) +
         "\nselectedBytes = " + selectedBytes +
         "\nwarnings = [\"Launch daemons detected; requires admin authentication.\"]\n" +
         tomlCandidate(foo, "executable", "high", bytes(copyOfFoo), true, "App bundle symlink") +
         tomlCandidate(copyOfFoo, "executable", "high", bytes(copyOfFoo), false, "External target app") +
         tomlCandidate(cache, "caches", "high", bytes(cache), true, "Matches bundle id") +
         tomlCandidate(dotfile, "applicationSupport", "high", bytes(dotfile), false,
                       "Dotfile install matching app name") +
         tomlCandidate(daemon, "launchDaemons", "medium", bytes(daemon), false,
                       "System path matches bundle id", true);
}

TEST(UninstallPlan, isShownInThreeForms) {
  makePlannedFoo();
  for (const Words& words : {Words{"plan", foo}, Words{"plan", foo, "--format", "bogus"}})
    EXPECT_EQ(answerTo(words), printed(tomlOfFoo(sum({copyOfFoo, cache}))));
  EXPECT_EQ(
      answerTo({"plan", foo, "--format", "tsv"}),
      printed("plan\t" + foo + "\t" + sum({copyOfFoo, copyOfFoo, cache, dotfile, daemon}) +
              "\nwarning\tLaunch daemons detected; requires admin authentication.\n"
              "candidate\texecutable\thigh\t" +
              bytes(copyOfFoo) + "\ttrue\t" + foo + "\ncandidate\texecutable\thigh\t" + bytes(copyOfFoo) +
              "\tfalse\t" + copyOfFoo + "\ncandidate\tcaches\thigh\t" + bytes(cache) + "\ttrue\t" + cache +
              "\ncandidate\tapplicationSupport\thigh\t" + bytes(dotfile) + "\tfalse\t" + dotfile +
              "\ncandidate\tlaunchDaemons\tmedium\t" + bytes(daemon) + "\tfalse\t" + daemon + "\n"));
  EXPECT_EQ(
      answerTo({"plan", foo, "--format", "human"}),
      printed("warning: Launch daemons detected; requires admin authentication.\n[Executables]\n  * " + foo +
              " (" + bytes(copyOfFoo) + " bytes, high)\n  - " + copyOfFoo + " (" + bytes(copyOfFoo) +
              " bytes, high)\n[Application Support]\n  - " + dotfile + " (" + bytes(dotfile) +
              " bytes, high)\n[Caches]\n  * " + cache + " (" + bytes(cache) +
              " bytes, high)\n[Launch Daemons]\n  - " + daemon + " (" + bytes(daemon) + " bytes, medium)\n"));
}

TEST(UninstallPlan, countsWhatTheFlagsSelect) {
  makePlannedFoo();
  const std::pair<Words, Words> rows[] = {
      {{"--executable-only"}, {copyOfFoo}},
      {{"--minimal"}, {copyOfFoo}},
      {{"--minimal", "--include-caches"}, {copyOfFoo}},
      {{"--include-caches"}, {copyOfFoo, cache}},
      {{"--include-logs"}, {copyOfFoo}},
      {{"--include-data"}, {copyOfFoo}},
      {{"--include-launch-daemons"}, {copyOfFoo}},
      {{"--include-receipts"}, {copyOfFoo}},
      {{"--include-external-target"}, {copyOfFoo, copyOfFoo}},
      {{"--include-caches", "--include-external-target"}, {copyOfFoo, copyOfFoo, cache}},
      {{"--Include-Logs"}, {copyOfFoo, cache}},
  };
  for (const auto& [flags, taken] : rows) {
    Words words = {"plan", foo};
    words.insert(words.end(), flags.begin(), flags.end());
    EXPECT_EQ(answerTo(words), printed(tomlOfFoo(sum(taken)))) << flags[0];
  }
}

TEST(UninstallPlan, ofAPartOfTheSystemIsShown) {
  scene::makeApp("/System/Applications/Foo.app");
  const auto run = quarn({"plan", "/System/Applications/Foo.app", "--format", "human"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.out.starts_with("warning: Refusing system app uninstall: /System/Applications/Foo.app\n"))
      << run.out;
}

TEST(UninstallSessions, ofWhichThereAreNoneGiveTheHeader) {
  EXPECT_EQ(answerTo({"sessions"}), printed("session\tid\tapp\tdry\titems\n"));
  EXPECT_EQ(answerTo({"sessions", "--format", "toml"}), printed(""));
  EXPECT_EQ(answerTo({"sessions", "--format", "human"}), printed(""));
}

TEST(UninstallSessions, areListedFromTheNewestInThreeForms) {
  writeSession("old",
               R"("createdAt":100,"movedItems":[],"forgottenReceipts":["com.a","com.b"],"dryRun":true)");
  writeSession("new", R"("createdAt":200,"bundleIdentifier":"com.n","forgottenReceipts":[],"dryRun":false,
      "movedItems":[{"originalPath":"/a","category":"caches","sizeBytes":7,"succeeded":true,"trashedTo":"/t"},
                    {"originalPath":"/b","category":"logs","sizeBytes":8,"succeeded":false,"stashedTo":"/s","error":"e"}])");
  scene::write(sessions + "/broken/session.json", "{");
  scene::makeFolder(sessions + "/empty");
  EXPECT_EQ(answerTo({"sessions"}), printed("session\tid\tapp\tdry\titems\n"
                                            "session\tnew\t/Applications/new.app\tfalse\t2\n"
                                            "session\told\t/Applications/old.app\ttrue\t0\n"));
  EXPECT_EQ(
      answerTo({"sessions", "--format", "human"}),
      printed(
          "new\t/Applications/new.app\tdry=false\titems=2\nold\t/Applications/old.app\tdry=true\titems=0\n"));
  EXPECT_EQ(
      answerTo({"sessions", "--format", "toml"}),
      printed("id = \"new\"\nappPath = \"/Applications/new.app\"\nappName = \"new\"\nbundleId = \"com.n\"\n"
              "dryRun = false\nforgottenReceipts = []\n"
              "[[items]]\noriginalPath = \"/a\"\ncategory = \"caches\"\nsizeBytes = 7\nsucceeded = true\n"
              "trashedTo = \"/t\"\n"
              "[[items]]\noriginalPath = \"/b\"\ncategory = \"logs\"\nsizeBytes = 8\nsucceeded = false\n"
              "stashedTo = \"/s\"\n"
              "id = \"old\"\nappPath = \"/Applications/old.app\"\nappName = \"old\"\nbundleId = \"\"\ndryRun "
              "= true\n"
              "forgottenReceipts = [\"com.a\", \"com.b\"]\n"));
}

}  // namespace
