#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "tests/support/Decorators.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

const std::string user = "/Users/me/Library/";

/// Everything asked for exists, so what comes back is the whole list before the last filter.
class EverythingExists : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  bool exists(const Path&) const override { return true; }
};

List texts(const std::vector<Path>& paths) {
  List list;
  for (const Path& path : paths) list.push_back(path.text());
  return list;
}

List candidates(const AppIdentity& identity) {
  Platform& host = hostPlatform();
  EverythingExists files(host.files);
  Platform platform = replacing({.files = &files});
  return texts(AssociatedDataPaths::locate(platform, identity));
}

List existing(const AppIdentity& identity) {
  return texts(AssociatedDataPaths::locate(hostPlatform(), identity));
}

AppIdentity foo(std::optional<std::string> identifier = "com.example.foo") {
  return {"/Applications/Foo App.app", "Foo App", std::move(identifier), "FooTool"};
}

List operator+(List list, const List& more) {
  list.insert(list.end(), more.begin(), more.end());
  return list;
}

const List underIdentifier = {user + "HTTPStorages/com.example.foo", user + "Caches/com.example.foo",
                              user + "WebKit/com.example.foo", user + "Preferences/com.example.foo.plist"};
const List underName = {user + "Application Support/Foo App", user + "Caches/Foo App", user + "Logs/Foo App",
                        user + "Saved Application State/Foo App.savedState"};
const List ofSystemUnderIdentifier = {
    "/Library/Application Support/com.example.foo", "/Library/Caches/com.example.foo",
    "/Library/Preferences/com.example.foo.plist", "/Library/Logs/com.example.foo"};
const List ofSystemUnderName = {"/Library/Application Support/Foo App", "/Library/Caches/Foo App",
                                "/Library/Logs/Foo App"};
const List underSlug = {
    "/Users/me/.footool",        "/Users/me/.footool.json",     "/Users/me/.footool.json.backup",
    "/Users/me/.footoolrc",      "/Users/me/.footool.log",      user + "Caches/footool-cli-nodejs",
    user + "Caches/footool-cli", user + "Caches/footool-nodejs"};

TEST(AssociatedDataPaths, stateEveryPlaceInAFixedOrder) {
  EXPECT_EQ(candidates(foo()),
            underIdentifier + underName + ofSystemUnderIdentifier + ofSystemUnderName + underSlug);
}

TEST(AssociatedDataPaths, withoutAnIdentifierHaveNoneUnderItButThoseUnderTheSlug) {
  EXPECT_EQ(candidates(foo(std::nullopt)), underName + ofSystemUnderName + underSlug);
}

TEST(AssociatedDataPaths, ofASupplementalInstallLeaveOutItsOwnFolder) {
  AppIdentity identity = foo();
  identity.bundlePath = "/Users/me/Library/Application Support/Foo App/Foo App.app";
  const List caches = {user + "Caches/Foo App", user + "Logs/Foo App",
                       user + "Saved Application State/Foo App.savedState"};
  EXPECT_EQ(candidates(identity), underIdentifier + caches + ofSystemUnderIdentifier + underSlug);
}

TEST(AssociatedDataPaths, aRealSupplementalInstallIsNotItsOwnData) {
  const std::string folder = user + "Application Support/Foo App";
  scene::makeApp(folder + "/Foo App.app");
  AppIdentity identity = foo();
  identity.bundlePath = folder + "/Foo App.app";
  EXPECT_EQ(existing(identity), List{});
  identity.bundlePath = "/Applications/Foo App.app";
  EXPECT_EQ(existing(identity), List{folder});
}

TEST(AssociatedDataPaths, curatedFoldersComeBeforeThoseUnderTheSlug) {
  const List all = candidates({"/Applications/L.app", "L", "com.Apple.LOGIC10", "l"});
  const List end(all.end() - 10, all.end());
  EXPECT_EQ(end, (List{"/Library/Application Support/Logic", "/Library/Application Support/GarageBand",
                       "/Users/me/.l", "/Users/me/.l.json", "/Users/me/.l.json.backup", "/Users/me/.lrc",
                       "/Users/me/.l.log", user + "Caches/l-cli-nodejs", user + "Caches/l-cli",
                       user + "Caches/l-nodejs"}));
}

TEST(AssociatedDataPaths, aCuratedFolderThatDoesNotExistIsDropped) {
  scene::makeFolder("/Library/Application Support/GarageBand");
  EXPECT_EQ(existing({"/Applications/L.app", "L", "com.apple.logic10", "l"}),
            (List{"/Library/Application Support/GarageBand"}));
}

TEST(AssociatedDataPaths, dotfilesOfAnotherToolOfTheSameNameAreLeftAlone) {
  scene::makeFolder("/Users/me/.claude");
  scene::makeFolder("/Users/me/Library/Caches/claude-cli-nodejs");
  scene::makeFolder("/Users/me/Library/Logs/Claude");
  for (const char* identifier : {"com.anthropic.claudefordesktop", "com.ANTHROPIC.ClaudeForDesktop",
                                 "com.example.url-handler", "com.example.URLHandler"}) {
    EXPECT_EQ(existing({"/Applications/Claude.app", "Claude", identifier, "Claude"}),
              (List{"/Users/me/Library/Logs/Claude"}))
        << identifier;
  }
  EXPECT_EQ(existing({"/Applications/Claude.app", "Claude", std::nullopt, "Claude"}),
            (List{"/Users/me/Library/Logs/Claude", "/Users/me/.claude",
                  "/Users/me/Library/Caches/claude-cli-nodejs"}));
}

TEST(AssociatedDataPaths, theSandboxContainerIsNoDataOfAMove) {
  scene::makeFolder("/Users/me/Library/Containers/com.example.foo");
  scene::makeFolder("/Users/me/Library/Group Containers/com.example.foo");
  EXPECT_EQ(existing(foo()), List{});
}

TEST(AssociatedDataPaths, aDanglingLinkIsNoData) {
  scene::link("/Users/me/Library/Caches/com.example.foo", "/Volumes/gone");
  scene::link("/Users/me/Library/Logs/Foo App", "/Users/me/Documents");
  EXPECT_EQ(existing(foo()), (List{"/Users/me/Library/Logs/Foo App"}));
}

TEST(AssociatedDataPaths, hostileNamesClaimNoWholeFolder) {
  scene::makeFolder("/Users/me/Library/Caches/other");
  for (const std::string hostile : {"", ".", "..", "../Caches", "/", "Caches/other", "x/../../.."}) {
    EXPECT_EQ(existing({"/Applications/Foo.app", hostile, hostile, hostile}), List{}) << hostile;
  }
}

TEST(AssociatedDataPaths, namesOfAnyCharactersAreFound) {
  for (const std::string name : {"tab\tfeed\n\"q\"", "e\u0301 \u00e9 🚀", "100% *?"}) {
    scene::makeFolder(user + "Logs/" + name);
    EXPECT_EQ(existing({"/Applications/x.app", name, std::nullopt, "none"}), List{user + "Logs/" + name});
  }
}

TEST(AssociatedDataPaths, aNameLongerThanTheDiskTakesExistsNowhere) {
  const std::string longName(400, 'n');
  EXPECT_EQ(existing({"/Applications/x.app", longName, longName, longName}), List{});
}

}  // namespace
}  // namespace quarn
