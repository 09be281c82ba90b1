#include <gtest/gtest.h>

#include "tests/cli/ScaffoldScenes.h"

/// What the generated script builds with each preset: really where the tool is there on Linux, and with a
/// stand-in that writes down its words, and assembles a bundle, where it is not.

using namespace scaffolds;
using expected::shown;

namespace {

namespace fs = std::filesystem;

const std::string asked = "/Users/me/asked";

/// A bundle around an executable at build/kite.
const std::string assembling =
    "mkdir -p 'build/Paper Kite.app/Contents/MacOS' && "
    "cp build/kite 'build/Paper Kite.app/Contents/MacOS/kite' && "
    "cp Info.plist 'build/Paper Kite.app/Contents/'";

void makeSource() {
  scene::write(project + "/kite.c",
               "#include <stdio.h>\nint main(void) { return puts(\"it flies\") < 0; }\n");
  scene::write(project + "/Info.plist", "<key>CFBundleExecutable</key><string>kite</string>");
}

void makeCMakeProject() {
  makeSource();
  scene::write(project + "/CMakeLists.txt",
               "cmake_minimum_required(VERSION 3.16)\nproject(kite C)\nadd_executable(kite kite.c)\n"
               "set(contents \"${CMAKE_BINARY_DIR}/Paper Kite.app/Contents\")\n"
               "add_custom_command(TARGET kite POST_BUILD\n"
               "  COMMAND ${CMAKE_COMMAND} -E make_directory \"${contents}/MacOS\"\n"
               "  COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:kite> \"${contents}/MacOS/kite\"\n"
               "  COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/Info.plist \"${contents}/\"\n"
               "  VERBATIM)\n");
}

void makeMakeProject() {
  makeSource();
  scene::write(project + "/Makefile", "all: build/kite\n\t" + assembling +
                                          "\nbuild/kite: kite.c\n\tmkdir -p build && $(CC) -o $@ kite.c\n");
}

/// A tool that isn't there writes its words down, one run a line, and assembles a bundle.
void standIn(const std::string& at, const std::string& more = "") {
  makeScript(at,
             "#!/bin/sh\n"
             "{ printf '%s' \"${0##*/}\"; for word in \"$@\"; do printf ' <%s>' \"$word\"; done; echo; } >>" +
                 asked + "\n" + more +
                 "mkdir -p 'build/Paper Kite.app/Contents/MacOS'\n"
                 "printf '#!/bin/sh\\necho it flies\\n' >'build/Paper Kite.app/Contents/MacOS/kite'\n"
                 "chmod 755 'build/Paper Kite.app/Contents/MacOS/kite'\n");
}

/// The script for what lies in the folder, or for a preset, installs an application that works.
void expectItFlies(const Words& options = {}) {
  ASSERT_EQ(generate(options).status, 0);
  const auto run = build();
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(said(installed), "it flies\n");
  EXPECT_EQ(scene::tree(installed), scene::tree(built));
}

/// The script stops with these words before it has built anything.
void expectStop(const Words& options, const std::string& words) {
  ASSERT_EQ(generate(options).status, 0);
  EXPECT_EQ(shown(build()), shown({1, "==> compile\n", words + "\n"}));
  EXPECT_FALSE(scene::exists(asked));
  EXPECT_FALSE(scene::exists(project + "/build"));
  fs::remove(project + "/build.command");
}

std::string wasAsked() {
  return scene::read(asked);
}

TEST(ScaffoldBuild, runsCMake) {
  makeCMakeProject();
  expectItFlies();
  EXPECT_NE(scene::read(project + "/build/CMakeCache.txt").find("CMAKE_BUILD_TYPE:STRING=Release\n"),
            std::string::npos);
}

TEST(ScaffoldBuild, runsMake) {
  makeMakeProject();
  expectItFlies();
}

TEST(ScaffoldBuild, runsSwift) {
  standIn(tools + "/swift");
  scene::write(project + "/Package.swift", "");
  makeCMakeProject();
  expectItFlies();
  EXPECT_EQ(wasAsked(), "swift <build> <-c> <release> <--arch> <arm64>\n") << "and not CMake";
}

TEST(ScaffoldBuild, runsXcodebuildOnTheFirstProject) {
  standIn(tools + "/xcodebuild");
  scene::makeFolder(project + "/B.xcodeproj");
  scene::makeFolder(project + "/A Kite.xcodeproj");
  scene::link(project + "/0.xcodeproj", "nowhere");
  expectItFlies();
  EXPECT_EQ(wasAsked(),
            "xcodebuild <-project> <A Kite.xcodeproj> <-scheme> <Paper Kite> <-configuration> <Release> "
            "<-derivedDataPath> <" +
                project + "/build/DerivedData> <-arch> <arm64> <build>\n");
}

TEST(ScaffoldBuild, runsXcodebuildOnAWorkspaceRather) {
  standIn(tools + "/xcodebuild");
  for (const std::string name : {"A.xcodeproj", "Z.xcworkspace", "Y.xcworkspace"})
    scene::makeFolder(project + "/" + name);
  expectItFlies();
  EXPECT_EQ(wasAsked(),
            "xcodebuild <-workspace> <Y.xcworkspace> <-scheme> <Paper Kite> <-configuration> <Release> "
            "<-derivedDataPath> <" +
                project + "/build/DerivedData> <-arch> <arm64> <build>\n");
}

TEST(ScaffoldBuild, findsTheBundleWhereBinSrcIsPointedToInTheFunction) {
  standIn(tools + "/xcodebuild",
          "mkdir -p build/DerivedData/Build/Products/Release/Kite.app/Contents/MacOS\n"
          "printf '#!/bin/sh\\necho derived\\n' "
          ">build/DerivedData/Build/Products/Release/Kite.app/Contents/MacOS/kite\n"
          "chmod 755 build/DerivedData/Build/Products/Release/Kite.app/Contents/MacOS/kite\n");
  scene::makeFolder(project + "/A.xcodeproj");
  ASSERT_EQ(generate().status, 0);
  std::string text = scene::read(project + "/build.command");
  const std::string comment = "  #   BIN_SRC=\"$DERIVED/Build/Products/Release/<Name>.app\"\n";
  text.replace(text.find(comment), comment.size(),
               "  BIN_SRC=\"$DERIVED/Build/Products/Release/Kite.app\"\n");
  makeScript(project + "/build.command", text);
  EXPECT_EQ(build().status, 0);
  EXPECT_EQ(said(installed), "derived\n");
}

TEST(ScaffoldBuild, stopsWithoutAnXcodeProject) {
  scene::write(project + "/xcodeproj", "");
  scene::link(project + "/0.xcodeproj", "nowhere");
  expectStop({"--preset", "xcode"}, "no .xcworkspace or .xcodeproj");
}

TEST(ScaffoldBuild, runsCMakeForJUCEWithXcodeAsItsGenerator) {
  // Only a Mac's CMake has this generator.
  makeScript(tools + "/cmake",
             "#!/bin/sh\n{ printf 'cmake'; printf ' <%s>' \"$@\"; echo; } >>" + asked +
                 "\n[ \"$5\" = -G ] || exec /usr/bin/cmake \"$@\"\n"
                 "exec /usr/bin/cmake \"$1\" \"$2\" \"$3\" \"$4\" -G 'Unix Makefiles' \"$7\"\n");
  makeCMakeProject();
  scene::write(project + "/Kite.jucer", "");
  expectItFlies();
  EXPECT_EQ(wasAsked().substr(0, wasAsked().find("cmake <-E>")),
            "cmake <-S> <.> <-B> <build> <-G> <Xcode> <-DCMAKE_BUILD_TYPE=Release>\n"
            "cmake <--build> <build> <--config> <Release>\n");
}

TEST(ScaffoldBuild, resavesAJUCEProjectWithTheProjucerOfThePath) {
  standIn(tools + "/Projucer");
  standIn(tools + "/xcodebuild");
  standIn("/Applications/Projucer.app/Contents/MacOS/Projucer", "exit 9\n");
  scene::write(project + "/Z.jucer", "");
  scene::write(project + "/A Kite.jucer", "");
  expectItFlies();
  EXPECT_EQ(wasAsked(),
            "Projucer <--resave> <A Kite.jucer>\n"
            "xcodebuild <-project> <Builds/MacOSX/Paper Kite.xcodeproj> <-configuration> <Release> <-arch> "
            "<arm64> <build>\n");
}

TEST(ScaffoldBuild, resavesAJUCEProjectWithTheInstalledProjucer) {
  standIn(tools + "/xcodebuild");
  scene::write(project + "/Kite.jucer", "");
  ASSERT_EQ(generate().status, 0);
  const auto without = build();
  EXPECT_EQ(without.status, 127);
  EXPECT_NE(without.err.find("/Applications/Projucer.app/Contents/MacOS/Projucer: No such file"),
            std::string::npos)
      << without.err;
  EXPECT_FALSE(scene::exists(asked)) << "and Xcode isn't asked";
  standIn("/Applications/Projucer.app/Contents/MacOS/Projucer");
  expectItFlies({"--force"});
  EXPECT_TRUE(wasAsked().starts_with("Projucer <--resave> <Kite.jucer>\nxcodebuild <-project>"))
      << wasAsked();
}

TEST(ScaffoldBuild, stopsWithoutAJUCEProject) {
  scene::makeFolder(project);
  expectStop({"--preset", "juce"}, "JUCE preset: no CMakeLists.txt or .jucer found");
}

TEST(ScaffoldBuild, runsThePackageManagerWhoseLockIsThere) {
  for (const std::string tool : {"npm", "pnpm", "yarn"}) standIn(tools + "/" + tool);
  scene::write(project + "/package.json", "{}");
  expectItFlies();
  EXPECT_EQ(wasAsked(), "npm <ci>\nnpm <run> <build>\n");
  fs::remove(asked);
  scene::write(project + "/yarn.lock", "");
  expectItFlies({"--force"});
  EXPECT_EQ(wasAsked(), "yarn <install>\nyarn <build>\n");
  fs::remove(asked);
  scene::write(project + "/pnpm-lock.yaml", "");
  expectItFlies({"--force"});
  EXPECT_EQ(wasAsked(), "pnpm <install>\npnpm <run> <build>\n");
}

TEST(ScaffoldBuild, stopsAtTheFirstToolThatFails) {
  const Words presets = {"npm", "auto"};
  standIn(tools + "/npm", "exit 4\n");
  scene::write(project + "/package.json", "{}");
  for (const std::string& preset : presets) {
    fs::remove(asked);
    ASSERT_EQ(generate({"--force", "--preset", preset}).status, 0);
    EXPECT_EQ(shown(build()), shown({4, "==> compile\n", ""}));
    EXPECT_EQ(wasAsked(), "npm <ci>\n");
  }
}

const Words automatic = {"--preset", "auto"};

TEST(ScaffoldBuild, decidesWhenItRuns) {
  for (const std::string tool : {"npm", "make", "cmake", "swift"}) standIn(tools + "/" + tool);
  const std::pair<std::string, std::string> rows[] = {
      {"package.json", "npm <ci>\nnpm <run> <build>\n"},
      {"Makefile", "make\n"},
      {"CMakeLists.txt",
       "cmake <-S> <.> <-B> <build> <-DCMAKE_BUILD_TYPE=Release>\ncmake <--build> <build> <--config> "
       "<Release>\n"},
      {"Package.swift", "swift <build> <-c> <release> <--arch> <arm64>\n"},
  };
  scene::makeFolder(project);
  ASSERT_EQ(generate(automatic).status, 0);
  for (const auto& [name, words] : rows) {
    fs::remove(asked);
    scene::write(project + "/" + name, "JUC E");
    EXPECT_EQ(build().status, 0) << name;
    EXPECT_EQ(wasAsked(), words);
  }
  for (const std::string name : {"A.jucer", "A.xcodeproj"}) scene::makeFolder(project + "/" + name);
  fs::remove(asked);
  EXPECT_EQ(build().status, 0);
  EXPECT_EQ(wasAsked(), rows[3].second) << "Swift comes first of all";
}

TEST(ScaffoldBuild, decidesForRealTools) {
  makeMakeProject();
  expectItFlies(automatic);
  fs::remove_all(project + "/build");
  makeCMakeProject();
  expectItFlies({"--force", "--preset", "auto"});
  EXPECT_TRUE(scene::exists(project + "/build/CMakeCache.txt"));
}

TEST(ScaffoldBuild, decidesToStopForWhatNeedsAPresetOfItsOwn) {
  const std::string juce = "JUCE project detected — rerun: scaffold build-command --preset juce";
  const std::string xcode = "Xcode project detected — rerun: scaffold build-command --preset xcode";
  scene::makeFolder(project);
  expectStop(automatic, "No known build system. Edit compile() in build.command.");
  makeSource();
  makeMakeProject();
  scene::makeFolder(project + "/A.xcodeproj");
  expectStop(automatic, xcode);
  fs::remove(project + "/A.xcodeproj");
  scene::makeFolder(project + "/A.xcworkspace");
  makeCMakeProject();
  expectStop(automatic, xcode);
  scene::write(project + "/CMakeLists.txt", "juce_add_plugin(Kite)\n");
  expectStop(automatic, juce);
  fs::remove(project + "/CMakeLists.txt");
  scene::write(project + "/A.jucer", "");
  expectStop(automatic, juce);
}

}  // namespace
