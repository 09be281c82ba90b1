#include <filesystem>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/DataLocator.h"
#include "tests/support/Child.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

const std::string bundle = "/Applications/Foo.app";
const std::string cache = "/Users/me/Library/Caches/com.example.foo";
const std::string tracked = "/Users/me/Documents/Foo Data";

List locate(const std::optional<std::string>& identifier = "com.example.foo", const std::string& name = "Foo",
            const std::string& path = bundle) {
  List list;
  for (const Path& found : DataLocator::locate(hostPlatform(), identifier, name, Path(path), "FooTool")) {
    list.push_back(found.text());
  }
  return list;
}

std::string quoted(const std::string& text) {
  std::string sql = "'";
  for (const char c : text) sql += c == '\'' ? std::string("''") : std::string(1, c);
  return sql + "'";
}

void install(const std::string& id, const std::string& at = "2026-01-01", bool gone = false,
             const std::string& name = "Foo", const std::string& identifier = "com.example.foo") {
  scene::sql("INSERT INTO installs (install_id, app_name, bundle_id, installed_at, uninstalled_at) VALUES (" +
             quoted(id) + "," + quoted(name) + "," + quoted(identifier) + "," + quoted(at) + "," +
             (gone ? "'2026-02-02'" : "NULL") + ");");
}

void track(const std::string& id, const std::string& path) {
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES (" + quoted(id) + "," + quoted(path) +
             ");");
}

class DataLocatorWithLedger : public testing::Test {
 protected:
  DataLocatorWithLedger() {
    scene::makeInstallsDB();
    scene::makeFolder(cache);
    scene::makeFolder(tracked);
    scene::makeApp(bundle);
  }
};

TEST(DataLocator, withoutALedgerGivesWhatIsGenerallyKnown) {
  scene::makeFolder(cache);
  scene::makeFolder("/Users/me/.footool");
  EXPECT_EQ(locate(), (List{cache, "/Users/me/.footool"}));
}

TEST(DataLocator, withoutALedgerAPathKnownInTwoWaysIsListedTwice) {
  scene::makeFolder("/Users/me/Library/Caches/same");
  EXPECT_EQ(locate("same", "same"), (List{"/Users/me/Library/Caches/same", "/Users/me/Library/Caches/same"}));
}

TEST_F(DataLocatorWithLedger, trackedPathsComeFirst) {
  install("i1");
  track("i1", tracked);
  EXPECT_EQ(locate(), (List{tracked, cache}));
}

TEST_F(DataLocatorWithLedger, aPathFoundBothWaysStandsOnceInTheTrackedPlace) {
  scene::makeFolder("/Users/me/.footool");
  install("i1");
  for (const auto& path : {std::string("/Users/me/.footool"), tracked, cache}) track("i1", path);
  EXPECT_EQ(locate(), (List{"/Users/me/.footool", tracked, cache}));
}

TEST_F(DataLocatorWithLedger, pathsThatStandardizeAlikeAreOneInTheFirstSpelling) {
  install("i1");
  track("i1", "/Users/me/Library//Caches/./com.example.foo");
  track("i1", cache);
  EXPECT_EQ(locate(), (List{"/Users/me/Library//Caches/./com.example.foo"}));
}

TEST_F(DataLocatorWithLedger, filesInsideTheBundleAreNoData) {
  install("i1");
  for (const char* inside : {"", "/", "/Contents", "/Contents/MacOS/Foo"}) track("i1", bundle + inside);
  track("i1", tracked);
  EXPECT_EQ(locate(), (List{tracked, cache}));
}

TEST_F(DataLocatorWithLedger, theBundlePathIsStandardizedBeforeItIsCompared) {
  install("i1");
  track("i1", bundle + "/Contents/MacOS/Foo");
  EXPECT_EQ(locate("com.example.foo", "Foo", "/Applications//./Foo.app"), (List{cache}));
}

