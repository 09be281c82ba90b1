#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>

#include "tests/support/FileSystemDecorator.h"
#include "tests/uninstall/Uninstalling.h"

namespace quarn {
namespace {

using namespace uninstalling;

std::vector<AppRecord> discovered() {
  return InstalledAppsScanner::discover(hostPlatform());
}

Texts discoveredPaths() {
  Texts paths;
  for (const AppRecord& record : discovered()) paths.push_back(record.bundlePath);
  return paths;
}

std::string nameOf(const std::string& bundle, const std::string& keys) {
  makeBundle(bundle, keys);
  return inspected(bundle)->displayName;
}

TEST(InstalledAppsScanner, describesABundleFromItsPropertyList) {
  makeBundle(foo, key("CFBundleIdentifier", "com.example.foo") + key("CFBundleName", "Foo") +
                      key("CFBundleShortVersionString", "1.2") + key("CFBundleExecutable", "FooTool") +
                      key("NSHumanReadableCopyright", "Copyright © 2026 Example"));
  const auto record = inspected();
  ASSERT_TRUE(record);
  AppRecord expected;
  expected.id = expected.bundlePath = foo;
  expected.displayName = "Foo";
  expected.bundleIdentifier = "com.example.foo";
  expected.version = "1.2";
  expected.executableName = "FooTool";
  expected.developer = "2026 Example";
  expected.modifiedAt = hostPlatform().files.attributes(Path(foo))->modified;
  EXPECT_EQ(*record, expected);
}

TEST(InstalledAppsScanner, namesABundleWithoutAPropertyListAfterItsFolder) {
  scene::makeFolder(foo + "/Contents");
  const auto record = inspected();
  ASSERT_TRUE(record);
  EXPECT_EQ(record->displayName, "Foo");
  EXPECT_EQ(record->bundleIdentifier, std::nullopt);
  EXPECT_EQ(record->version, std::nullopt);
  EXPECT_EQ(record->executableName, std::nullopt);
  EXPECT_EQ(record->developer, std::nullopt);
  EXPECT_EQ(record->kind, AppRecordKind::normal);
}

TEST(InstalledAppsScanner, takesAPropertyListThatIsNoDictionaryOrBrokenForNone) {
  for (const std::string& content :
       {std::string("<plist version=\"1.0\"><array><string>x</string></array></plist>"),
        std::string("<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.ex"),
        std::string("bplist00\x01\x02"), std::string(), std::string("\0\0", 2)}) {
    scene::write(foo + "/Contents/Info.plist", content);
    ASSERT_TRUE(inspected());
    EXPECT_EQ(inspected()->displayName, "Foo");
    EXPECT_EQ(inspected()->bundleIdentifier, std::nullopt);
  }
}

TEST(InstalledAppsScanner, describesAnApplicationThatCantBeReadByItsName) {
  scene::makeApp(foo);
  ::chmod(foo.c_str(), 0);
  const auto seen = scene::quarn({"uninstall", "apps"});
  EXPECT_EQ(seen.out, "app\tkind\tid\tname\tpath\napp\tnormal\t-\tFoo\t" + foo + "\n");
}

TEST(InstalledAppsScanner, readsABinaryPropertyList) {
  // {"CFBundleIdentifier": "com.b"}
  const std::string list =
      std::string("bplist00\xD1\x01\x02\x5F\x10\x12", 14) + "CFBundleIdentifier" + "\x55" + "com.b" +
      std::string("\x08\x0B\x20\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x26", 35);
  scene::write(foo + "/Contents/Info.plist", list);
  EXPECT_EQ(inspected()->bundleIdentifier, "com.b");
}

TEST(InstalledAppsScanner, takesAValueOfAnotherTypeForAbsent) {
  makeBundle(foo,
             "<key>CFBundleIdentifier</key><integer>7</integer><key>CFBundleName</key><array/>"
             "<key>CFBundleShortVersionString</key><real>1.5</real><key>CFBundleExecutable</key><true/>"
             "<key>CFBundleGetInfoString</key><dict/><key>NSHumanReadableCopyright</key><date>"
             "2026-01-01T00:00:00Z</date>");
  const auto record = inspected();
  EXPECT_EQ(record->bundleIdentifier, std::nullopt);
  EXPECT_EQ(record->version, std::nullopt);
  EXPECT_EQ(record->executableName, std::nullopt);
  EXPECT_EQ(record->developer, std::nullopt);
  EXPECT_EQ(record->displayName, "Foo");
}

TEST(InstalledAppsScanner, inspectsWhatIsThereAndDanglingLinksAndNothingElse) {
  EXPECT_EQ(inspected("/Applications/None.app"), std::nullopt);
  EXPECT_EQ(inspected("/Applications/None.app/Contents/None.app"), std::nullopt);
  scene::link("/Applications/Gone.app", "/Volumes/X9/Gone.app");
  const auto record = inspected("/Applications/Gone.app");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->kind, AppRecordKind::symlink);
  EXPECT_TRUE(record->isSymlink);
  EXPECT_EQ(record->symlinkTarget, "/Volumes/X9/Gone.app");
  EXPECT_EQ(record->externalTargetPath, "/Volumes/X9/Gone.app");
  EXPECT_EQ(record->displayName, "Gone");
  EXPECT_EQ(discoveredPaths(), Texts{"/Applications/Gone.app"});
}

TEST(InstalledAppsScanner, keepsTheTextOfALinkAsItIsStored) {
  scene::makeApp("/Applications/Bar.app");
  scene::link(foo, "../Applications/./Bar.app");
  EXPECT_EQ(inspected()->symlinkTarget, "../Applications/./Bar.app");
  EXPECT_EQ(inspected()->bundleIdentifier, "com.example.foo") << "what a link leads to is read";
}

TEST(InstalledAppsScanner, prefersTheFolderNameUnlessTheOtherSaysMore) {
  struct Row {
    std::string folder, displayName, name, expected;
  };
  const Row rows[] = {
      {"Visual Studio Code", "Code", "", "Visual Studio Code"},
      {"Foo", "Foo Bar", "", "Foo Bar"},
      {"FOO", "Foo", "", "FOO"},
      {"Foo", "", "Foo Long Name", "Foo Long Name"},
      {"Foo", "", "", "Foo"},
      {"Foo", "  Foo Bar\n", "", "Foo Bar"},
      {"Abc", "Xyz", "", "Abc"},
      {"Foo", "   ", "", "Foo"},
      // Counted as people count: four characters against five, although the bytes are more.
      {"Ä̈ö̈ü̈ß", "abcde", "", "abcde"},
      {"éééé", "abcd", "", "éééé"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(nameOf("/Applications/" + row.folder + ".app",
                     key("CFBundleDisplayName", row.displayName) + key("CFBundleName", row.name)),
              row.expected);
  }
}

TEST(InstalledAppsScanner, trimsTheFolderNameOnlyBesideAnotherName) {
  EXPECT_EQ(nameOf("/Applications/ Foo .app", ""), " Foo ");
  EXPECT_EQ(nameOf("/Applications/ Bar .app", key("CFBundleName", "bar")), "Bar");
}

TEST(InstalledAppsScanner, tellsTheKindsByTheFirstRuleThatHolds) {
  const auto kindOf = [](const std::string& path) { return inspected(path)->kind; };
  const std::string receipt = "/Contents/_MASReceipt/receipt";
  scene::makeApp(foo);
  EXPECT_EQ(kindOf(foo), AppRecordKind::normal);
  scene::write(foo + receipt, "x");
  EXPECT_EQ(kindOf(foo), AppRecordKind::macAppStore);
  EXPECT_TRUE(inspected()->isMacAppStore);
  scene::makeApp("/Users/me/Applications/Own.app");
  scene::write("/Users/me/Applications/Own.app" + receipt, "x");
  EXPECT_EQ(kindOf("/Users/me/Applications/Own.app"), AppRecordKind::userApplications);
  EXPECT_TRUE(inspected("/Users/me/Applications/Own.app")->isMacAppStore);
  scene::makeApp(copyOfFoo);
  EXPECT_EQ(kindOf(copyOfFoo), AppRecordKind::externalTarget);
  scene::makeApp("/Users/me/Applications/ExternalQuarn/X.app");
  EXPECT_EQ(kindOf("/Users/me/Applications/ExternalQuarn/X.app"), AppRecordKind::externalTarget);
  scene::makeLauncher("/Applications/Launcher.app", copyOfFoo);
  EXPECT_EQ(kindOf("/Applications/Launcher.app"), AppRecordKind::quarnLauncher);
  scene::link("/Applications/Link.app", "/Applications/Launcher.app");
  EXPECT_EQ(kindOf("/Applications/Link.app"), AppRecordKind::symlink);
  scene::makeLauncher("/System/Applications/Launcher.app", copyOfFoo);
  EXPECT_EQ(kindOf("/System/Applications/Launcher.app"), AppRecordKind::systemRisky);
  EXPECT_FALSE(inspected("/System/Applications/Launcher.app")->isQuarnLauncher);
}

TEST(InstalledAppsScanner, tellsALauncherByEachOfItsThreeMarks) {
  makeBundle("/Applications/A.app", key("CFBundleIdentifier", "com.a.externallauncher"));
  makeBundle("/Applications/B.app", key("CFBundleExecutable", "ExternalAppLauncher"));
  scene::write("/Applications/C.app/Contents/Resources/ExternalAppTarget.txt", "\n /x/C.app \n");
  for (const char* name : {"A", "B", "C"})
    EXPECT_TRUE(inspected("/Applications/" + std::string(name) + ".app")->isQuarnLauncher) << name;
  EXPECT_EQ(inspected("/Applications/A.app")->externalTargetPath, std::nullopt);
  EXPECT_EQ(inspected("/Applications/C.app")->externalTargetPath, "/x/C.app") << "gone, and still told";
}

TEST(InstalledAppsScanner, tellsWhatElseABundleHolds) {
  scene::makeApp(foo);
  scene::makeFolder(foo + "/Contents/Library/LoginItems");
  scene::makeFolder(foo + "/Contents/Library/SystemExtensions");
  EXPECT_EQ(inspected()->permissionCount(), 0) << "empty folders";
  scene::write(foo + "/Contents/Library/Extensions/x", "x");
  EXPECT_TRUE(inspected()->hasSystemExtension);
  EXPECT_FALSE(inspected()->hasLoginItems);
  scene::write(foo + "/Contents/Library/LoginItems/x", "x");
  scene::write(foo + "/Contents/_MASReceipt/receipt", "x");
  EXPECT_EQ(inspected()->permissionCount(), 3);
}

TEST(InstalledAppsScanner, namesAnApplicationInASupportFolderByItsSlug) {
  const std::string bundle = library + "/Application Support/Vendor/Updater/Tool.app";
  makeBundle(bundle, key("CFBundleExecutable", "ToolBinary") + key("CFBundleName", "Long Name of a Tool"));
  EXPECT_EQ(inspected(bundle)->displayName, "toolbinary");
  EXPECT_EQ(Slug::supplementalDisplayName(*inspected(bundle)), "toolbinary");
  EXPECT_EQ(discoveredPaths(), Texts{bundle});
  scene::makeApp(library + "/Application Support/Deep/1/2/3/4/5/Far.app");
  EXPECT_EQ(discoveredPaths(), Texts{bundle});
}

TEST(InstalledAppsScanner, keepsTheRealCopyOfAnApplicationAndALink) {
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  EXPECT_EQ(discoveredPaths(), Texts{copyOfFoo});
}

TEST(InstalledAppsScanner, keepsTheTargetOfALauncherWithItsIdentifier) {
  scene::makeApp(copyOfFoo);
  scene::makeApp(foo);
  scene::write(foo + "/Contents/Resources/ExternalAppTarget.txt", copyOfFoo);
  EXPECT_EQ(discoveredPaths(), Texts{copyOfFoo});
}

TEST(InstalledAppsScanner, keepsALauncherWithAnIdentifierOfItsOwnBesideItsTarget) {
  scene::makeApp(copyOfFoo);
  scene::makeLauncher(foo, copyOfFoo);
  EXPECT_EQ(discoveredPaths(), (Texts{copyOfFoo, foo}));
}

TEST(InstalledAppsScanner, addsNothingForALinkOrLauncherThatLeadsToNoApplication) {
  scene::makeLauncher("/Applications/A.app", "/");
  scene::makeLauncher("/Applications/B.app", "/Users/me");
  scene::makeLauncher("/Applications/C.app", "/Volumes/None/C.app");
  scene::link("/Applications/D.app", "/Users/me");
  Texts paths = discoveredPaths();
  std::sort(paths.begin(), paths.end());
  EXPECT_EQ(paths, (Texts{"/Applications/A.app", "/Applications/D.app"}))
      << "the three launchers have one identifier";
}

TEST(InstalledAppsScanner, followsARelativeLinkFromItsFolder) {
  makeBundle("/Applications/Vendor/Real.noapp/Real.app", key("CFBundleIdentifier", "com.real"));
  scene::makeApp("/elsewhere/Copy.app", {.identifier = "com.copy"});
  scene::link("/Applications/Copy.app", "../elsewhere/Copy.app");
  EXPECT_EQ(discoveredPaths(), (Texts{"/elsewhere/Copy.app", "/Applications/Vendor/Real.noapp/Real.app"}));
}

TEST(InstalledAppsScanner, mergesNoRecordsWithoutAnIdentifier) {
  makeBundle("/Applications/A.app", "");
  makeBundle("/Applications/B.app", key("CFBundleIdentifier", ""));
  makeBundle("/Users/me/Applications/A.app", "");
  makeBundle("/Users/me/Applications/B.app", key("CFBundleIdentifier", ""));
  EXPECT_EQ(discovered().size(), 4u);
}

TEST(InstalledAppsScanner, prefersTheSharedFolderAndAMatchingNameAndARecentDate) {
  const auto winnerOf = [](const std::string& a, const std::string& b) {
    const Texts paths = discoveredPaths();
    EXPECT_EQ(paths.size(), 1u) << a << " " << b;
    return paths.front();
  };
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp("/Users/me/Applications/Foo.app");
  EXPECT_EQ(winnerOf("shared", "own"), "/Applications/Foo.app");
  std::filesystem::remove_all("/Applications/Foo.app");
  scene::makeApp("/Users/me/Applications/Bar.app", {.displayName = "Barbarella"});
  EXPECT_EQ(winnerOf("Bar", "Foo"), "/Users/me/Applications/Foo.app") << "its name is that of its folder";
  std::filesystem::remove_all("/Users/me/Applications/Bar.app");
  scene::makeApp("/Users/me/Applications/Aaa.app");
  const timespec old[] = {{1, 0}, {1, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, "/Users/me/Applications/Aaa.app", old, 0), 0);
  EXPECT_EQ(winnerOf("Aaa", "Foo"), "/Users/me/Applications/Foo.app") << "it is used";
}

TEST(InstalledAppsScanner, prefersTheSharedFolderToACopyElsewhere) {
  scene::makeApp("/Aaa/Foo.app");
  scene::link("/Applications/Link.app", "/Aaa/Foo.app");
  scene::makeApp("/Applications/Foo.app");
  EXPECT_EQ(discoveredPaths(), Texts{"/Applications/Foo.app"});
}

TEST(InstalledAppsScanner, takesTheFirstPathWhereNothingElseDecides) {
  scene::makeApp("/Applications/B.app");
  scene::makeApp("/Applications/A.app");
  EXPECT_EQ(discoveredPaths(), Texts{"/Applications/A.app"});
}

TEST(InstalledAppsScanner, sortsByNameAsPeopleExpect) {
  for (const char* name : {"beta", "Alpha", "Émile", "zeta", "Delta"})
    makeBundle("/Applications/" + std::string(name) + ".app",
               key("CFBundleIdentifier", "com." + std::string(name)));
  Texts names;
  for (const AppRecord& record : discovered()) names.push_back(record.displayName);
  EXPECT_EQ(names, (Texts{"Alpha", "beta", "Delta", "Émile", "zeta"}));
}

TEST(InstalledAppsScanner, looksTwoFoldersDeepAndNotInsideBundles) {
  makeBundle("/Applications/1/2/A.app", key("CFBundleIdentifier", "a"));
  makeBundle("/Applications/1/2/3/B.app", key("CFBundleIdentifier", "b"));
  makeBundle("/Applications/1/2/A.app/Contents/C.app", key("CFBundleIdentifier", "c"));
  makeBundle("/Applications/Utilities/1/2/D.app", key("CFBundleIdentifier", "d"));
  makeBundle("/System/Applications/E.app", key("CFBundleIdentifier", "e"));
  EXPECT_EQ(discoveredPaths(), (Texts{"/Applications/1/2/A.app", "/Applications/Utilities/1/2/D.app",
                                      "/System/Applications/E.app"}));
}

TEST(InstalledAppsScanner, looksAtEachBundleOnceAlsoWhereRootsOverlap) {
  class Counting : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    Result<std::string> read(const Path& file) const override {
      ++reads;
      return FileSystemDecorator::read(file);
    }
    mutable int reads = 0;
  };
  scene::makeApp("/Applications/Utilities/Foo.app");
  Counting files(hostPlatform().files);
  const Platform platform = replacing({.files = &files});
  InstalledAppsScanner::discover(platform);
  EXPECT_EQ(files.reads, 1);
}

TEST(AppRecord, offersSizesAndCopies) {
  AppRecord record;
  record.bundlePath = foo;
  EXPECT_EQ(record.displaySizeBytes(), 0);
  EXPECT_EQ(record.withBundleSize(5).displaySizeBytes(), 5);
  EXPECT_EQ(record.withBundleSize(5).withFootprint(9).displaySizeBytes(), 9);
  EXPECT_EQ(record.withDisplayName("Bar").displayName, "Bar");
  EXPECT_EQ(record.withDisplayName("Bar").bundlePath, foo);
  EXPECT_EQ(record.displaySizeBytes(), 0) << "the record itself stays";
}

}  // namespace
}  // namespace quarn
