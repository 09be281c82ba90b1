#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string header = "name\tbundle_id\trisk\tapp_size\tdata_size\ttotal\tpath\n";

std::string line(const std::string& name, const std::string& identifier, const std::string& risk,
                 const std::string& bundle, std::int64_t data = 0) {
  const std::int64_t own = allocated(bundle);
  return name + "\t" + identifier + "\t" + risk + "\t" + size(own) + "\t" + size(data) + "\t" +
         size(own + data) + "\t" + bundle + "\n";
}

TEST(MoveApps, withoutApplicationsTheHeaderStandsAlone) {
  EXPECT_EQ(shown(quarn({"move", "apps"})), printed(header));
}

TEST(MoveApps, theLargestComesFirstAndEqualsAreInTheOrderOfTheirNames) {
  scene::makeApp("/Applications/beta.app", {.identifier = "com.b"}, 20'000);
  scene::makeApp("/Applications/Alpha.app", {.identifier = "com.a"}, 20'000);
  scene::makeApp("/Applications/Sub/Folder/Deep.app", {.identifier = ""}, 90'000);
  scene::makeApp("/Applications/Gamma.app", {.identifier = "com.g"}, 20'000);
  EXPECT_EQ(shown(quarn({"move", "apps"})),
            printed(header + line("Deep", "", "low", "/Applications/Sub/Folder/Deep.app") +
                    line("Alpha", "com.a", "low", "/Applications/Alpha.app") +
                    line("beta", "com.b", "low", "/Applications/beta.app") +
                    line("Gamma", "com.g", "low", "/Applications/Gamma.app")));
}

TEST(MoveApps, theSizeOfTheDataIsShownAndDecidesTheOrderToo) {
  scene::makeApp("/Applications/Big.app", {.identifier = "com.big"}, 90'000);
  scene::makeApp("/Applications/Small.app", {.identifier = "com.small"}, 10'000);
  const std::string data = scene::home + "/Library/Application Support/Small";
  scene::writeBytes(data + "/library.db", 500'000);
  EXPECT_EQ(shown(quarn({"move", "apps"})),
            printed(header + line("Small", "com.small", "low", "/Applications/Small.app", allocated(data)) +
                    line("Big", "com.big", "low", "/Applications/Big.app")));
}

TEST(MoveApps, riskyAndLinkedApplicationsShowWithAllOnly) {
  scene::makeApp("/Applications/A Plain.app", {.identifier = "com.plain"}, 10'000);
  scene::makeApp("/Applications/B Store.app", {.identifier = "com.store"}, 20'000);
  scene::write("/Applications/B Store.app/Contents/_MASReceipt/receipt", "receipt");
  scene::makeApp("/Applications/C Login.app", {.identifier = "com.login"}, 30'000);
  scene::write("/Applications/C Login.app/Contents/Library/LoginItems/.hidden", "x");
  scene::makeApp("/Applications/D System.app", {.identifier = "com.system"}, 40'000);
  scene::write("/Applications/D System.app/Contents/Library/SystemExtensions/x", "x");
  scene::makeApp("/Applications/E Kernel.app", {.identifier = "com.kernel"}, 50'000);
  scene::write("/Applications/E Kernel.app/Contents/Library/Extensions/x", "x");
  scene::makeApp("/Volumes/X9/Elsewhere.app", {.identifier = "com.linked"}, 60'000);
  scene::link("/Applications/F Linked.app", "/Volumes/X9/Elsewhere.app");
  scene::makeLauncher("/Applications/G Launcher.app", "/Volumes/X9/Elsewhere.app");
  scene::makeLauncher("/Applications/H Dead.app", "/Volumes/X9/Gone.app");

  const std::string plain = line("A Plain", "com.plain", "low", "/Applications/A Plain.app");
  EXPECT_EQ(shown(quarn({"move", "apps"})), printed(header + plain));
  const std::int64_t linked = allocated("/Volumes/X9/Elsewhere.app");
  EXPECT_EQ(shown(quarn({"move", "apps", "--all"})),
            printed(header + "F Linked\tcom.linked\tlow\t" + size(linked) + "\tZero KB\t" + size(linked) +
                    "\t/Applications/F Linked.app\n" +
                    line("E Kernel", "com.kernel", "high", "/Applications/E Kernel.app") +
                    line("D System", "com.system", "high", "/Applications/D System.app") +
                    line("C Login", "com.login", "medium", "/Applications/C Login.app") +
                    line("B Store", "com.store", "medium", "/Applications/B Store.app") +
                    // Equals: the launcher stands behind since its name does.
                    plain + line("G Launcher", "com.linked", "low", "/Applications/G Launcher.app")));
}

TEST(MoveApps, aTabOrLineFeedInANamePassesThrough) {
  const std::string bundle = "/Applications/Odd\tName\nHere.app";
  scene::makeApp(bundle);
  EXPECT_EQ(shown(quarn({"move", "apps"})),
            printed(header + line("Odd\tName\nHere", "com.example.foo", "low", bundle)));
}

TEST(MoveApps, nothingIsChanged) {
  scene::makeApp("/Applications/Foo.app");
  const auto before = scene::tree("/Applications");
  const auto homeBefore = scene::tree(scene::home);
  quarn({"move", "apps", "--all"});
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::tree(scene::home), homeBefore);
}

}  // namespace
