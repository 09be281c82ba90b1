#include <filesystem>
#include <functional>
#include <sys/stat.h>

#include "QuarnCore/discovery/AppScanner.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

const std::string foo = "/Applications/Foo.app";

std::optional<AppEntry> entry(const std::string& bundle = foo) {
  return AppScanner::metadataEntry(hostPlatform(), Path(bundle));
}

List discovered(const std::function<std::string(const AppEntry&)>& field) {
  List list;
  for (const AppEntry& found : AppScanner::discoverMetadata(hostPlatform())) list.push_back(field(found));
  return list;
}

List discoveredNames() {
  return discovered([](const AppEntry& found) { return found.name; });
}

List discoveredPaths() {
  return discovered([](const AppEntry& found) { return found.bundlePath.text(); });
}

std::int64_t blocks(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_blocks * 512;
}

bool isLinked(const std::string& path) {
  return AppScanner::isSymbolicLinkOrInsideOne(hostPlatform(), Path(path));
}

TEST(AppScanner, scansTheStandardRootsWithoutTheSystems) {
  EXPECT_EQ(AppScanner::scanRoots(hostPlatform()),
            (std::vector<Path>{Path("/Applications"), Path("/Users/me/Applications")}));
}

TEST(AppScanner, describesABundleFromItsPropertyList) {
  scene::makeApp(foo, {.identifier = "com.example.foo",
                       .displayName = "Foo Shown",
                       .name = "Foo Name",
                       .version = "4.5.6",
                       .executable = "FooTool"});
  scene::makeFolder("/Users/me/Library/Caches/com.example.foo");
  scene::makeFolder("/Users/me/Library/Logs/Foo Shown");
  scene::makeFolder("/Users/me/.footool");
  AppEntry expected;
  expected.id = "com.example.foo";
  expected.name = "Foo Shown";
  expected.bundlePath = Path(foo);
  expected.bundleIdentifier = "com.example.foo";
  expected.version = "4.5.6";
  expected.dataPaths = {Path("/Users/me/Library/Caches/com.example.foo"),
                        Path("/Users/me/Library/Logs/Foo Shown"), Path("/Users/me/.footool")};
  EXPECT_EQ(entry(), expected);
}

TEST(AppScanner, anEmptyDisplayNameFallsThroughToTheBundleName) {
  scene::write(foo + "/Contents/Info.plist",
               "<plist version=\"1.0\"><dict><key>CFBundleDisplayName</key><string></string>"
               "<key>CFBundleName</key><string>Real Name</string></dict></plist>");
  EXPECT_EQ(entry()->name, "Real Name");
}

TEST(AppScanner, namesThatAreEmptyOrNoTextFallThroughToTheFileName) {
  scene::write("/Applications/Some App 1.2.app/Contents/Info.plist",
               "<plist version=\"1.0\"><dict><key>CFBundleDisplayName</key><integer>5</integer>"
               "<key>CFBundleName</key><string></string></dict></plist>");
  EXPECT_EQ(entry("/Applications/Some App 1.2.app")->name, "Some App 1.2");
}

TEST(AppScanner, aBundleWithoutAReadablePropertyListIsNamedAfterItsFile) {
  scene::write(foo + "/Contents/Info.plist", "broken <");
  scene::makeFolder("/Applications/Bare.app");
  for (const auto& bundle : {foo, std::string("/Applications/Bare.app")}) {
    const auto found = entry(bundle);
    ASSERT_TRUE(found) << bundle;
    EXPECT_EQ(found->id, bundle);
    EXPECT_EQ(found->name, Path(bundle).nameWithoutExtension());
    EXPECT_EQ(found->bundleIdentifier, std::nullopt);
    EXPECT_EQ(found->version, std::nullopt);
  }
}

TEST(AppScanner, theBuildVersionIsNotTheVersionOfAnEntry) {
  scene::write(foo + "/Contents/Info.plist",
               "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>9</string></dict></plist>");
  EXPECT_EQ(entry()->version, std::nullopt);
}

TEST(AppScanner, theFlagsOfABundleAreTold) {
  scene::makeApp(foo);
  scene::write(foo + "/Contents/_MASReceipt/receipt", "r");
  EXPECT_TRUE(entry()->isMacAppStore);
  scene::makeFolder(foo + "/Contents/Library/LoginItems/x");
  EXPECT_TRUE(entry()->hasLoginItems);
  EXPECT_FALSE(entry()->hasSystemExtension);
  scene::makeFolder(foo + "/Contents/Library/Extensions/x");
  EXPECT_TRUE(entry()->hasSystemExtension);
}

