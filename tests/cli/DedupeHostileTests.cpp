#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "tests/cli/DedupeScenes.h"
#include "tests/cli/Faults.h"
#include "tests/platform/PropertyLists.h"

/// What strangers write into bundles, and the names that they give them.

using namespace dedupes;

namespace {

namespace fs = std::filesystem;

/// A launcher of so odd a name, beside a real application.
std::string makeOdd(const std::string& name) {
  const std::string bundle = "/Applications/" + name + ".app";
  scene::makeLauncher(bundle, app);
  return bundle;
}

const Lines oddNames = {"two words",   "It's \"quoted\" `here` $HOME",
                        "back\\slash", "tab\there",
                        "line\nfeed",  "carriage\rreturn",
                        "-rf",         "--yes",
                        "%s\x1B[2J",   "b\xFFroken",
                        "Caf\u00E9",   "Cafe\u0301"};

TEST(DedupeHostile, aLauncherOfAnyNameGoesWhole) {
  scene::makeApp(app);
  Lines names = oddNames;
  names.push_back(std::string(scene::longestName() - 4, 'n'));
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    fs::remove_all(trash);
    const std::string bundle = makeOdd(name);
    const auto whole = scene::tree(bundle), stays = scene::tree(app);
    const auto done = dedupe({"run", "--yes", "--format", "tsv"});
    EXPECT_EQ(done.status, 0);
    EXPECT_TRUE(done.out.ends_with("\ntrash\t" + bundle + "\ttrue\t" + trash + "/" + name + ".app\t\n"))
        << done.out;
    EXPECT_FALSE(scene::exists(bundle));
    EXPECT_EQ(scene::tree(trash + "/" + name + ".app"), whole);
    EXPECT_EQ(scene::tree(app), stays);
  }
}

TEST(DedupeHostile, bothUnicodeFormsOfANameAreTwoLaunchers) {
  scene::makeApp(app);
  const std::string composed = makeOdd("Caf\u00E9"), decomposed = makeOdd("Cafe\u0301");
  scene::makeApp("/Applications/E\u0301.app", {.identifier = "com.example.e"});
  scene::makeApp("/Applications/\u00C9.app", {.identifier = "com.example.e.externallauncher"});
  const auto done = dedupe({"run", "--yes"});
  EXPECT_EQ(done.status, 0);
  EXPECT_NE(done.out.find("run: trashed 3 item(s)\n"), std::string::npos) << done.out;
  EXPECT_FALSE(scene::exists(composed));
  EXPECT_FALSE(scene::exists(decomposed));
  EXPECT_TRUE(scene::exists("/Applications/E\u0301.app"));
  EXPECT_FALSE(scene::exists("/Applications/\u00C9.app"));
}

TEST(DedupeHostile, tomlIsEscapedAndLinesOfFieldsAreNot) {
  const std::string name = "a\\b\"c\nd\te";
  scene::makeApp("/Applications/" + name + ".app", {.identifier = "id\\\n\"", .displayName = "N\n\"\\"});
  scene::makeApp("/Applications/L.app", {.identifier = "id\\\n\".externallauncher"});
  scene::write("/Applications/L.app" + targetFile, "/no\nwhere\t\"x\"\\");
  const std::string size = bytes("/Applications/L.app");
  EXPECT_EQ(
      timeless(dedupe({"scan", "--format", "toml"})),
      said(2, "[summary]\nscannedAt = \"NOW\"\ngroups = 1\nremovableItems = 1\nremovableBytes = " + size +
                  "\n\n[[group]]\nbundleId = \"id\\\\\\n\\\"\"\ndisplayName = \"N\\n\\\"\\\\\"\n"
                  "keep = \"/Applications/a\\\\b\\\"c\\nd\te.app\"\nreason = \"" +
                  reason + "\"\nremove = [\"/Applications/L.app\"]\n"));
  EXPECT_EQ(
      timeless(dedupe({"scan", "--format", "tsv"})),
      said(2,
           "bundle_id\tdisplay_name\taction\tkind\tpath\ttarget\tsize_bytes\treason\nid\\\n\"\tN\n\"\\\t"
           "keep\trealApp\t/Applications/" +
               name + ".app\t\t" + bytes("/Applications/" + name + ".app") + "\t" + reason +
               "\nid\\\n\"\tN\n\"\\\tremove\tquarnLauncher\t/Applications/L.app\t/no\nwhere\t\"x\"\\\t" +
               size + "\t" + reason + "\n"));
  EXPECT_EQ(
      timeless(dedupe({"scan"})),
      said(2, "Duplicate launcher groups: 1\nRemovable: 1 item(s), " +
                  expected::sizeOf("/Applications/L.app") + "\n\n== N\n\"\\ ==\nkeep:   /Applications/" +
                  name + ".app\nremove: /Applications/L.app\n        target: /no\nwhere\t\"x\"\\\nreason: " +
                  reason + "\n"));
}

