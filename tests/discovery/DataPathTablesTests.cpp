#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "QuarnCore/discovery/LibraryDataPaths.h"
#include "QuarnCore/discovery/SlugDataPaths.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

const Path home("/Users/me");

List texts(const std::vector<Path>& paths) {
  List list;
  for (const Path& path : paths) list.push_back(path.text());
  return list;
}

bool eligible(std::optional<std::string> identifier) {
  return SlugDataEligibility::includesDotfileAndNodeCaches(
      {"/Applications/Foo.app", "Foo", std::move(identifier), "foo"});
}

TEST(LibraryDataPaths, underTheIdentifier) {
  EXPECT_EQ(texts(LibraryDataPaths::byBundleId(home, "com.example.Foo")),
            (List{"/Users/me/Library/HTTPStorages/com.example.Foo",
                  "/Users/me/Library/Caches/com.example.Foo", "/Users/me/Library/WebKit/com.example.Foo",
                  "/Users/me/Library/Preferences/com.example.Foo.plist"}));
}

TEST(LibraryDataPaths, underTheDisplayName) {
  EXPECT_EQ(texts(LibraryDataPaths::byDisplayName(home, "Foo Bar 2.0")),
            (List{"/Users/me/Library/Application Support/Foo Bar 2.0", "/Users/me/Library/Caches/Foo Bar 2.0",
                  "/Users/me/Library/Logs/Foo Bar 2.0",
                  "/Users/me/Library/Saved Application State/Foo Bar 2.0.savedState"}));
}

TEST(LibraryDataPaths, ofTheSystemUnderTheIdentifier) {
  EXPECT_EQ(texts(LibraryDataPaths::systemByBundleId("com.example.Foo")),
            (List{"/Library/Application Support/com.example.Foo", "/Library/Caches/com.example.Foo",
                  "/Library/Preferences/com.example.Foo.plist", "/Library/Logs/com.example.Foo"}));
}

TEST(LibraryDataPaths, ofTheSystemUnderTheDisplayName) {
  EXPECT_EQ(
      texts(LibraryDataPaths::systemByDisplayName("Foo Bar")),
      (List{"/Library/Application Support/Foo Bar", "/Library/Caches/Foo Bar", "/Library/Logs/Foo Bar"}));
}

TEST(LibraryDataPaths, ofASupplementalInstall) {
  EXPECT_EQ(texts(LibraryDataPaths::supplemental(home, "Foo")),
            (List{"/Users/me/Library/Caches/Foo", "/Users/me/Library/Logs/Foo",
                  "/Users/me/Library/Saved Application State/Foo.savedState"}));
}

TEST(LibraryDataPaths, withoutAnIdentifierThereAreNoneUnderIt) {
  EXPECT_TRUE(LibraryDataPaths::byBundleId(home, std::nullopt).empty());
  EXPECT_TRUE(LibraryDataPaths::systemByBundleId(std::nullopt).empty());
}

