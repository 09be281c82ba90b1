#include <gtest/gtest.h>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

const std::string composed = "\xC3\xA9";     // é as one character
const std::string decomposed = "e\xCC\x81";  // é as a letter and an accent

std::string ofLength(std::size_t bytes, const std::string& ending = "") {
  return std::string(bytes - ending.size(), 'n') + ending;
}

/// What a disk allows; the tool that makes rooms without rights takes a byte less.
std::size_t longestName() {
  return scene::hasMounts() ? 255 : 254;
}

/// Names that a bundle or a data folder may well have.
const std::vector<std::string> odd = {"My App",
                                      " leading and trailing ",
                                      "It's \"quoted\" `here` $HOME",
                                      "back\\slash",
                                      "tab\there",
                                      "line\nfeed",
                                      "carriage\rreturn",
                                      "-rf",
                                      "--yes",
                                      "*?[a]",
                                      "a:b;c&d|e>f",
                                      "🎛️ Mixer 👩‍👩‍👧",
                                      "Caf" + composed,
                                      "Caf" + decomposed,
                                      ofLength(longestName() - 4)};

TEST(OddNames, aBundleOfAnyNameMovesAndComesBack) {
  for (const std::string& name : odd) {
    SCOPED_TRACE(name);
    const std::string bundle = "/Applications/" + name + ".app";
    const std::string destination = apps + "/" + name + ".app";
    scene::makeApp(bundle, {}, 3000);
    const auto before = scene::tree(bundle);
    auto run = scene::quarn({"move", "one", bundle, "--yes"});
    run.out = timeless(run.out);
    const std::string bytes = sizeOf(destination);
    EXPECT_EQ(shown(run), printed(name + "  ->  X9   " + bytes + " (1 jobs)\n[1/1] " + name + " (" + bytes +
                                  ")\n    verifying\n    linking\n    ok in #.#s -> " + destination + "\n"));
    EXPECT_EQ(scene::target(bundle), destination);
    EXPECT_EQ(scene::tree(destination), before);
    EXPECT_EQ(shown(scene::quarn({"move", "back", bundle})), printed("moved back: " + bundle + "\n"));
    EXPECT_EQ(scene::tree(bundle), before);
    EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
    std::filesystem::remove_all(bundle);
  }
}

TEST(OddNames, aDataFolderOfAnyNameMovesAndComesBack) {
  std::vector<std::string> names = odd;
  names.push_back(ofLength(longestName()));
  for (const std::string& name : names) {
    // A property list would be broken by these as they are.
    if (name.find_first_of("&>\r") != std::string::npos) continue;
    SCOPED_TRACE(name);
    scene::makeApp(app, {.displayName = name}, 3000);
    const std::string data = scene::home + "/Library/Application Support/" + name;
    const std::string destination = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/" + name;
    scene::write(data + "/" + ofLength(longestName()), "content");
    const auto before = scene::tree(data);
    const auto run = moveOne();
    EXPECT_TRUE(run.out.ends_with("    ok in #.#s -> " + destination + "\n")) << run.out;
    EXPECT_EQ(scene::target(data), destination);
    EXPECT_EQ(scene::tree(destination), before);
    EXPECT_EQ(shown(scene::quarn({"move", "back", data})), printed("moved back: " + data + "\n"));
    EXPECT_EQ(scene::tree(data), before);
    std::filesystem::remove_all(data);
    std::filesystem::remove(app);
    std::filesystem::remove_all(apps);
  }
}

TEST(OddNames, itemsInsideOfAnyNameMove) {
  scene::makeApp(app, {}, 3000);
  for (const std::string& name : odd) {
    scene::write(app + "/Contents/" + name + "/" + ofLength(longestName()), name);
    scene::link(app + "/Contents/link to " + name.substr(0, 200), name);
  }
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::tree(moved), before);
}

TEST(OddNames, aLongNameThatTheTrashRefusesIsShortenedBesideItsPlace) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs names of 255 bytes, which is what they are shortened to";
  const std::string name = ofLength(longestName(), ".app");
  const std::string bundle = "/Applications/" + name;
  scene::makeApp(bundle, {}, 3000);
  scene::write("/Volumes/X9/.Trashes", "no folder");
  replaceDitto("mkdir -p \"$3\"; echo half >\"$3/part\"; exit 1");
  const auto before = scene::tree(bundle);
  const std::string out = scene::quarn({"move", "one", bundle, "--yes"}).out;
  EXPECT_NE(out.find("    FAIL: Copy failed: ditto failed: exit 1\n"), std::string::npos) << out;
  EXPECT_FALSE(scene::exists(apps + "/" + name));
  const auto stashed = names(apps + "/.QuarnTrash");
  ASSERT_EQ(stashed.size(), 1U);
  EXPECT_EQ(stashed[0].size(), 255U);
  EXPECT_TRUE(name.starts_with(stashed[0].substr(0, stashed[0].rfind('-'))));
  EXPECT_EQ(scene::read(apps + "/.QuarnTrash/" + stashed[0] + "/part"), "half\n");
  EXPECT_EQ(scene::tree(bundle), before);
}

TEST(OddNames, aLongNameInTheTrashTwiceIsShortened) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs names of 255 bytes, which is what they are shortened to";
  const std::string name = ofLength(longestName(), ".app");
  const std::string bundle = "/Applications/" + name;
  scene::makeApp(bundle, {}, 3000);
  replaceDitto("mkdir -p \"$3\"; echo half >\"$3/part\"; exit 1");
  for (int i = 0; i < 2; ++i) scene::quarn({"move", "one", bundle, "--yes"});
  EXPECT_EQ(names(scene::driveTrash()).size(), 2U);
  EXPECT_EQ(names(apps), std::vector<std::string>{});
}

TEST(OddNames, bothUnicodeFormsSelectTheSameApplication) {
  scene::makeApp("/Applications/Caf" + composed + ".app", {}, 3000);
  EXPECT_EQ(scene::quarn({"move", "one", "/Applications/Caf" + decomposed + ".app", "--yes"}).status, 0);
  EXPECT_EQ(scene::target("/Applications/Caf" + composed + ".app"), apps + "/Caf" + composed + ".app")
      << "under the name that the disk has";
}

TEST(OddNames, aDriveWithAnOddNameIsFound) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  for (const std::string name : {"My \"Drive\"", "tab\there", "🎛️", "back\\slash"}) {
    scene::plug(name, "1m");
    scene::makeApp(app, {}, 3000);
    EXPECT_EQ(scene::quarn({"move", "one", app, "--yes", "--target-drive", name}).status, 0);
    EXPECT_EQ(scene::target(app), "/Volumes/" + name + "/ExternalQuarn/Apps/Foo.app");
    std::filesystem::remove(app);
    scene::unplug(name);
  }
}

}  // namespace