TEST(DedupeHostile, aTargetFileOfAStrangerNeverMakesAnythingElseGo) {
  scene::makeApp(app);
  scene::write("/Users/me/Documents/letter", "a letter");
  scene::makeLauncher(launcher, app);
  const auto before = scene::tree("/Applications"), home = scene::tree("/Users/me");
  for (const std::string target :
       {"/", "/Applications", "/Users/me", "/Volumes/X9", ".", "..", "/Applications/../Users/me/Documents",
        "/Applications/Foo.app/Contents", "/Applications//Foo.app", "/dev/null"}) {
    scene::write(launcher + targetFile, target);
    EXPECT_EQ(dedupe({"run", "--yes"}).out,
              "Duplicate launcher groups: 0\nRemovable: 0 item(s), Zero KB\nrun: trashed 0 item(s)\n")
        << target;
    EXPECT_TRUE(scene::exists(launcher));
  }
  for (const std::string& target :
       {std::string("/\n/"), std::string("/Users/me/Documents\n\n"), std::string("\xFF/Users/me"),
        std::string("~/Documents"), "/Users/me" + std::string(1, '\0') + "x", std::string(1'000'000, '/')}) {
    fs::remove_all(trash);
    scene::makeLauncher(launcher, "");
    scene::write(launcher + targetFile, target);
    dedupe({"run", "--yes"});
    EXPECT_EQ(scene::read("/Users/me/Documents/letter"), "a letter");
    EXPECT_TRUE(scene::exists(app));
    EXPECT_TRUE(scene::exists(launcher) || scene::exists(trash + "/Foo Launcher.app"));
  }
  fs::remove_all(trash);
  fs::remove_all(launcher);
  scene::makeLauncher(launcher, app);
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::tree("/Users/me"), home);
}

TEST(DedupeHostile, propertyListsOfEveryKindAreReadOrLeftAlone) {
  using quarn::lists::binary;
  using quarn::lists::object;
  using quarn::lists::reference;
  using quarn::lists::xml;
  const auto text = [](const std::string& value) {
    return object(0x5F, std::string("\x10") + static_cast<char>(value.size()) + value);
  };
  const std::string whole = xml("<dict><key>CFBundleIdentifier</key><string>com.example.foo</string></dict>");
  const std::string fine = binary({object(0xD1, reference(1) + reference(2)), text("CFBundleIdentifier"),
                                   text("com.example.foo.externallauncher")});
  scene::makeApp(app);
  const auto found = [](const std::string& list) {
    scene::write(launcher + "/Contents/Info.plist", list);
    return dedupe({"scan"}).status == 2;
  };
  EXPECT_TRUE(found(fine));
  scene::write(launcher + targetFile, "/nowhere");
  EXPECT_TRUE(found(whole));
  const std::map<std::string, std::string> bad = {
      {"truncated", whole.substr(0, whole.size() / 2)},
      {"truncated binary", fine.substr(0, fine.size() - 9)},
      {"an array", xml("<array><string>com.example.foo</string></array>")},
      {"a number", xml("<dict><key>CFBundleIdentifier</key><integer>7</integer></dict>")},
      {"an array for a text", xml("<dict><key>CFBundleIdentifier</key><array/></dict>")},
      {"empty", ""},
      {"no list", "com.example.foo"}};
  for (const auto& [what, list] : bad) EXPECT_FALSE(found(list)) << what;
  EXPECT_TRUE(scene::exists(launcher));
  EXPECT_TRUE(
      found(xml("<dict><key>CFBundleIdentifier</key><string>com.example.foo</string>"
                "<key>CFBundleDisplayName</key><integer>1</integer>"
                "<key>CFBundleExecutable</key><array/></dict>")));
}

TEST(DedupeHostile, aNameIsShownThatIsAsLongAsAText) {
  scene::makeApp(app, {.displayName = std::string(1'000'000, 'n')});
  scene::makeLauncher(launcher, app);
  const auto shown = dedupe({"scan"});
  EXPECT_EQ(shown.status, 2);
  EXPECT_NE(shown.out.find("\n== " + std::string(1'000'000, 'n') + " ==\n"), std::string::npos);
}

}  // namespace
