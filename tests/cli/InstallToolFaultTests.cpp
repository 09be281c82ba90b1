#include "tests/cli/InstallScenes.h"

/// `install` with tools that are missing, fail, hang or write without end.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::timeless;
using installs::Words;

namespace {

const std::string app = "/Users/me/Foo.app";
const std::string installed = printed("Installed session ID\n");
const Words human = {"--format", "human"};

class InstallToolFault : public installs::WithArchives {
 protected:
  void SetUp() override {
    WithArchives::SetUp();
    scene::makeFolder(installs::apps);
    scene::makeApp(app);
  }
};

std::string failedBy(const std::string& source) {
  const auto before = installs::wholeTree();
  const std::string answer = shown(installs::run(source));
  EXPECT_EQ(installs::wholeTree(), before);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
  installs::expectOneFailedSession(source);
  return answer;
}

void restore(const std::string& tool) {
  std::filesystem::copy_file("/usr/libexec/quarn-room/" + std::filesystem::path(tool).filename().string(),
                             tool);
}

TEST_F(InstallToolFault, aMissingToolIsNamed) {
  scene::makeApp("/Users/me/content/Bar.app");
  const std::string package = installs::package(), image = installs::image("/Users/me/content"),
                    archive = installs::zip("/Users/me/content");
  struct Case {
    std::string tool, source;
  };
  for (const Case& one : {Case{"/usr/sbin/installer", package}, Case{"/usr/bin/hdiutil", image},
                          Case{"/usr/bin/ditto", archive}}) {
    SCOPED_TRACE(one.tool);
    scene::removeTool(one.tool);
    const std::string name = std::filesystem::path(one.tool).filename().string();
    EXPECT_EQ(failedBy(one.source), failed("The file “" + name + "” doesn’t exist."));
    restore(one.tool);
    EXPECT_EQ(timeless(installs::run(one.source, human)), installed);
    std::filesystem::remove_all(installs::sessionsRoot);
  }
}

TEST_F(InstallToolFault, aFailingInstallerIsToldInItsWordsWithStandardErrorFirst) {
  const std::string package = installs::package();
  installs::orders("installer", "out to standard output\nfail 7 to standard error\n");
  EXPECT_EQ(failedBy(package), failed("to standard error\nto standard output\n"));
  installs::orders("installer", "fail 7\n");
  EXPECT_EQ(failedBy(package), failed("The operation couldn’t be completed. (pkg-install error 7.)"));
  installs::orders("installer", "not-root\n");
  EXPECT_EQ(failedBy(package), failed("installer: Must be run as root to install this package.\n"));
  installs::noOrders();
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
}

TEST_F(InstallToolFault, anInstallerThatFloodsIsReadToItsEnd) {
  const std::string package = installs::package();
  installs::orders("installer", "flood 20\n");
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
}

TEST_F(InstallToolFault, whatFloodsAndFailsIsToldWhole) {
  const std::string package = installs::package();
  installs::orders("installer", "flood 5\nfail 1 the end\n");
  const auto run = installs::run(package);
  EXPECT_EQ(run.status, 1);
  EXPECT_GT(run.err.size(), 10'000'000U);
  installs::expectOneFailedSession(package);
}

TEST_F(InstallToolFault, theListOfReceiptsMayBeMissingFailOrFlood) {
  const std::string package = installs::package();
  installs::orders("pkgutil", "on --pkgs fail 1 no list\n");
  EXPECT_EQ(timeless(installs::run(app, human)), installed);
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
  for (const std::string& session : installs::savedSessions())
    EXPECT_NE(session.find("\"newReceipts\":[]"), std::string::npos) << session;
  installs::orders("pkgutil", "on --pkgs flood 5\n");
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
  scene::removeTool("/usr/sbin/pkgutil");
  EXPECT_EQ(timeless(installs::run(app, human)), installed);
  std::filesystem::remove_all(installs::sessionsRoot);
  EXPECT_EQ(failedBy(package), failed("Untrusted package blocked."));
}

TEST_F(InstallToolFault, aPackageIsInstalledWithoutAToolToLookIntoIt) {
  const std::string package = installs::package();
  for (const std::string order : {"fail 1 no archive\n", "flood 5\n"}) {
    installs::orders("xar", order);
    EXPECT_EQ(timeless(installs::run(package, human)), installed) << order;
  }
  scene::removeTool("/usr/bin/xar");
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
}

TEST_F(InstallToolFault, aToolThatLooksIntoAPackageAndHangsIsNotWaitedForForEver) {
  const std::string package = installs::package();
  installs::orders("xar", "on -xf hang deaf\n");
  const auto begin = std::time(nullptr);
  EXPECT_EQ(timeless(installs::run(package, human)), installed);
  const auto taken = std::time(nullptr) - begin;
  EXPECT_GE(taken, 14);
  EXPECT_LT(taken, 60);
  EXPECT_EQ(installs::namesIn(installs::temporary), Words{});
}

TEST_F(InstallToolFault, aSignatureThatIsNotToldInTimeIsNotTrusted) {
  const std::string package = installs::package();
  installs::orders("pkgutil", "on --check-signature hang\n");
  const auto run = installs::quarn({"inspect", package});
  EXPECT_EQ(shown(run), printed("inspection\tpkg\t" + package +
                                "\nwarning\tPackage signature is not trusted.\nitem\tpkg\t" +
                                std::to_string(expected::allocated(package)) + "\t" + package + "\n"));
}

TEST_F(InstallToolFault, whatAnswersWithNoListIsNoImage) {
  scene::makeApp("/Users/me/content/Bar.app");
  const std::string image = installs::image("/Users/me/content");
  installs::orders("hdiutil", "on attach fail 0 nothing to say\n");
  const std::string nothing = failedBy(image);
  EXPECT_TRUE(nothing.starts_with("status 1\n--- out\n--- err\nerror\t")) << nothing;
  installs::orders("hdiutil", "on attach fail 1\n");
  EXPECT_EQ(failedBy(image), failed("The operation couldn’t be completed. (hdiutil error 1.)"));
  installs::noOrders();
  EXPECT_EQ(timeless(installs::run(image, human)), installed);
}

TEST_F(InstallToolFault, anImageThatCannotBeDetachedDoesNotSpoilTheRun) {
  scene::makeApp("/Users/me/content/Bar.app");
  const std::string image = installs::image("/Users/me/content");
  installs::orders("hdiutil",
                   "name V\non detach fail 16 hdiutil: couldn't unmount \"disk4\" - Resource busy\n");
  EXPECT_EQ(timeless(installs::run(image, human)), installed);
  EXPECT_EQ(installs::launcherTarget("/Applications/Bar.app"), installs::apps + "/Bar.app");
}

TEST_F(InstallToolFault, aLauncherWithoutASignatureOrARegistrationIsMadeAllTheSame) {
  installs::orders("codesign", "fail 1 no identity found\n");
  scene::removeTool(
      "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
      "lsregister");
  const auto run = installs::run(app, {"--progress", "--format", "human"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("progress\tsign-launcher-warning\tno identity found\n"), std::string::npos)
      << run.err;
  EXPECT_EQ(installs::launcherTarget("/Applications/Foo.app"), installs::apps + "/Foo.app");
}

}  // namespace
