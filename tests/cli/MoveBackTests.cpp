#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

void makeMoved(const std::string& link = app, const std::string& target = moved) {
  scene::makeApp(target);
  scene::link(link, target);
}

TEST(MoveBack, theBundleComesHomeAndNothingStaysOnTheDrive) {
  makeMoved();
  const auto before = scene::tree(moved);
  EXPECT_EQ(shown(quarn({"move", "back", app})), printed("moved back: " + app + "\n"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(moved));
}

TEST(MoveBack, aBareNameMeansTheSharedApplicationsFolder) {
  for (const std::string name : {"Foo", "Foo.app"}) {
    makeMoved();
    EXPECT_EQ(shown(quarn({"move", "back", name})), printed("moved back: " + app + "\n"));
    EXPECT_FALSE(scene::isLink(app));
    std::filesystem::remove_all(app);
  }
}

TEST(MoveBack, aTildeMeansTheHome) {
  makeMoved(scene::home + "/Applications/Foo.app");
  EXPECT_EQ(shown(quarn({"move", "back", "~/Applications/Foo.app"})),
            printed("moved back: /Users/me/Applications/Foo.app\n"));
}

TEST(MoveBack, aMissingItemIsNamedByWhereItWasLookedFor) {
  scene::link("/Applications/Dangling.app", "/Volumes/X9/gone");
  const std::pair<std::string, std::string> rows[] = {
      {"Foo", "/Applications/Foo.app"},
      {"foo.APP", "/Applications/foo.APP.app"},
      {"Sub/Foo", "/Applications/Sub/Foo.app"},
      {"~/Applications/Foo.app", "/Users/me/Applications/Foo.app"},
      {"/tmp/none", "/tmp/none"},
      {"Dangling", "/Applications/Dangling.app"},
      {"", "/Applications/.app"},
  };
  for (const auto& [word, path] : rows) {
    EXPECT_EQ(shown(quarn({"move", "back", word})), failed("No such item: " + path));
  }
  EXPECT_EQ(scene::target("/Applications/Dangling.app"), "/Volumes/X9/gone");
}

TEST(MoveBack, aRealBundleIsAlreadyLocal) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  EXPECT_EQ(shown(quarn({"move", "back", "Foo"})),
            failed("Not a symlink: " + app + " — already local, nothing to move back."));
  EXPECT_EQ(scene::tree(app), before);
}

TEST(MoveBack, aLauncherIsNoLink) {
  scene::makeApp(moved);
  scene::makeLauncher(app, moved);
  const auto before = scene::tree(app);
  EXPECT_EQ(shown(quarn({"move", "back", "Foo"})),
            failed("Not a symlink: " + app + " — already local, nothing to move back."));
  EXPECT_EQ(scene::tree(app), before);
}

TEST(MoveBack, withoutANameTheUsageIsTold) {
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"move", "back"}, {"move", "back", "--yes"}}) {
    EXPECT_EQ(shown(quarn(command)), failed("Usage: move back <app-name|symlink-path>\n"
                                            "  e.g. move back 'Little Snitch.app'\n"
                                            "       move back /Applications/Capo.app"));
  }
}

TEST(MoveBack, missingRightsGiveTheSudoAdviceWithTheWordsAsTyped) {
  const std::string name = "My \"odd\" $app";
  makeMoved("/Applications/" + name + ".app", moved);
  std::filesystem::permissions("/Applications", std::filesystem::perms(0555));
  EXPECT_EQ(shown(quarn({"move", "back", name})),
            failed("Permission denied moving back " + name +
                   ".app.\nRe-run under sudo:\n  sudo \"/usr/local/libexec/quarn\" move "
                   "back \"" +
                   name + "\""));
  EXPECT_EQ(scene::target("/Applications/" + name + ".app"), moved);
}

TEST(MoveBack, theAdviceNamesTheProgramAsItWasStarted) {
  makeMoved();
  std::filesystem::permissions("/Applications", std::filesystem::perms(0555));
  EXPECT_EQ(shown(scene::run({"/usr/local/libexec/../libexec/quarn", "move", "back", app})),
            failed("Permission denied moving back Foo.app.\nRe-run under sudo:\n"
                   "  sudo \"/usr/local/libexec/../libexec/quarn\" move back \"" +
                   app + "\""));
}

