#include <sys/stat.h>

#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/support/FakeTools.h"
#include "tests/uninstall/Uninstalling.h"

namespace quarn {
namespace {

using namespace uninstalling;
using Category = UninstallCategory;
using Confidence = UninstallConfidence;

AppRecord record(const std::optional<std::string>& identifier = "com.example.foo",
                 const std::string& displayName = "Foo") {
  AppRecord record;
  record.id = record.bundlePath = foo;
  record.displayName = displayName;
  record.bundleIdentifier = identifier;
  return record;
}

/// The paths of everything but the bundle itself.
Texts related(const AppRecord& of) {
  Texts paths = pathsOf(scanned(of));
  std::erase(paths, of.bundlePath);
  return paths;
}

TEST(RelatedFiles, areFoundByEachRuleInItsOrder) {
  struct Row {
    std::string path;
    Category category;
    Confidence confidence;
    std::string reason;
    bool isSelected;
    bool isPrivileged;
  };
  const Row rows[] = {
      {foo, Category::executable, Confidence::high, "App bundle", true, false},
      {library + "/Application Support/Foo", Category::applicationSupport, Confidence::medium,
       "Matches app name", true, false},
      {library + "/Application Support/com.example.foo", Category::applicationSupport, Confidence::high,
       "Matches bundle id", true, false},
      {library + "/Caches/Foo", Category::caches, Confidence::medium, "Matches app name", true, false},
      {library + "/Caches/com.example.foo", Category::caches, Confidence::high, "Matches bundle id", true,
       false},
      {library + "/Logs/Foo", Category::logs, Confidence::medium, "Matches app name", true, false},
      {library + "/Logs/com.example.foo", Category::logs, Confidence::high, "Matches bundle id", true, false},
      {library + "/Preferences/com.example.foo.plist", Category::preferences, Confidence::high,
       "Preferences plist", true, false},
      {library + "/Preferences/ByHost/com.example.foo.ABC.plist", Category::preferences, Confidence::high,
       "ByHost preferences", true, false},
      {library + "/Preferences/ByHost/com.example.foo2.ABC.plist", Category::preferences, Confidence::high,
       "ByHost preferences", true, false},
      {library + "/Containers/com.example.foo", Category::containers, Confidence::high, "Matches bundle id",
       true, false},
      {library + "/Group Containers/com.example.foo", Category::groupContainers, Confidence::high,
       "Matches bundle id", true, false},
      {library + "/HTTPStorages/com.example.foo", Category::httpStorages, Confidence::high,
       "Matches bundle id", true, false},
      {library + "/WebKit/com.example.foo", Category::webKit, Confidence::high, "Matches bundle id", true,
       false},
      {library + "/Saved Application State/Foo.savedState", Category::savedAppState, Confidence::medium,
       "Saved application state", true, false},
      {library + "/LaunchAgents/com.example.foo.plist", Category::launchAgents, Confidence::high,
       "User launch agent", true, false},
      {"/Users/me/.foo", Category::applicationSupport, Confidence::high, "Dotfile install matching app name",
       false, false},
      {"/Users/me/.foorc", Category::applicationSupport, Confidence::high,
       "Dotfile install matching app name", false, false},
      {library + "/Caches/foo-cli-nodejs", Category::caches, Confidence::high, "Node CLI cache", true, false},
      {"/Library/LaunchDaemons/com.example.foo.plist", Category::launchDaemons, Confidence::medium,
       "System path matches bundle id", false, true},
      {"/Library/LaunchAgents/com.example.foo.plist", Category::launchAgents, Confidence::medium,
       "System path matches bundle id", false, true},
      {"/Library/Application Support/com.example.foo", Category::applicationSupport, Confidence::medium,
       "System path matches bundle id", true, true},
      {"/Library/PrivilegedHelperTools/com.example.foo", Category::launchDaemons, Confidence::medium,
       "System path matches bundle id", false, true},
  };
  for (const Row& row : rows) scene::writeBytes(row.path + (row.path == foo ? "/data" : ""), 10'000);
  std::vector<UninstallCandidate> expected;
  for (const Row& row : rows) {
    expected.push_back({row.path, row.category, SizingService::measure(hostPlatform(), Path(row.path)),
                        row.confidence, row.reason, row.isSelected, row.isPrivileged, false});
    EXPECT_GT(expected.back().sizeBytes, 0) << row.path;
  }
  EXPECT_EQ(pathsOf(scanned(record())), pathsOf(expected));
  EXPECT_EQ(scanned(record()), expected);
}

TEST(RelatedFiles, ofOthersWithNamesThatLookAlikeAreNone) {
  const Texts folders = {"Application Support", "Caches",       "Logs",  "Containers",
                         "Group Containers",    "HTTPStorages", "WebKit"};
  for (const std::string& folder : folders) {
    for (const char* name : {"Foo2", "Fo", "foo", "FOO", "Foo Bar", "com.example.foo2", "com.example.fo",
                             "com.example", "com.example.Foo", "com.example.foo.helper", "x.com.example.foo",
                             " Foo", "Foo ", "Foo.app", "Foo.savedState"})
      scene::makeFolder(library + "/" + folder + "/" + name);
  }
  scene::makeFolder(library + "/Saved Application State/com.example.foo.savedState");
  scene::write(library + "/Preferences/com.example.foo.helper.plist", "x");
  scene::write(library + "/LaunchAgents/com.example.foo.agent.plist", "x");
  scene::write(library + "/Preferences/ByHost/com.example.fo.plist", "x");
  EXPECT_EQ(related(record()), Texts{});
}

TEST(RelatedFiles, ofAnApplicationWithoutAnIdentifierGoByItsNameAlone) {
  scene::makeFolder(library + "/Caches/Foo");
  scene::makeFolder(library + "/Saved Application State/Foo.savedState");
  scene::makeFolder("/Users/me/.foo");
  scene::makeFolder(library + "/Caches/foo-cli");
  scene::makeFolder(library + "/Application Support/Foo");
  scene::makeFolder(library + "/Logs/Foo");
  scene::write(library + "/Preferences/ByHost/com.example.foo.plist", "x");
  const Texts expected = {library + "/Application Support/Foo",
                          library + "/Caches/Foo",
                          library + "/Logs/Foo",
                          library + "/Saved Application State/Foo.savedState",
                          "/Users/me/.foo",
                          library + "/Caches/foo-cli"};
  EXPECT_EQ(related(record(std::nullopt)), expected);
  EXPECT_EQ(related(record("")), expected) << "an empty one counts as absent";
}

TEST(RelatedFiles, ofANameThatIsTheIdentifierStandOnceAndSurely) {
  scene::makeFolder(library + "/Caches/com.example.foo");
  const auto found = scanned(record("com.example.foo", "com.example.foo"));
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[1].path, library + "/Caches/com.example.foo");
  EXPECT_EQ(found[1].confidence, Confidence::high);
  EXPECT_EQ(found[1].reason, "Matches bundle id");
}

TEST(RelatedFiles, ofALinkAreTheLinkAndWhatItLeadsTo) {
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  const auto found = scanned(*inspected());
  ASSERT_EQ(pathsOf(found), (Texts{foo, copyOfFoo}));
  EXPECT_EQ(found[0].reason, "App bundle symlink");
  EXPECT_TRUE(found[0].isSymlink);
  EXPECT_EQ(found[1].reason, "External target app");
  EXPECT_FALSE(found[1].defaultSelected);
  EXPECT_FALSE(found[1].isSymlink);
  EXPECT_GT(found[1].sizeBytes, 40'000);
}

TEST(RelatedFiles, ofALinkThatDanglesAreTheLinkAlone) {
  scene::link(foo, copyOfFoo);
  EXPECT_EQ(pathsOf(scanned(*inspected())), Texts{foo});
}

TEST(RelatedFiles, ofALinkToItselfAreTheLinkAlone) {
  AppRecord own = record();
  own.externalTargetPath = foo;
  scene::makeApp(foo);
  EXPECT_EQ(pathsOf(scanned(own)), Texts{foo});
}

TEST(RelatedFiles, ofAnApplicationInASupportFolderDontTakeThatFolder) {
  const std::string bundle = library + "/Application Support/tool/Tool.app";
  makeBundle(bundle, key("CFBundleIdentifier", "tool") + key("CFBundleExecutable", "tool"));
  scene::makeFolder(library + "/Caches/tool");
  scene::makeFolder("/Users/me/.tool");
  const auto tool = *inspected(bundle);
  EXPECT_EQ(tool.displayName, "tool");
  EXPECT_EQ(related(tool), (Texts{library + "/Caches/tool", "/Users/me/.tool"}));
}

TEST(RelatedFiles, underTheSlugOfAnotherProgramAreNotTaken) {
  scene::makeFolder("/Users/me/.foo");
  scene::makeFolder(library + "/Caches/foo-cli");
  EXPECT_EQ(related(record("com.example.foo.url-handler")), Texts{});
  EXPECT_EQ(related(record("com.example.foo.URLHandler")), Texts{});
  EXPECT_EQ(related(record()), (Texts{"/Users/me/.foo", library + "/Caches/foo-cli"}));
}

TEST(RelatedFiles, thatAreDanglingLinksOrCantBeLookedAtAreAbsent) {
  scene::link(library + "/Caches/Foo", "/nowhere");
  EXPECT_EQ(related(record()), Texts{});
  scene::makeFolder(library + "/Logs/Foo");
  scene::write(library + "/Preferences/ByHost/com.example.foo.plist", "x");
  ::chmod((library + "/Logs").c_str(), 0);
  ::chmod((library + "/Preferences/ByHost").c_str(), 0);
  const auto seen = scene::quarn({"uninstall", "plan", foo, "--format", "tsv"});
  EXPECT_EQ(seen.out.find("Foo\n"), std::string::npos) << seen.out;
  EXPECT_EQ(seen.out.find("ByHost"), std::string::npos) << seen.out;
}

TEST(RelatedFiles, areNeverWhatThisToolMovedAside) {
  for (const char* folder : {"Application Support", "Caches", "Logs", "Containers"})
    scene::write(library + "/" + folder + "/.QuarnTrash/Bar-uninstall-1/precious", "x");
  EXPECT_EQ(related(record(".QuarnTrash", ".QuarnTrash")), Texts{});
  EXPECT_EQ(related(record(".quarntrash", ".quarntrash")), Texts{});
}

TEST(RelatedFiles, withANameOfAnotherFormThatIsNoTextAreLeftOut) {
  scene::write(library + "/Preferences/ByHost/com.example.foo.\xFF.plist", "x");
  EXPECT_EQ(related(record()), Texts{}) << "it couldn't be recorded";
}

TEST(RelatedFiles, thatAreOneFolderUnderTwoPathsStandOnce) {
  scene::makeFolder(library + "/Caches/Foo");
  // As on a volume that ignores letter case.
  std::filesystem::remove(library + "/Logs");
  scene::link(library + "/Logs", library + "/Caches");
  EXPECT_EQ(related(record(std::nullopt)), Texts{library + "/Caches/Foo"});
}

TEST(RelatedFiles, areFoundUnderTheNameThatTheDiskGivesASlash) {
  // The Finder's "a/b" is "a:b" on the disk.
  scene::makeFolder(library + "/Caches/a:b");
  AppRecord slash = record(std::nullopt, "a/b");
  EXPECT_EQ(related(slash), Texts{}) << "a slash is no part of a name";
  makeBundle("/Applications/a:b.app", key("CFBundleName", "a/b"));
  EXPECT_EQ(related(*inspected("/Applications/a:b.app")), Texts{library + "/Caches/a:b"});
}

TEST(RelatedFiles, thatAreLinksAreTheLinks) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::link(library + "/Caches/Foo", "/Users/me/Documents");
  EXPECT_EQ(related(record()), Texts{library + "/Caches/Foo"});
}

TEST(RelatedFiles, receiptsAreThoseThatTheToolPrints) {
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil --pkgs=com.example.foo"] = {
      .output = "com.example.foo\n\ncom.example.foo2\ncom.example.foo\n"};
  const auto found = RelatedFileScanner::scan(tools.platform(), record());
  ASSERT_EQ(pathsOf(found), (Texts{foo, "com.example.foo", "com.example.foo2"}));
  EXPECT_EQ(found[1], (UninstallCandidate{"com.example.foo", Category::receipts, 0, Confidence::medium,
                                          "pkgutil receipt for bundle id", false, true, false}));
}

TEST(RelatedFiles, receiptsAreNoneIfTheToolFailsOrIsMissing) {
  doubles::FakeTools tools;
  EXPECT_EQ(RelatedFileScanner::scan(tools.platform(), record()).size(), 1u);
  tools.answers["/usr/sbin/pkgutil"] = {.status = 1, .output = "com.example.foo\n"};
  EXPECT_EQ(RelatedFileScanner::scan(tools.platform(), record()).size(), 1u);
  const auto calls = tools.calls.size();
  RelatedFileScanner::scan(tools.platform(), record(std::nullopt));
  EXPECT_EQ(tools.calls.size(), calls) << "without an identifier nobody is asked";
}

void saveSession(const std::string& id, const Texts& changedPaths) {
  InstallerSession session;
  session.id = id;
  session.optionID = "trusted-external";
  session.changedPaths = changedPaths;
  SessionStore::save(hostPlatform(), session, Path(library + "/Application Support/Quarn/InstallerSessions"));
}

TEST(RelatedFiles, sessionsAreThoseThatNameTheBundleOrItsTarget) {
  saveSession("a", {"/x", foo});
  saveSession("b", {copyOfFoo});
  saveSession("c", {foo + "/Contents/Info.plist", "/Applications/Foo.app2"});
  AppRecord link = record();
  link.externalTargetPath = copyOfFoo;
  const std::string root = library + "/Application Support/Quarn/InstallerSessions/";
  Texts paths = related(link);
  std::sort(paths.begin(), paths.end());
  EXPECT_EQ(paths, (Texts{root + "a", root + "b"}));
  EXPECT_EQ(related(record()), Texts{root + "a"});
  EXPECT_EQ(at(scanned(record()), root + "a"),
            (UninstallCandidate{root + "a", Category::installerSession, 0, Confidence::high,
                                "Quarn installer session record", false, false, false}));
}

TEST(RelatedFiles, sessionsOfStrangersNameNothing) {
  saveSession("a", {foo});
  const std::string root = library + "/Application Support/Quarn/InstallerSessions/";
  const std::string text = scene::read(root + "a/session.json");
  for (const std::string id : {"..", "../../../Documents", "", ".", "b"}) {
    std::string changed = text;
    changed.replace(changed.find("\"id\":\"a\""), 8, "\"id\":\"" + id + "\"");
    scene::write(root + "a/session.json", changed);
    EXPECT_EQ(related(record()), Texts{}) << id;
  }
}

TEST(Footprint, isTheSumOfWhatIsFound) {
  scene::writeBytes(foo + "/data", 100'000);
  scene::writeBytes(library + "/Caches/com.example.foo/data", 50'000);
  scene::writeBytes(library + "/Caches/com.example.other/data", 50'000);
  const auto bytes = AppFootprintCalculator::footprint(hostPlatform(), record());
  EXPECT_GE(bytes, 150'000);
  EXPECT_LT(bytes, 200'000);
}

/// A name that isn't that of a file must lead to nothing, whichever rule would use it.
class HostileNames : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(All, HostileNames,
                         testing::Values("", ".", "..", "/", "a/b", "../../Documents", "/Users/me/Documents",
                                         "../Documents", std::string("a\0b", 3), std::string("\0", 1)));

/// Everything that a careless rule could reach.
void makeSurroundings() {
  for (const char* folder :
       {"Application Support", "Caches", "Logs", "Preferences/ByHost", "Containers", "Group Containers",
        "HTTPStorages", "WebKit", "Saved Application State", "LaunchAgents"}) {
    scene::write(library + "/" + folder + "/a/b/precious", "x");
    scene::write(library + "/" + folder + "/a.plist", "x");
    scene::write(library + "/" + folder + "/.plist", "x");
    scene::write(library + "/" + folder + "/.savedState", "x");
  }
  for (const char* folder : {"LaunchDaemons", "LaunchAgents", "Application Support", "PrivilegedHelperTools"})
    scene::write("/Library/" + std::string(folder) + "/a/b", "x");
  scene::write("/Users/me/Documents/precious", "x");
  for (const char* name : {".json", ".json.backup", ".rc", ".log", ".a/b", "Documents.plist"})
    scene::write("/Users/me/" + std::string(name), "x");
  scene::write(library + "/Caches/-cli/x", "x");
}

TEST_P(HostileNames, ofAnIdentifierLeadToNothing) {
  makeSurroundings();
  EXPECT_EQ(related(record(GetParam(), "Other Name")), Texts{});
}

TEST_P(HostileNames, ofAnApplicationLeadToNothing) {
  makeSurroundings();
  EXPECT_EQ(related(record("com.other.url-handler", GetParam())), Texts{});
}

TEST_P(HostileNames, ofAnExecutableLeadToNothing) {
  makeSurroundings();
  AppRecord hostile = record("com.other", GetParam());
  hostile.bundlePath = "/Applications/" + std::string(".app");
  hostile.executableName = GetParam();
  for (const std::string& path : related(hostile)) EXPECT_EQ(path, "/Users/me/.app") << GetParam();
}

TEST(RelatedFiles, areNeverPlacesThatMustStay) {
  // An application that calls itself like this tool would take its records with it.
  saveSession("a", {});
  AppRecord own = record("Quarn", "Quarn");
  own.executableName = "Trash";
  scene::makeFolder("/Users/me/.Trash");
  scene::makeFolder("/Users/me/.trash");
  EXPECT_EQ(related(own), Texts{"/Users/me/.trash"}) << "a folder of its own where letter case matters";
}

TEST(RelatedFiles, toWhichALauncherLeadsAreApplicationsOnly) {
  scene::makeFolder("/Users/me/Documents");
  scene::makeFolder(library + "/Application Support/Quarn/Backup.app");
  scene::makeFolder("/Volumes/X9/QuarnBackups/Foo.app");
  scene::makeFolder("/System/Applications/Clock.app");
  for (const char* target :
       {"/", "/Users/me", "/Users/me/Documents", "/Applications", "/Volumes/X9",
        "/Volumes/X9/ExternalQuarn/Apps", "", "/Users/me/Library/Application Support/Quarn/Backup.app",
        "/Volumes/X9/QuarnBackups/Foo.app", "/System/Applications/Clock.app",
        "/Volumes/X9/../../System/Applications/Clock.app"}) {
    AppRecord launcher = record(std::nullopt, "Launcher");
    launcher.kind = AppRecordKind::quarnLauncher;
    launcher.externalTargetPath = target;
    EXPECT_EQ(related(launcher), Texts{}) << target;
  }
}

TEST(RelatedFiles, ofALauncherWithARelativeTargetDontHoldIt) {
  scene::makeApp("/Applications/Other.app");
  AppRecord launcher = record(std::nullopt, "Launcher");
  launcher.externalTargetPath = "Other.app";
  EXPECT_EQ(related(launcher), Texts{}) << "a launcher starts at no folder";
  launcher.isSymlink = true;
  EXPECT_EQ(related(launcher), Texts{"/Applications/Other.app"});
}

TEST(RelatedFiles, ofWhatMustStayDontHoldIt) {
  for (const char* path :
       {"/", "/Users/me", "/Users", "/Applications", "/Volumes/X9", "/Volumes/X9/ExternalQuarn"}) {
    AppRecord place = record(std::nullopt, "Nothing of that name");
    place.bundlePath = path;
    EXPECT_EQ(pathsOf(scanned(place)), Texts{}) << path;
  }
}

}  // namespace
}  // namespace quarn