TEST(AppScanner, aLinkIsToldWithNameAndFlagsReadThroughIt) {
  const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
  scene::makeApp(moved, {.displayName = "Moved One", .version = "7"});
  scene::write(moved + "/Contents/_MASReceipt/receipt", "r");
  scene::makeFolder(moved + "/Contents/Library/LoginItems/x");
  scene::link(foo, moved);
  const auto found = entry();
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->isAlreadySymlinked);
  EXPECT_EQ(found->bundlePath, Path(foo));
  EXPECT_EQ(found->name, "Moved One");
  EXPECT_EQ(found->version, "7");
  EXPECT_TRUE(found->isMacAppStore);
  EXPECT_TRUE(found->hasLoginItems);
}

TEST(AppScanner, aDanglingLinkIsAnEntryNamedAfterTheLink) {
  scene::link(foo, "/Volumes/gone/Foo.app");
  const auto found = entry();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "Foo");
  EXPECT_TRUE(found->isAlreadySymlinked);
}

TEST(AppScanner, onlyWhatLiesBelowTheSharedFolderIsSeenAsLinked) {
  scene::makeApp("/Volumes/X9/Real.app");
  scene::link("/Applications/Link.app", "/Volumes/X9/Real.app");
  scene::link("/Users/me/Applications/Link.app", "/Volumes/X9/Real.app");
  scene::makeFolder("/Volumes/X9/Suite/Inner.app");
  scene::link("/Applications/Suite", "/Volumes/X9/Suite");
  scene::makeApp("/Applications/Plain.app");
  EXPECT_TRUE(isLinked("/Applications/Link.app"));
  EXPECT_TRUE(isLinked("/Applications/Link.app/Contents/MacOS"));
  EXPECT_TRUE(isLinked("/Applications/Suite/Inner.app"));
  EXPECT_TRUE(isLinked("/Applications/./Sub/../Link.app"));
  // "Below" is a matter of the text, so a neighbour whose name begins alike is seen too.
  scene::link("/Applications 2/Link.app", "/Volumes/X9/Real.app");
  EXPECT_TRUE(isLinked("/Applications 2/Link.app"));
  EXPECT_FALSE(isLinked("/Applications/Plain.app"));
  EXPECT_FALSE(isLinked("/Users/me/Applications/Link.app"));
  EXPECT_FALSE(isLinked("/Applications/Missing.app"));
  EXPECT_FALSE(isLinked("/"));
}

TEST(AppScanner, theSharedFolderItselfBeingALinkMakesAllBelowItLinked) {
  std::filesystem::remove_all("/Applications");
  scene::makeApp("/Volumes/X9/Applications/Foo.app");
  scene::link("/Applications", "/Volumes/X9/Applications");
  EXPECT_TRUE(isLinked(foo));
  EXPECT_EQ(discoveredPaths(), (List{foo}));
}

TEST(AppScanner, discoversBundlesDownToTheSecondFolderAndNeverInsideOne) {
  scene::makeApp("/Applications/Some Folder/Sub/Found.app", {.displayName = "Found"});
  scene::makeApp("/Applications/Some Folder/Sub/Deeper/Not Found.app", {.displayName = "Not Found"});
  scene::makeApp("/Applications/Outer.app", {.displayName = "Outer"});
  scene::makeApp("/Applications/Outer.app/Inner.app", {.displayName = "Inner"});
  EXPECT_EQ(discoveredNames(), (List{"Found", "Outer"}));
}

TEST(AppScanner, theSystemsApplicationsAreNotDiscovered) {
  scene::makeApp("/System/Applications/Mail.app", {.displayName = "Mail"});
  EXPECT_EQ(discoveredNames(), List{});
}

TEST(AppScanner, theSameApplicationInBothRootsIsTwoEntries) {
  scene::makeApp(foo, {.displayName = "Foo"});
  scene::makeApp("/Users/me/Applications/Foo.app", {.displayName = "Foo"});
  EXPECT_EQ(discoveredPaths(), (List{foo, "/Users/me/Applications/Foo.app"}));
}

TEST(AppScanner, sortsByNameAsAPersonWouldWhateverTheFilesAreCalled) {
  const List names = {"_x", "1x", "App 10", "App 2", "apple", "eclair", "Éclair", "eclairs", "Zoo"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    scene::makeApp("/Applications/" + std::to_string(names.size() - i) + ".app", {.displayName = names[i]});
  }
  EXPECT_EQ(discoveredNames(), names);
}

TEST(AppScanner, namesThatCompareEqualKeepTheOrderOfTheirPaths) {
  scene::makeApp("/Applications/3.app", {.displayName = "same"});
  scene::makeApp("/Applications/1.app", {.displayName = "Same"});
  scene::makeApp("/Users/me/Applications/0.app", {.displayName = "SAME"});
  scene::makeApp("/Applications/2.app", {.displayName = "sAME"});
  EXPECT_EQ(discoveredPaths(), (List{"/Applications/1.app", "/Applications/2.app", "/Applications/3.app",
                                     "/Users/me/Applications/0.app"}));
}

