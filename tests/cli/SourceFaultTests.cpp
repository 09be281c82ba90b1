#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

namespace fs = std::filesystem;

void makeSocket(const std::string& path) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::close(socket);
}

TEST(SourceFault, anUnreadableFileFailsTheCopy) {
  scene::makeApp(app);
  const std::string secret = app + "/Contents/secret";
  scene::write(secret, "text");
  fs::permissions(secret, fs::perms::none);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()),
            refused(bytes, "Copy failed: ditto failed: ditto: " + secret + ": Permission denied"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(names(apps), std::vector<std::string>{});
  EXPECT_EQ(names(scene::driveTrash()), std::vector<std::string>{"Foo.app"});
}

TEST(SourceFault, anUnreadableFolderFailsTheCopy) {
  scene::makeApp(app);
  const std::string secret = app + "/Contents/secret";
  scene::write(secret + "/file", "text");
  fs::permissions(secret, fs::perms::none);
  const std::string out = moveOne().out;
  EXPECT_NE(out.find("    FAIL: Copy failed: ditto failed: ditto: " + secret + ": Permission denied\n"),
            std::string::npos)
      << out;
  fs::permissions(secret, fs::perms::owner_all);
  EXPECT_EQ(scene::read(secret + "/file"), "text");
  EXPECT_EQ(scene::read(app + "/Contents/Resources/data.bin").size(), 40'000U);
}

TEST(SourceFault, aCopyThatSilentlyLeftOutAnUnreadableFolderIsNotTrusted) {
  scene::makeApp(app);
  const std::string secret = app + "/Contents/secret";
  scene::write(secret + "/file", "text");
  fs::permissions(secret, fs::perms::none);
  replaceDitto(realDitto + " 2>/dev/null; mkdir -p \"$3/Contents/secret\"; exit 0");
  const std::string out = moveOne().out;
  EXPECT_NE(
      out.find("    verifying\n    FAIL: Verification failed: Could not inspect secret: The file “secret” "
               "couldn’t be opened because you don’t have permission to view it.\n"),
      std::string::npos)
      << out;
  fs::permissions(secret, fs::perms::owner_all);
  EXPECT_EQ(scene::read(secret + "/file"), "text");
  EXPECT_EQ(names(apps), std::vector<std::string>{});
}

TEST(SourceFault, aSourceThatCantBeRemovedStaysWholeAndTheCopyIsInTheTrash) {
  scene::makeApp(app);
  const auto files = contents(app);
  const auto before = scene::tree(app);
  const auto others = foreign();
  fs::permissions("/Applications", fs::perms(0555));
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()),
            printed(started(bytes) +
                    "    verifying\n    linking\n    FAIL: Could not remove original after copy: “Foo.app” "
                    "couldn’t be removed because you don’t have permission to access it.\nfailed: 1\n"));
  EXPECT_EQ(lost(files, {scene::driveTrash() + "/Foo.app"}), std::vector<std::string>{});
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(foreign(), others);
  EXPECT_FALSE(scene::exists(scene::manifest));
}

TEST(SourceFault, aFolderInsideThatCantBeEmptiedKeepsTheSourceWhole) {
  scene::makeApp(app);
  const auto files = contents(app);
  fs::permissions(app + "/Contents/Resources", fs::perms(0555));
  const auto before = scene::tree(app);
  const std::string out = moveOne().out;
  EXPECT_NE(out.find("    FAIL: Could not remove original after copy: “Foo.app” couldn’t be removed"),
            std::string::npos)
      << out;
  EXPECT_EQ(lost(files, {scene::driveTrash() + "/Foo.app"}), std::vector<std::string>{});
  EXPECT_EQ(scene::tree(app), before);
}

TEST(SourceFault, aSocketInTheBundleFailsTheCount) {
  scene::makeApp(app);
  makeSocket(app + "/Contents/socket");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), unverified(bytes, "Foo.app copied with 7 of 8 entries — 1 missing."));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(names(scene::driveTrash()), std::vector<std::string>{"Foo.app"});
}

TEST(SourceFault, aFifoInTheBundleFailsTheCountAndHoldsNothingUp) {
  scene::makeApp(app);
  ASSERT_EQ(::mkfifo((app + "/Contents/fifo").c_str(), 0644), 0);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), unverified(bytes, "Foo.app copied with 7 of 8 entries — 1 missing."));
  EXPECT_EQ(scene::tree(app), before);
}

TEST(SourceFault, aFifoInPlaceOfThePropertyListHoldsNothingUp) {
  scene::makeFolder(app + "/Contents");
  ASSERT_EQ(::mkfifo((app + "/Contents/Info.plist").c_str(), 0644), 0);
  const auto run = scene::run({"timeout", "20", "quarn", "move", "apps"});
  EXPECT_EQ(shown(run), printed("name\tbundle_id\trisk\tapp_size\tdata_size\ttotal\tpath\n"
                                "Foo\t\tlow\tZero KB\tZero KB\tZero KB\t" +
                                app + "\n"));
}

TEST(SourceFault, linksThatLoopMoveAsTheyAre) {
  scene::makeApp(app);
  scene::link(app + "/Contents/self", "self");
  scene::link(app + "/Contents/a", "b");
  scene::link(app + "/Contents/b", "a");
  scene::link(app + "/Contents/up", "..");
  scene::link(app + "/Contents/Resources/root", "/");
  scene::link(app + "/Contents/dangling", "/nowhere");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::tree(moved), before);
  EXPECT_TRUE(scene::exists("/System/Library"));
}

TEST(SourceFault, anApplicationThatIsALoopGivesNoJob) {
  scene::link("/Applications/Loop.app", "Loop.app");
  scene::link("/Applications/A.app", "B.app");
  scene::link("/Applications/B.app", "A.app");
  scene::link("/Applications/Folder", "/Applications");
  EXPECT_EQ(shown(scene::quarn({"move", "one", "/Applications/Loop.app", "--yes"})),
            printed("Loop  ->  X9   Zero KB (0 jobs)\nnothing to move.\n"));
  const std::string out = scene::quarn({"move", "all", "--yes"}).out;
  EXPECT_NE(out.find("jobs:         0 (Zero KB)\nnothing to move.\n"), std::string::npos) << out;
  EXPECT_EQ(scene::target("/Applications/Loop.app"), "Loop.app");
}

TEST(SourceFault, dataThatLoopsIsNoJob) {
  scene::makeApp(app);
  scene::link(scene::home + "/Library/Application Support/Foo", "Foo");
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
  EXPECT_EQ(scene::target(scene::home + "/Library/Application Support/Foo"), "Foo");
}

TEST(SourceFault, aLinkThatLoopsCantBeBroughtBack) {
  scene::link(app, "Foo.app");
  EXPECT_EQ(shown(scene::quarn({"move", "back", "Foo"})), failed("No such item: " + app));
  EXPECT_EQ(scene::quarn({"move", "restore", app}).status, 1);
  EXPECT_EQ(scene::target(app), "Foo.app");
}

}  // namespace