TEST(LibraryDataPaths, theSandboxContainerIsNeverAmongThem) {
  std::vector<Path> all = LibraryDataPaths::byBundleId(home, "com.example.foo");
  for (const auto& more : {LibraryDataPaths::byDisplayName(home, "com.example.foo"),
                           LibraryDataPaths::systemByBundleId("com.example.foo"),
                           LibraryDataPaths::systemByDisplayName("com.example.foo")}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  ASSERT_EQ(all.size(), 15U);
  for (const Path& path : all) EXPECT_EQ(path.text().find("Containers"), std::string::npos) << path.text();
}

TEST(LibraryDataPaths, aNameThatIsNoSingleItemNamesNoWholeLibraryFolder) {
  for (const std::string hostile : {"", ".", "..", "../..", "a/b", "/", "x/../.."}) {
    for (const auto& paths :
         {LibraryDataPaths::byBundleId(home, hostile), LibraryDataPaths::byDisplayName(home, hostile),
          LibraryDataPaths::systemByBundleId(hostile), LibraryDataPaths::systemByDisplayName(hostile),
          LibraryDataPaths::supplemental(home, hostile)}) {
      for (const Path& path : paths) {
        EXPECT_EQ(path.simplified(), path) << hostile;
        const std::string folder = path.parent().lastComponent();
        for (const char* whole : {"Library", "me", "Users", ""}) EXPECT_NE(folder, whole) << path.text();
        EXPECT_NE(path.lastComponent(), "Caches") << hostile;
      }
    }
  }
}

TEST(LibraryDataPaths, unusualButHonestNamesStayAsTheyAre) {
  for (const std::string name : {"..foo", "a\nb", "tab\there", "\"q\" 'q'", "🚀", "e\u0301", "*", "-rf"}) {
    EXPECT_EQ(LibraryDataPaths::systemByDisplayName(name)[1].text(), "/Library/Caches/" + name);
  }
}

TEST(DotfileEntries, areTheNamesOfACommandLineTool) {
  EXPECT_EQ(DotfileEntries::relativeNames("foo bar"),
            (List{".foo bar", ".foo bar.json", ".foo bar.json.backup", ".foo barrc", ".foo bar.log"}));
  EXPECT_EQ(texts(DotfileEntries::urls(home, "foo")),
            (List{"/Users/me/.foo", "/Users/me/.foo.json", "/Users/me/.foo.json.backup", "/Users/me/.foorc",
                  "/Users/me/.foo.log"}));
}

TEST(NodeCliCacheEntries, areCacheFoldersOfTheUser) {
  EXPECT_EQ(NodeCliCacheEntries::folderNames("foo"), (List{"foo-cli-nodejs", "foo-cli", "foo-nodejs"}));
  EXPECT_EQ(texts(NodeCliCacheEntries::urls(home, "foo")),
            (List{"/Users/me/Library/Caches/foo-cli-nodejs", "/Users/me/Library/Caches/foo-cli",
                  "/Users/me/Library/Caches/foo-nodejs"}));
}

TEST(SlugDataPaths, areTheDotfilesAndThenTheCaches) {
  EXPECT_EQ(texts(SlugDataPaths::all(home, "foo")),
            (List{"/Users/me/.foo", "/Users/me/.foo.json", "/Users/me/.foo.json.backup", "/Users/me/.foorc",
                  "/Users/me/.foo.log", "/Users/me/Library/Caches/foo-cli-nodejs",
                  "/Users/me/Library/Caches/foo-cli", "/Users/me/Library/Caches/foo-nodejs"}));
}

TEST(SlugDataEligibility, anApplicationWithoutAnIdentifierIsAlwaysEligible) {
  EXPECT_TRUE(eligible(std::nullopt));
}

TEST(SlugDataEligibility, anOrdinaryApplicationIsEligible) {
  EXPECT_TRUE(eligible("com.example.foo"));
  EXPECT_TRUE(eligible("com.apple.logic10"));
  EXPECT_TRUE(eligible(""));
}

TEST(SlugDataEligibility, thoseWhoseToolHasTheSameNameAreNotInAnyLetterCase) {
  EXPECT_FALSE(eligible("com.anthropic.claudefordesktop"));
  EXPECT_FALSE(eligible("com.Anthropic.ClaudeForDesktop"));
  EXPECT_FALSE(eligible("com.anthropic.claude-code-url-handler"));
}

TEST(SlugDataEligibility, handlersOfLinksAreNotInAnySpelling) {
  EXPECT_FALSE(eligible("com.example.url-handler"));
  EXPECT_FALSE(eligible("com.example.url-handler.helper"));
  EXPECT_FALSE(eligible("com.example.FooURLHandler"));
  EXPECT_FALSE(eligible("COM.EXAMPLE.URL-HANDLER"));
  EXPECT_TRUE(eligible("com.example.url.handler"));
}

TEST(CuratedDomains, everyKnownIdentifierHasItsRow) {
  const std::string support = "/Library/Application Support/";
  const std::vector<std::pair<std::string, OwnedPaths>> rows = {
      {"com.anthropic.claudefordesktop", {true, {}}},
      {"com.anthropic.claude-code-url-handler", {true, {}}},
      {"com.apple.logic10", {false, {support + "Logic", support + "GarageBand"}}},
      {"com.apple.finalcut", {false, {support + "ProApps"}}},
      {"com.adobe.photoshop", {false, {support + "Adobe"}}},
      {"com.arobas-music.guitarpro8", {false, {support + "Arobas Music"}}},
      {"com.image-line.flstudio", {false, {support + "Image-Line"}}},
      {"com.steinberg.spectralayers12", {false, {support + "Steinberg"}}},
  };
  for (const auto& [identifier, owned] : rows)
    EXPECT_EQ(CuratedDomains::entry(identifier), owned) << identifier;
}

TEST(CuratedDomains, letterCaseDoesNotMatter) {
  EXPECT_TRUE(CuratedDomains::entry("COM.Apple.Logic10"));
}

TEST(CuratedDomains, whatIsNotKnownHasNoRow) {
  EXPECT_EQ(CuratedDomains::entry(std::nullopt), std::nullopt);
  for (const char* unknown : {"", "com.apple.logic", "com.apple.logic10.helper", "com.example.foo"}) {
    EXPECT_EQ(CuratedDomains::entry(unknown), std::nullopt) << unknown;
  }
}

TEST(ExistingPaths, keepsWhatExistsInItsOrderWithLinksFollowed) {
  scene::write("/Users/me/z", "");
  scene::makeFolder("/Users/me/a");
  scene::link("/Users/me/live", "/Users/me/a");
  scene::link("/Users/me/dangling", "/nowhere");
  std::vector<Path> asked;
  for (const char* name : {"z", "none", "live", "dangling", "a", "z"}) asked.push_back(home.appending(name));
  EXPECT_EQ(texts(ExistingPaths::filter(hostPlatform(), asked)),
            (List{"/Users/me/z", "/Users/me/live", "/Users/me/a", "/Users/me/z"}));
  EXPECT_TRUE(ExistingPaths::filter(hostPlatform(), {}).empty());
}

}  // namespace
}  // namespace quarn
