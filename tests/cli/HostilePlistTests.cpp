#include <gtest/gtest.h>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

const std::vector<std::string> hostile = {".",
                                          "..",
                                          "/",
                                          "../..",
                                          "../../Documents",
                                          "../../../Users/me/Documents",
                                          "/Users/me/Documents",
                                          "x/../../Documents",
                                          "../Caches",
                                          "Sub/Folder",
                                          "./",
                                          "../",
                                          "/../Documents",
                                          "./../Documents"};

/// Folders that a hostile name could lead to, each with something in it.
void makeForeignFolders() {
  for (const std::string folder :
       {"Documents", "Library/Caches", "Library/Logs", "Library/Preferences", "Library/HTTPStorages",
        "Library/WebKit", "Library/Application Support", "Library/Saved Application State",
        "Library/Application Support/Sub/Folder", "Library/Caches/Sub/Folder"}) {
    scene::write(scene::home + "/" + folder + "/precious", "mine");
  }
  scene::write("/Library/Application Support/precious", "everybody's");
  scene::write("/Library/Caches/precious", "everybody's");
}

/// The text of a bundle's property list with the three names as they are, empty ones too.
void makeHostile(const std::string& name, const std::string& identifier, const std::string& executable) {
  std::filesystem::remove_all(app);
  scene::makeApp(app, {}, 3000);
  scene::write(app + "/Contents/Info.plist",
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
               "<key>CFBundleName</key><string>" +
                   name + "</string>\n<key>CFBundleIdentifier</key><string>" + identifier +
                   "</string>\n<key>CFBundleExecutable</key><string>" + executable +
                   "</string>\n</dict>\n</plist>\n");
}

void expectOnlyTheBundleIsAJob() {
  const std::string out = scene::quarn({"move", "plan"}).out;
  EXPECT_NE(out.find("# apps eligible: 1   jobs: 1   total: "), std::string::npos) << out;
  EXPECT_TRUE(out.ends_with("\t" + app + "\t->\t" + moved + "\n")) << out;
}

TEST(HostilePlist, aNameNeverMakesAForeignFolderAJob) {
  makeForeignFolders();
  for (const std::string& name : hostile) {
    SCOPED_TRACE(name);
    makeHostile(name, "com.example.foo", "Foo");
    expectOnlyTheBundleIsAJob();
  }
}

TEST(HostilePlist, anIdentifierNeverMakesAForeignFolderAJob) {
  makeForeignFolders();
  std::vector<std::string> identifiers = hostile;
  identifiers.emplace_back();
  for (const std::string& identifier : identifiers) {
    SCOPED_TRACE(identifier);
    makeHostile("Foo", identifier, "Foo");
    expectOnlyTheBundleIsAJob();
  }
}

TEST(HostilePlist, anExecutableNeverMakesAForeignFolderAJob) {
  makeForeignFolders();
  std::vector<std::string> executables = hostile;
  executables.emplace_back();
  for (const std::string& executable : executables) {
    SCOPED_TRACE(executable);
    makeHostile("Foo", "com.example.foo", executable);
    expectOnlyTheBundleIsAJob();
  }
}

TEST(HostilePlist, movingOneWithAllOfThemTouchesNothingElse) {
  makeForeignFolders();
  const auto others = foreign();
  for (const std::string& name : hostile) {
    SCOPED_TRACE(name);
    makeHostile(name, name, name);
    EXPECT_EQ(scene::quarn({"move", "all", "--yes", "--no-snapshot"}).status, 0);
    EXPECT_EQ(scene::target(app), moved);
    EXPECT_EQ(foreign(), others);
    EXPECT_EQ(names("/Volumes/X9/ExternalQuarn"), std::vector<std::string>{"Apps"});
    std::filesystem::remove(app);
    std::filesystem::remove_all(moved);
  }
}

TEST(HostilePlist, valuesThatAreNoTextCountAsAbsent) {
  scene::makeApp(app, {}, 3000);
  scene::write(app + "/Contents/Info.plist",
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
               "<key>CFBundleName</key><array><string>..</string></array>"
               "<key>CFBundleIdentifier</key><integer>1</integer>"
               "<key>CFBundleExecutable</key><true/></dict></plist>");
  expectOnlyTheBundleIsAJob();
}

TEST(HostilePlist, aBrokenListLeavesAnApplicationNamedAfterItsFile) {
  for (const std::string content : {"", "garbage", "<plist><dict>", "bplist00", "\xFF\xFE\xFD"}) {
    scene::makeApp(app, {}, 3000);
    scene::write(app + "/Contents/Info.plist", content);
    const std::string bytes = sizeOf(app);
    EXPECT_EQ(shown(moveOne()), succeeded(bytes)) << content;
    std::filesystem::remove(app);
    std::filesystem::remove_all(moved);
  }
}

TEST(HostilePlist, aLauncherThatLeadsIntoItselfIsNotRemoved) {
  scene::makeLauncher(app, app + "/Contents/MacOS");
  const auto before = scene::tree(app);
  EXPECT_EQ(scene::quarn({"move", "restore", app}).status, 1);
  EXPECT_EQ(scene::tree(app), before);
}

}  // namespace
