// Hosts that allow less and less.

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "TestRoom.h"

namespace quarn::tests {

namespace {

bool write(const char* path, const std::string& text) {
  std::ofstream file(path);
  file << text;
  return static_cast<bool>(file.flush());
}

// Root of a user namespace in which nobody may mount or make further namespaces: what a container's root
// usually is. `hidden` is a file that cannot be started there.
bool becomeRootOfAContainer(const char* hidden) {
  const uid_t uid = ::geteuid();
  const gid_t gid = ::getegid();
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  write("/proc/self/setgroups", "deny");
  if (!write("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1")) return false;
  if (!write("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1")) return false;
  if (!write("/proc/sys/user/max_user_namespaces", "0")) return false;
  if (hidden != nullptr && ::access(hidden, F_OK) == 0 &&
      ::mount("/dev/null", hidden, nullptr, MS_BIND, nullptr) != 0)
    return false;
  return ::prctl(PR_CAPBSET_DROP, CAP_SYS_ADMIN, 0, 0, 0) == 0;
}

constexpr int cannotTry = 99;

Finished inContainer(const std::vector<std::string>& words, const char* hidden) {
  return run(words, [hidden] {
    if (!becomeRootOfAContainer(hidden)) ::_exit(cannotTry);
  });
}

}  // namespace

TEST(NoRoom, whereNothingCanBeMountedProotTakesOver) {
  const TestRoom room(Way::proot);
  if (!room.whyNot().empty()) GTEST_SKIP() << room.whyNot();
  const Finished finished = inContainer(
      {room.program(), "--drive", "X9=8m", "--", "sh", "-c", "echo $QUARN_ROOM; ls /Volumes"}, nullptr);
  if (finished.status == cannotTry) GTEST_SKIP() << "users may not make namespaces here";
  EXPECT_EQ(finished.out, "proot\nX9\n") << finished.err;
  EXPECT_EQ(finished.status, 0);
}

TEST(NoRoom, whereNothingWorksOneLineTellsWhatToDo) {
  const TestRoom room(Way::proot);
  const Finished finished = inContainer({room.program(), "--", "true"}, "/usr/bin/proot");
  if (finished.status == cannotTry) GTEST_SKIP() << "users may not make namespaces here";
  EXPECT_EQ(finished.status, 125);
  EXPECT_EQ(finished.out, "");
  EXPECT_EQ(finished.err.find('\n'), finished.err.size() - 1) << finished.err;
  EXPECT_NE(finished.err.find("apt-get install proot"), std::string::npos) << finished.err;
}

TEST(NoRoom, wrongOptionsAreNamed) {
  const TestRoom room(Way::mounts);
  const auto complaint = [&](std::vector<std::string> words) {
    words.insert(words.begin(), room.program());
    const Finished finished = run(words);
    EXPECT_EQ(finished.status, 125);
    return finished.err;
  };
  EXPECT_EQ(complaint({}), "quarn-room: no command after --\n");
  EXPECT_EQ(complaint({"--drive", "X9", "--", "true"}),
            "quarn-room: --drive wants NAME=SIZE or NAME=SIZE,ro, not \"X9\"\n");
  EXPECT_EQ(complaint({"--drive", "../X=1m", "--", "true"}),
            "quarn-room: --drive wants NAME=SIZE or NAME=SIZE,ro, not \"../X=1m\"\n");
  EXPECT_EQ(complaint({"--bind", "/no/where", "--", "true"}),
            "quarn-room: /no/where: No such file or directory\n");
  EXPECT_EQ(complaint({"--quarn", "/etc/passwd", "--", "true"}),
            "quarn-room: /etc/passwd: not an executable\n");
  EXPECT_EQ(complaint({"--what", "x", "--", "true"}), "quarn-room: unknown option --what\n");
}

}  // namespace quarn::tests