TEST(MoveBack, whatALinkLeadsToIsNotMissingIfItCannotBeLookedAt) {
  const std::string closed = "/Volumes/X9/closed";
  scene::makeApp(closed + "/Foo.app");
  scene::link(app, closed + "/Foo.app");
  std::filesystem::permissions(closed, std::filesystem::perms(0));
  EXPECT_EQ(
      shown(quarn({"move", "back", app})),
      failed("“Foo.app” can’t be looked at: The file “Foo.app” couldn’t be opened because you don’t have "
             "permission to view it."));
  EXPECT_EQ(scene::target(app), closed + "/Foo.app");
  std::filesystem::permissions(closed, std::filesystem::perms(0755));
}

TEST(MoveBack, aDataFolderComesHomeByItsPath) {
  const std::string data = scene::home + "/Library/Application Support/Foo";
  scene::write("/Volumes/X9/ExternalQuarn/Data/Foo/a", "text");
  scene::link(data, "/Volumes/X9/ExternalQuarn/Data/Foo");
  EXPECT_EQ(quarn({"move", "back", data}).status, 0);
  EXPECT_FALSE(scene::isLink(data));
  EXPECT_EQ(scene::read(data + "/a"), "text");
}

TEST(MoveBack, aMoveAndTheWayBackLeaveTheSameBundle) {
  scene::makeApp(app);
  scene::link(app + "/Contents/Current", "MacOS");
  const auto before = scene::tree(app);
  quarn({"move", "one", app, "--yes"});
  ASSERT_TRUE(scene::isLink(app));
  EXPECT_EQ(quarn({"move", "back", "Foo"}).status, 0);
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
}

TEST(MoveRestore, theLinkIsReplacedByWhatItLedTo) {
  makeMoved();
  const auto before = scene::tree(moved);
  EXPECT_EQ(shown(quarn({"move", "restore", app})), printed("restored: " + app + "\n"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(moved));
}

TEST(MoveRestore, aLauncherIsReplacedByItsApplication) {
  scene::makeApp(moved);
  const auto before = scene::tree(moved);
  scene::makeLauncher(app, moved);
  EXPECT_EQ(shown(quarn({"move", "restore", app})), printed("restored: " + app + "\n"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(moved));
}

TEST(MoveRestore, aLauncherWhoseTargetVanishedIsNoLink) {
  scene::makeLauncher(app, moved);
  const auto before = scene::tree(app);
  EXPECT_EQ(shown(quarn({"move", "restore", app})), failed("The file “Foo.app” couldn’t be opened."));
  EXPECT_EQ(scene::tree(app), before);
}

TEST(MoveRestore, whatIsNoLinkGivesTheSystemsText) {
  scene::write("/tmp/plain.txt", "text");
  EXPECT_EQ(shown(quarn({"move", "restore", "/tmp/plain.txt"})),
            failed("The file “plain.txt” couldn’t be opened."));
  EXPECT_EQ(shown(quarn({"move", "restore", "/tmp/none"})),
            failed("The file “none” couldn’t be opened because there is no such file."));
  EXPECT_EQ(scene::read("/tmp/plain.txt"), "text");
}

TEST(MoveRestore, aDanglingLinkKeepsStanding) {
  scene::link(app, "/Volumes/X9/gone.app");
  EXPECT_EQ(shown(quarn({"move", "restore", app})), failed("Source path no longer exists."));
  EXPECT_EQ(scene::target(app), "/Volumes/X9/gone.app");
}

TEST(MoveRestore, aTildeIsExpandedAndARelativePathStartsWhereThePersonIs) {
  makeMoved(scene::home + "/Applications/Foo.app");
  EXPECT_EQ(shown(quarn({"move", "restore", "~/Applications/Foo.app"})),
            printed("restored: /Users/me/Applications/Foo.app\n"));
  makeMoved(scene::home + "/Applications/Bar.app", "/Volumes/X9/Bar.app");
  EXPECT_EQ(shown(quarn({"move", "restore", "Applications/Bar.app"})),
            printed("restored: /Users/me/Applications/Bar.app\n"));
}

TEST(MoveRestore, aRelativeTargetStartsWhereThePersonIs) {
  scene::makeApp("/Volumes/X9/Rel.app");
  scene::link(app, "Rel.app");
  EXPECT_EQ(shown(quarn({"move", "restore", app}, {.input = "", .folder = "/Volumes/X9"})),
            printed("restored: " + app + "\n"));
  EXPECT_FALSE(scene::isLink(app));
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
}

TEST(MoveRestore, withoutAPathTheUsageIsTold) {
  EXPECT_EQ(shown(quarn({"move", "restore"})), failed("Usage: move restore <symlink-path>"));
  EXPECT_EQ(shown(quarn({"move", "restore", "--yes"})), failed("Usage: move restore <symlink-path>"));
}

}  // namespace
