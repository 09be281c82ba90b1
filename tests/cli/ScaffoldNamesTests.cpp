#include <gtest/gtest.h>

#include "tests/cli/ScaffoldScenes.h"

/// Whatever a folder, a bundle or a drive is called, it comes out of the generated script as itself, and
/// nothing in its name is run.

using namespace scaffolds;

namespace {

namespace fs = std::filesystem;

const std::string nfc = "Caf\xc3\xa9", nfd = "Cafe\xcc\x81";

const Words names = {
    "Paper Kite",
    " leading and trailing ",
    "it's",
    "say \"hi\"",
    "$(ran)",
    "`ran`",
    "$HOME ${PATH} $1 $$",
    "back\\slash\\",
    "\\\"; ran; \"",
    "one\nran\nthree",
    "ends in line feeds\n\n",
    "\n",
    "tab\tand\rreturn",
    "!bang !! !$",
    "* ? [a] {b,c} ~",
    "-n",
    "--no-install",
    "# no comment",
    "a;b&c|d<e>f(g)",
    "}\necho \"==> compile\"",
    "%s%d",
    ".hidden",
    "..",
    nfc,
    nfd,
    std::string(230, 'x'),
};

/// From now on whatever runs the command `ran`, which stands in some of the names, leaves a mark.
void layTrap() {
  makeScript("/usr/local/bin/ran", "#!/bin/sh\ntouch /tmp/mark\n");
}

void expectTrapUntouched() {
  EXPECT_FALSE(scene::exists("/tmp/mark")) << "something in a name was run";
  EXPECT_EQ(scene::shell("ran").status, 0);
  EXPECT_TRUE(scene::exists("/tmp/mark")) << "the trap is of no use";
  fs::remove("/tmp/mark");
}

/// The name of a folder can't be that of its parent.
bool isFolderName(const std::string& name) {
  return name != "..";
}

void forget() {
  for (const std::string folder : {"/Applications", "/Volumes/X9", "/Users/me"}) {
    for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item.path());
  }
}

/// Builds and installs in both ways, twice each, and looks where everything is.
void expectInstalled(const std::string& folder, const std::string& name, const Words& environment) {
  SCOPED_TRACE(name);
  stopTheClock();
  layTrap();
  const std::string app = "/Applications/" + name + ".app", copy = apps + "/" + name + ".app";
  const std::string first = stash + "/" + name + ".app-" + moment;
  const auto expectDone = [&](const Words& options) {
    const auto run = build(options, folder, environment);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(run.out.ends_with("==> Done.\nLaunch: open \"" + app + "\"\n")) << run.out;
  };
  expectDone({});
  const auto made = scene::tree(app);
  EXPECT_EQ(said(app), "version 1\n");
  scene::write(folder + "/version", "2");
  expectDone({drive});
  EXPECT_EQ(scene::tree(first), made);
  EXPECT_EQ(scene::target(app), copy);
  EXPECT_EQ(said(app), "version 2\n");
  expectDone({drive});
  EXPECT_EQ(scene::tree(first + "-2"), scene::tree(copy));
  EXPECT_EQ(scene::target(first + "-3"), copy);
  expectTrapUntouched();
  EXPECT_EQ(scene::tree("/Applications").size(), 2u);
}

TEST(ScaffoldNames, ofFoldersComeOutAsThemselves) {
  layTrap();
  for (const std::string& name : names) {
    if (!isFolderName(name)) continue;
    forget();
    const std::string folder = "/Users/me/" + name;
    makeProject(folder);
    const auto run = generate({}, folder);
    EXPECT_EQ(expected::shown(run), wrote(folder + "/build.command", name, "build/" + name + ".app", "make"));
    expectInstalled(folder, name, {});
  }
}

