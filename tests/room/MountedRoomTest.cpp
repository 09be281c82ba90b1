// What only a room of real mounts can give.

#include "RoomCase.h"

namespace quarn::tests {

namespace {

class MountedRoom : public RoomCase {};

INSTANTIATE_TEST_SUITE_P(Way, MountedRoom, testing::Values(Way::mounts, Way::userNamespace), nameOf);

}  // namespace

TEST_P(MountedRoom, fillsItsDrivesToTheSizeAskedFor) {
  const Finished finished = room(
      "head -c 3M /dev/zero >/Volumes/X9/a; stat -c %s /Volumes/X9/a; df --output=size /Volumes/X9 | tail -1 "
      "| tr -d ' '",
      {"--drive", "X9=2m"});
  EXPECT_NE(finished.err.find("No space left on device"), std::string::npos) << finished.err;
  EXPECT_EQ(finished.out, "2097152\n2048\n");
}

TEST_P(MountedRoom, saysThatAReadOnlyDriveIsOne) {
  const Finished finished = room("touch /Volumes/R/a", {"--drive", "R=8m,ro"});
  EXPECT_NE(finished.err.find("Read-only file system"), std::string::npos) << finished.err;
}

TEST_P(MountedRoom, showsItsOwnProcessesOnly) {
  const Finished finished = room("ps -axo pid= | wc -l");
  EXPECT_LE(std::stoi(finished.out), 5);
}

TEST_P(MountedRoom, keepsTheHostReadOnly) {
  const ScratchFolder host("/tmp");
  std::filesystem::permissions(host.text(), std::filesystem::perms(0777));
  const Finished finished = room("touch /.host" + host.text() + "/a; touch /usr/share/a /usr/lib/a");
  EXPECT_FALSE(host.stands("a"));
  EXPECT_NE(finished.status, 0);
  EXPECT_NE(finished.err.find("Read-only file system"), std::string::npos) << finished.err;
}

TEST_P(MountedRoom, keepsAllRightsWhenAsked) {
  const Finished finished = room(
      "echo open >a; chmod 000 a; cat a; mkdir /Volumes/M; mount -t tmpfs m /Volumes/M && umount /Volumes/M",
      {"--keep-rights"});
  EXPECT_EQ(finished.out, "open\n");
  EXPECT_EQ(finished.status, 0) << finished.err;
}

TEST_P(MountedRoom, attachesAnImageAsAFileSystemOfItsOwnThatIsBusyWhileAFileOfItIsOpen) {
  if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
  const Finished finished = play(
      "mkdir in; echo a >in/a; bsdtar -cf I.dmg --format zip in; hdiutil attach I.dmg -plist >list; "
      "mountpoint "
      "/Volumes/I; exec 3</Volumes/I/in/a; status hdiutil detach /dev/disk4; cat <&3; exec 3<&-; status "
      "hdiutil "
      "detach /Volumes/I");
  EXPECT_EQ(finished.out, "/Volumes/I is a mountpoint\n16\na\n\"disk4\" ejected.\n0\n");
  EXPECT_EQ(finished.err, "hdiutil: couldn't unmount \"disk4\" - Resource busy\n");
}

}  // namespace quarn::tests