TEST_F(DataLocatorWithLedger, theBundleAndWhatIsInItAreNoDataHoweverSpelled) {
  scene::link("/Users/me/to bundle", bundle);
  install("i1");
  for (const char* row : {"/Applications//Foo.app", "/Applications/./Foo.app/Contents",
                          "/Applications/Foo.app/../Foo.app/Contents", "/Applications/Foo.app/.",
                          "/Users/me/to bundle", "/Users/me/to bundle/Contents"}) {
    track("i1", row);
  }
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, whatIsAroundTheBundleIsNoData) {
  const std::string suite = "/Users/me/Suites/Foo Suite";
  scene::makeApp(suite + "/Foo.app");
  scene::makeFolder(suite + "/Presets");
  install("i1");
  for (const std::string& row : {suite, std::string("/Users/me/Suites"), suite + "/Presets"})
    track("i1", row);
  EXPECT_EQ(locate("com.example.foo", "Foo", suite + "/Foo.app"), (List{suite + "/Presets", cache}));
  EXPECT_EQ(locate(), (List{suite, "/Users/me/Suites", suite + "/Presets", cache})) << "around another one";
}

TEST_F(DataLocatorWithLedger, theBundleIsKnownWhereItsLinkLeads) {
  const std::string moved = "/Volumes/X9/Elsewhere/Foo.app";
  scene::makeApp(moved);
  std::filesystem::remove_all(bundle);
  scene::link(bundle, moved);
  install("i1");
  for (const std::string& row : {moved, moved + "/Contents", std::string("/Volumes/X9/Elsewhere"), tracked})
    track("i1", row);
  EXPECT_EQ(locate(), (List{tracked, cache}));
}

TEST_F(DataLocatorWithLedger, aFolderThatIsNoApplicationsIsDataOfNone) {
  scene::makeFolder("/Users/me/Library/Application Support/Quarn/InstallerSessions");
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Data/Library/Foo");
  scene::link("/Users/me/to home", "/Users/me");
  scene::link("/Users/me/Library/Foo", "/Volumes/X9/ExternalQuarn/Data/Library/Foo");
  install("i1");
  for (const char* row : {"/",
                          "/.",
                          "/Users",
                          "/Users/me",
                          "/Users/me/",
                          "//Users/./me",
                          "/Applications",
                          "/Applications/../Applications",
                          "/Users/me/Applications",
                          "/System/Applications",
                          "/Volumes",
                          "/Volumes/X9",
                          "/Volumes/X9/ExternalQuarn",
                          "/Volumes/X9/ExternalQuarn/Data",
                          "/Volumes/X9/ExternalQuarn/Data/Library/Foo",
                          "/Users/me/Library",
                          "/Users/me/Library/Application Support",
                          "/Users/me/Library/Application Support/Quarn",
                          "/Users/me/Library/Application Support/Quarn/InstallerSessions",
                          "/Users/me/to home",
                          "/Users/me/to home/Library"}) {
    track("i1", row);
  }
  scene::makeFolder("/System/Applications");
  EXPECT_EQ(locate(), (List{cache}));
  track("i1", "/Users/me/Library/Foo");
  EXPECT_EQ(locate(), (List{"/Users/me/Library/Foo", cache}))
      << "what has been moved stays its application's";
}

TEST_F(DataLocatorWithLedger, rowsThatNameNoPathAreDropped) {
  install("i1");
  track("i1", "");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i1', NULL);");
  for (const char* row : {"char(0)", "'/Users/me' || char(0) || '/Documents/Foo Data'", "x'00FF'", "'~'",
                          "'~/Documents/Foo Data'", "' /Users/me/Documents/Foo Data'"}) {
    scene::sql(std::string("INSERT INTO tracked_files (install_id, file_path) VALUES ('i1', ") + row + ");");
  }
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, aRelativePathIsJudgedByWhereItLeads) {
  install("i1");
  for (const char* row : {".", "..", "Library/..", "../me", "Library", "../../Applications/Foo.app/Contents"})
    track("i1", row);
  EXPECT_EQ(child::failures([] {
              std::filesystem::current_path("/Users/me");
              EXPECT_EQ(locate(), (List{cache}));
            }),
            "");
}

TEST(DataLocator, anApplicationThatIsCalledAsThisToolDoesNotOwnTheFolderOfThisTool) {
  scene::makeFolder("/Users/me/Library/Application Support/Quarn");
  scene::makeFolder("/Users/me/Library/Caches/Quarn");
  EXPECT_EQ(locate("com.example.foo", "Quarn"), (List{"/Users/me/Library/Caches/Quarn"}));
}

TEST_F(DataLocatorWithLedger, aNeighbourWhoseNameBeginsLikeTheBundleIsData) {
  scene::makeFolder("/Applications/Foo.app Support");
  install("i1");
  track("i1", "/Applications/Foo.app Support");
  EXPECT_EQ(locate(), (List{"/Applications/Foo.app Support", cache}));
}