TEST(AppScanner, discoveringTakesNoSizes) {
  scene::makeApp(foo);
  scene::write("/Users/me/Library/Caches/com.example.foo/x", std::string(9'000, 'x'));
  const auto found = AppScanner::discoverMetadata(hostPlatform());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].totalSize(), 0);
  EXPECT_TRUE(found[0].dataPathSizes.empty());
  EXPECT_EQ(found[0].dataPaths.size(), 1U);
}

/// Notes which folders are listed.
class NotingLists : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override {
    listed.push_back(folder.text());
    return FileSystemDecorator::list(folder, hidden);
  }
  mutable List listed;
};

TEST(AppScanner, lookingForDataListsNoFolder) {
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('i', 'Foo', 'com.example.foo0');");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '/Users/me/Documents/Foo');");
  scene::makeFolder("/Users/me/Documents/Foo");
  for (int number = 0; number < 10; ++number) {
    const std::string identifier = "com.example.foo" + std::to_string(number);
    scene::makeApp("/Applications/Foo " + std::to_string(number) + ".app", {.identifier = identifier});
    scene::makeFolder("/Users/me/Library/Caches/" + identifier);
  }
  NotingLists files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  std::size_t dataPaths = 0;
  for (const AppEntry& found : AppScanner::discoverMetadata(platform)) dataPaths += found.dataPaths.size();
  EXPECT_EQ(dataPaths, 11U);
  EXPECT_EQ(files.listed, (List{"/Applications", "/Applications/Utilities", "/Users/me/Applications"}))
      << "only where applications are looked for";
}

TEST(AppScanner, sizesAreThoseOfTheBundleAndOfEachDataPath) {
  scene::makeApp(foo, {}, 70'000);
  const std::string cache = "/Users/me/Library/Caches/com.example.foo";
  const std::string preferences = "/Users/me/Library/Preferences/com.example.foo.plist";
  scene::write(cache + "/x", std::string(9'000, 'x'));
  scene::write(preferences, std::string(3'000, 'x'));
  const AppEntry before = *entry();
  const AppEntry sized = AppScanner::computeSizes(hostPlatform(), before);
  const auto bundle = blocks(foo + "/Contents/Info.plist") + blocks(foo + "/Contents/MacOS/Foo") +
                      blocks(foo + "/Contents/Resources/data.bin");
  AppEntry expected = before;
  expected.appSize = bundle;
  expected.dataPathSizes = {{Path(cache), blocks(cache + "/x")}, {Path(preferences), blocks(preferences)}};
  expected.dataSize = blocks(cache + "/x") + blocks(preferences);
  EXPECT_EQ(sized, expected);
  EXPECT_GT(sized.appSize, 0);
}

TEST(AppScanner, sizesOfLinksAreThoseOfTheirTargetsUnderTheNameOfTheLink) {
  const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
  scene::write(moved + "/Contents/a", std::string(30'000, 'x'));
  scene::link(foo, moved);
  scene::write("/Volumes/X9/data/x", std::string(9'000, 'x'));
  scene::link("/Users/me/Library/Caches/Foo", "/Volumes/X9/data");
  const AppEntry sized = AppScanner::computeSizes(hostPlatform(), *entry());
  EXPECT_EQ(sized.appSize, blocks(moved + "/Contents/a"));
  EXPECT_EQ(
      sized.dataPathSizes,
      (std::vector<DataPathSize>{{Path("/Users/me/Library/Caches/Foo"), blocks("/Volumes/X9/data/x")}}));
}

TEST(AppScanner, whatIsGoneByTheTimeOfMeasuringIsZero) {
  AppEntry gone;
  gone.bundlePath = Path("/Applications/Gone.app");
  gone.dataPaths = {Path("/Users/me/gone")};
  const AppEntry sized = AppScanner::computeSizes(hostPlatform(), gone);
  EXPECT_EQ(sized.totalSize(), 0);
  EXPECT_EQ(sized.dataPathSizes, (std::vector<DataPathSize>{{Path("/Users/me/gone"), 0}}));
}

TEST(AppScanner, measuringAgainReplacesTheOlderFigures) {
  scene::makeApp(foo);
  scene::write("/Users/me/Library/Caches/com.example.foo/x", std::string(9'000, 'x'));
  const AppEntry once = AppScanner::computeSizes(hostPlatform(), *entry());
  EXPECT_EQ(AppScanner::computeSizes(hostPlatform(), once), once);
}

}  // namespace
}  // namespace quarn
