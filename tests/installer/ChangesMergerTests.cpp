#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/ChangesMerger.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using Texts = std::vector<std::string>;

const std::string app = "installed-app\t/Applications/Foo.app\t/Volumes/X9/ExternalQuarn/Apps/Foo.app";
const Texts ofApp = {"/Applications/Foo.app", "/Volumes/X9/ExternalQuarn/Apps/Foo.app"};

/// Two snapshots of a folder in which a file was made, and one removed, between them.
class Merging : public testing::Test {
 protected:
  Merging() {
    scratch.write("old");
    before = Snapshotter::capture(hostPlatform(), {scratch.path()});
    std::filesystem::remove(scratch.at("old"));
    scratch.write("new");
    after = Snapshotter::capture(hostPlatform(), {scratch.path()});
  }
  Texts merged(const Texts& actions, const Texts& livePaths = {}) const {
    return ChangesMerger::merge(before, after, actions, livePaths);
  }

  ScratchFolder scratch;
  FileSnapshot before;
  FileSnapshot after;
};

TEST_F(Merging, ofApplicationsGivesTheirLaunchersAndCopiesOnly) {
  EXPECT_EQ(merged({app}, {"/live"}), ofApp);
  EXPECT_EQ(merged({app, app}), ofApp) << "each path once";
  EXPECT_EQ(merged({"installed-app\t/z\t/y", "installed-app\t/x\t/w"}), (Texts{"/w", "/x", "/y", "/z"}));
  EXPECT_EQ(merged({}, {"/live"}), Texts{});
}

TEST_F(Merging, ofAScriptGivesNothing) {
  EXPECT_EQ(merged({"ran-script\t/a.sh"}, {"/live"}), Texts{});
}

TEST_F(Merging, ofAPackageGivesWhatIsNewAndWhatWasSeenToChange) {
  const Path made = scratch / "new";
  Texts expected = {"/live/1", "/live/2", made.text()};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(merged({"installed-pkg\t/a.pkg"}, {"/live/2", "/live/1", made.text()}), expected);
}

TEST_F(Merging, ofAPackageAndAnApplicationGivesBoth) {
  Texts expected = ofApp;
  expected.push_back((scratch / "new").text());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(merged({app, "installed-pkg\t/a.pkg"}), expected);
}

}  // namespace
}  // namespace quarn