TEST_F(DataLocatorWithLedger, whatNoLongerExistsIsDropped) {
  scene::link("/Users/me/dangling", "/nowhere");
  install("i1");
  for (const auto& path :
       {std::string("/nowhere/x"), std::string("/Users/me/dangling"), std::string(), tracked})
    track("i1", path);
  EXPECT_EQ(locate(), (List{tracked, cache}));
}

TEST_F(DataLocatorWithLedger, aRelativePathIsNoneOfTheCurrentFolderButAbsolute) {
  install("i1");
  track("i1", "Documents/Foo Data");
  EXPECT_EQ(child::failures([] {
              std::filesystem::current_path("/Users/me");
              EXPECT_EQ(locate(), (List{tracked, cache}));
            }),
            "");
}

TEST_F(DataLocatorWithLedger, theNewestLiveInstallOfTheIdentifierCounts) {
  scene::makeFolder("/Users/me/old");
  scene::makeFolder("/Users/me/removed");
  install("old", "2025-01-01");
  install("new", "2026-01-01");
  install("removed", "2026-12-31", true);
  install("other", "2026-12-31", false, "Foo", "com.example.other");
  track("old", "/Users/me/old");
  track("new", tracked);
  track("removed", "/Users/me/removed");
  track("other", "/Users/me/removed");
  EXPECT_EQ(locate(), (List{tracked, cache}));
}

TEST_F(DataLocatorWithLedger, withoutAnIdentifierTheNameIsAskedFor) {
  install("i1", "2026-01-01", false, "Foo", "whatever");
  track("i1", tracked);
  EXPECT_EQ(locate(std::nullopt), (List{tracked}));
  EXPECT_EQ(locate(std::nullopt, "foo"), List{});
}

TEST_F(DataLocatorWithLedger, withAnIdentifierTheNameIsNotAskedFor) {
  install("i1", "2026-01-01", false, "Foo", "com.example.other");
  track("i1", tracked);
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, anApplicationItDoesNotKnowHasNoTrackedPaths) {
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, namesAreNeverTakenForSQL) {
  const std::string hostile = "x' OR '1'='1";
  install("i1");
  track("i1", tracked);
  EXPECT_EQ(locate(hostile), List{});
  EXPECT_EQ(locate(std::nullopt, hostile), List{});
  install("i2", "2026-01-01", false, hostile, "none");
  track("i2", tracked);
  EXPECT_EQ(locate(std::nullopt, hostile), (List{tracked}));
}

TEST_F(DataLocatorWithLedger, trackedPathsOfAnyCharactersAreFound) {
  const std::string odd = "/Users/me/odd \"'\t\n🚀 e\u0301";
  scene::makeFolder(odd);
  install("i1");
  track("i1", odd);
  EXPECT_EQ(locate(), (List{odd, cache}));
}

TEST(DataLocator, aLedgerThatIsNoDatabaseAddsNothing) {
  scene::makeFolder(cache);
  scene::write(scene::installsDB, std::string(4'096, 'x'));
  EXPECT_EQ(locate(), (List{cache}));
}

TEST(DataLocator, aLedgerThatIsAFolderAddsNothing) {
  scene::makeFolder(cache);
  scene::makeFolder(scene::installsDB);
  EXPECT_EQ(locate(), (List{cache}));
}

TEST(DataLocator, aLedgerWithOtherTablesAddsNothing) {
  scene::makeFolder(cache);
  scene::write(scene::installsDB, "");
  scene::sql("CREATE TABLE unrelated (x TEXT);");
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, aLedgerWithoutTheTableOfFilesAddsNothing) {
  install("i1");
  scene::sql("DROP TABLE tracked_files;");
  EXPECT_EQ(locate(), (List{cache}));
}

TEST_F(DataLocatorWithLedger, lookingLeavesTheLedgerAsItWas) {
  install("i1");
  track("i1", tracked);
  const auto before = scene::tree("/Users/me/.claude");
  locate();
  EXPECT_EQ(scene::tree("/Users/me/.claude"), before);
}

TEST(DataLocator, leavesOutWhatMayBeAnything) {
  scene::makeFolder(cache);
  Unresolving files(cache);
  EXPECT_TRUE(
      DataLocator::locate(replacing({.files = &files}), "com.example.foo", "Foo", Path(bundle), {}).empty());
}

}  // namespace
}  // namespace quarn