TEST(ScaffoldNames, ofOptionsComeOutAsThemselves) {
  layTrap();
  // As far as a newer bash can behave like the one of a Mac.
  const Words environment = {"BASH_COMPAT=3.2"};
  for (const std::string& name : names) {
    forget();
    const std::string folder = "/Users/me/" + (isFolderName(name) ? name : "x"),
                      drive = "/Volumes/X9/" + name;
    makeProject(folder);
    scene::makeFolder(drive);
    const std::string source = folder + "/build/" + fs::path(folder).filename().string() + ".app";
    ASSERT_EQ(
        generate({"--app-name", name, "--bin-src", source, "--default-drive", drive, "-o", "bui\nld.command"},
                 folder)
            .status,
        0);
    fs::rename(folder + "/bui\nld.command", folder + "/build.command");
    const auto run = build({}, folder, environment);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    const std::string copy = drive + "/ExternalQuarn/Apps/" + name + ".app";
    EXPECT_EQ(scene::target("/Applications/" + name + ".app"), copy);
    EXPECT_EQ(scene::tree(copy), scene::tree(source));
    EXPECT_EQ(build({"--external-drive=", "--app-name=2" + name, "--external-drive=" + drive}, folder).status,
              0);
    EXPECT_EQ(said("/Applications/2" + name + ".app"), "version 1\n");
    expectTrapUntouched();
  }
}

TEST(ScaffoldNames, ofApplicationsComeOutAsThemselvesWhereABuildNamesThem) {
  layTrap();
  makeScript(tools + "/xcodebuild",
             "#!/bin/sh\nfor word in \"$@\"; do printf '<%s>' \"$word\"; done >/Users/me/asked\n");
  makeScript(tools + "/Projucer", "#!/bin/sh\n");
  scene::write(project + "/A.jucer", "");
  scene::makeFolder(project + "/A.xcodeproj");
  for (const std::string& name : names) {
    ASSERT_EQ(generate({"--force", "--preset", "juce", "--app-name", name}).status, 0);
    build();
    EXPECT_EQ(
        scene::read("/Users/me/asked"),
        "<-project><Builds/MacOSX/" + name + ".xcodeproj><-configuration><Release><-arch><arm64><build>");
    ASSERT_EQ(generate({"--force", "--preset", "xcode", "--app-name", name}).status, 0);
    build();
    EXPECT_EQ(scene::read("/Users/me/asked"), "<-project><A.xcodeproj><-scheme><" + name +
                                                  "><-configuration><Release><-derivedDataPath><" + project +
                                                  "/build/DerivedData><-arch><arm64><build>");
    expectTrapUntouched();
  }
}

TEST(ScaffoldNames, thatAreTooLongForABundleInstallNothing) {
  const std::string name(scene::longestName(), 'x'), folder = "/Users/me/" + name;
  makeProject(folder);
  EXPECT_EQ(generate({}, folder).status, 0);
  const auto run = build({}, folder);
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.ends_with(": File name too long\n")) << run.err;
  EXPECT_FALSE(scene::exists(folder + "/build")) << "no bundle can have it";
  EXPECT_EQ(scene::tree("/Applications").size(), 2u);
}

TEST(ScaffoldNames, thatAreTooLongForTheStashMoveNothing) {
  const std::string name(scene::longestName() - 4, 'x'), folder = "/Users/me/" + name;
  makeProjectWithScript({}, folder);
  EXPECT_EQ(build({}, folder).status, 0);
  const auto before = scene::tree("/Applications");
  const auto run = build({}, folder);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("File name too long"), std::string::npos) << run.err;
  EXPECT_EQ(run.out, "==> compile\n==> ad-hoc sign build/" + name + ".app\n==> install to /Applications/" +
                         name + ".app\n");
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::tree(stash).size(), 1u);
}

TEST(ScaffoldNames, ofBytesThatAreNoTextComeOutAsThemselves) {
  for (const std::string language : {"C.UTF-8", "C"}) {
    forget();
    const std::string name = "bad \xff\xfe\xe2\x82 end\xe2", folder = "/Users/me/" + name;
    makeProjectWithScript({}, folder);
    expectInstalled(folder, name, {"LC_ALL=" + language});
  }
}

}  // namespace
