// What holds in every room, however it is made.

#include <algorithm>
#include <chrono>
#include <fstream>
#include <signal.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "RoomCase.h"

namespace quarn::tests {

namespace fs = std::filesystem;

namespace {

class EveryRoom : public RoomCase {};

INSTANTIATE_TEST_SUITE_P(Way, EveryRoom, everyWay, nameOf);

/// A file of /etc that the room doesn't make by itself. Which ones a host has differs: a bare Debian has no
/// /etc/hosts.
std::string someFileOfEtc() {
  for (const auto& entry : fs::directory_iterator("/etc")) {
    const std::string path = entry.path().string();
    const bool isFile = entry.is_regular_file() && !entry.is_symlink() && ::access(path.c_str(), R_OK) == 0;
    if (isFile && path != "/etc/passwd" && path != "/etc/group" && path != "/etc/mtab") return path;
  }
  return {};
}

/// A number of seconds that no test running at the same time sleeps for.
std::string napOfThisTest(const std::string& seconds) {
  return seconds + std::to_string(::getpid());
}

bool isRunning(const std::string& sleepOfSeconds) {
  return !processesWith("sleep" + std::string(1, '\0') + sleepOfSeconds).empty();
}

bool eventually(const std::function<bool()>& holds) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

}  // namespace

TEST_P(EveryRoom, startsAndEndsInLessThanASecond) {
  using std::chrono::steady_clock;
  // The quickest of some, because a busy machine can hold up any one of them.
  steady_clock::duration quickest = steady_clock::duration::max();
  for (int attempt = 0; attempt < 5; ++attempt) {
    const auto begin = steady_clock::now();
    EXPECT_EQ(room("exit 0").status, 0);
    quickest = std::min(quickest, steady_clock::now() - begin);
  }
  EXPECT_LT(quickest, std::chrono::seconds(1));
}

TEST_P(EveryRoom, hasTheFoldersOfAMac) {
  const Finished finished = room(
      "for f in /Applications/Utilities '/Library/Application Support' /Library/LaunchDaemons /Volumes "
      "/System/Applications '/Users/me/Library/Application Support' /tmp /var/tmp; do"
      " [ -d \"$f\" ] && [ -w \"$f\" ] || echo \"$f\"; done; [ ! -e /private ] || echo /private");
  EXPECT_EQ(finished.out, "");
  EXPECT_EQ(finished.status, 0);
}

TEST_P(EveryRoom, greetsItsUserAsMe) {
  ::setenv("TMPDIR", "/tmp", 1);
  const Finished finished =
      room("echo $HOME $USER $LOGNAME ${TMPDIR-none} $PATH $LANG; pwd; whoami; getent passwd $(id -u)");
  ::unsetenv("TMPDIR");
  EXPECT_EQ(finished.out.substr(0, finished.out.rfind("me:x:")),
            "/Users/me me me none /usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin C.UTF-8\n/Users/me\nme\n");
  EXPECT_NE(finished.out.find(":/Users/me:/bin/bash\n"), std::string::npos);
}

TEST_P(EveryRoom, passesTheCallersVariablesOnButNotThoseThatChangeHowProgramsRun) {
  const std::pair<const char*, const char*> variables[] = {
      {"QUARN_TEST_KEPT", "kept"}, {"LD_PRELOAD", "/nowhere/none.so"}, {"LD_LIBRARY_PATH", "/nowhere"},
      {"LD_BIND_NOW", "1"},        {"LC_ALL", "de_DE.UTF-8"},          {"XDG_CONFIG_HOME", "/nowhere"},
      {"ICU_DATA", "/nowhere"},    {"POSIXLY_CORRECT", "1"},           {"BASH_ENV", "/nowhere/rc"},
  };
  for (const auto& [name, value] : variables) ::setenv(name, value, 1);
  const Finished finished =
      room("env | grep -E '^(QUARN_TEST|LD_|LC_|XDG_|ICU_|POSIXLY_|BASH_ENV)' | sort; /bin/true");
  for (const auto& [name, value] : variables) ::unsetenv(name);
  EXPECT_EQ(finished.out, "QUARN_TEST_KEPT=kept\n");
}

TEST_P(EveryRoom, startsInTheFolderThatIsAskedFor) {
  EXPECT_EQ(room("pwd", {"--cwd", "/Library/Logs"}).out, "/Library/Logs\n");
}

TEST_P(EveryRoom, givesBackTheStatusOfTheCommand) {
  EXPECT_EQ(room("exit 7").status, 7);
  EXPECT_EQ(room("kill -KILL $$").status, 137);
  EXPECT_EQ(run({room.program(), "--", "/nowhere"}, [this] { room.goThisWay(); }).status, 127);
  EXPECT_EQ(run({room.program(), "--", "/etc/passwd"}, [this] { room.goThisWay(); }).status, 126);
}

TEST_P(EveryRoom, passesTerminationOn) {
  Started started = room.start("trap 'echo asked; exit 3' TERM; echo ready; sleep 30 & wait");
  started.waitForOutput("ready");
  ::kill(started.pid(), SIGTERM);
  const Finished finished = started.finish();
  EXPECT_EQ(finished.out, "ready\nasked\n");
  EXPECT_EQ(finished.status, 3);
}

TEST_P(EveryRoom, endsWithItsCommandWhateverElseRunsInIt) {
  const std::string nap = napOfThisTest("30.41");
  const Finished finished = room("setsid sleep " + nap + " </dev/null >/dev/null 2>&1 & exit 4");
  EXPECT_EQ(finished.status, 4);
  EXPECT_FALSE(isRunning(nap));
}

TEST_P(EveryRoom, killedLeavesNothing) {
  const std::string mountsBefore = contentOf("/proc/self/mounts");
  const std::string first = napOfThisTest("30.42"), second = napOfThisTest("30.43");
  Started started = room.start("setsid sleep " + first + " & echo ready; sleep " + second,
                               {"--drive", "X9=8m", "--drive", "Y=8m"});
  started.waitForOutput("ready");
  ::kill(started.pid(), SIGKILL);
  EXPECT_TRUE(
      eventually([&] { return !isRunning(first) && !isRunning(second) && abandonedRooms().empty(); }));
  EXPECT_EQ(started.finish().status, 137);
  EXPECT_EQ(contentOf("/proc/self/mounts"), mountsBefore);
}

TEST_P(EveryRoom, leavesNothingWhenItsUserClosedFolders) {
  EXPECT_EQ(room("mkdir -p a/b /Volumes/X9/c/d && chmod 0 a/b a /Volumes/X9/c", {"--drive", "X9=8m"}).status,
            0);
  EXPECT_EQ(abandonedRooms(), std::vector<std::string>());
}

TEST_P(EveryRoom, refusesWhatAnOrdinaryUserMayNot) {
  const Finished finished = room("echo secret >a; chmod 000 a; cat a; mkdir d; chmod 555 d; touch d/x");
  EXPECT_EQ(finished.out, "");
  EXPECT_NE(finished.err.find("cat: a: Permission denied"), std::string::npos) << finished.err;
  EXPECT_NE(finished.err.find("cannot touch 'd/x': Permission denied"), std::string::npos) << finished.err;
}

TEST_P(EveryRoom, refusesToRenameOntoADrive) {
  const Finished finished =
      room("touch a; perl -e 'rename(\"a\", \"/Volumes/X9/a\") or print 0+$!'", {"--drive", "X9=8m"});
  EXPECT_EQ(finished.out, std::to_string(EXDEV)) << finished.err;
}

TEST_P(EveryRoom, movesOntoADriveByCopying) {
  const Finished finished =
      room("echo x >a; mv a '/Volumes/My Drive/a' && cat /Volumes/*/a; ls", {"--drive", "My Drive=8m"});
  EXPECT_EQ(finished.out.substr(0, 2), "x\n") << finished.err;
}

TEST_P(EveryRoom, namesItsDrivesInTheMountTable) {
  const Finished finished = room(
      "grep -c ' /Volumes/My\\\\040Drive tmpfs rw' /etc/mtab; grep -c '^[^ ]* / ' "
      "/etc/mtab; grep -c ' /Volumes/R tmpfs ro' /etc/mtab",
      {"--drive", "My Drive=8m", "--drive", "R=8m,ro"});
  EXPECT_EQ(finished.out, "1\n1\n1\n") << finished.err;
}

TEST_P(EveryRoom, letsNobodyWriteOnAReadOnlyDrive) {
  const Finished finished = room("touch /Volumes/R/a", {"--drive", "R=8m,ro"});
  EXPECT_NE(finished.status, 0);
}

TEST_P(EveryRoom, plugsAndUnplugsDrives) {
  const Finished finished = room(
      "plug 'A b' 8m && touch '/Volumes/A b/x' && plug R 8m ro && ls /Volumes; touch /Volumes/R/x;"
      "grep -c /Volumes /etc/mtab; unplug 'A b' && unplug R; ls /Volumes; grep -c /Volumes/ /etc/mtab");
  EXPECT_EQ(finished.out, "A b\nR\n2\n0\n") << finished.err;
  EXPECT_NE(finished.err.find("'/Volumes/R/x'"), std::string::npos) << finished.err;
}

TEST_P(EveryRoom, pullsADriveOutWhileAFileOfItIsOpen) {
  const Finished finished = room(
      "exec 3>/Volumes/X9/a; unplug X9 && ls /Volumes; echo still >&3 && echo written", {"--drive", "X9=8m"});
  EXPECT_EQ(finished.out, "written\n") << finished.err;
}

TEST_P(EveryRoom, explainsWrongUseOfTheDriveCommands) {
  const Finished finished = room("plug X; plug X 0; plug a/b 8m; unplug; unplug Nothing");
  EXPECT_EQ(finished.status, 1);
  EXPECT_NE(finished.err.find("usage: plug NAME SIZE [ro]"), std::string::npos);
  EXPECT_NE(finished.err.find("usage: unplug NAME"), std::string::npos);
  EXPECT_NE(finished.err.find("unplug: /Volumes/Nothing: "), std::string::npos);
}

TEST_P(EveryRoom, keepsItsOwnToolsWhenATestReplacesThem) {
  const fs::file_time_type before = fs::last_write_time(fs::canonical("/usr/bin/ps"));
  const Finished finished = room(
      "for t in /usr/bin/ditto /bin/ps; do printf '#!/bin/sh\\necho fake\\n' >$t; $t; done;"
      "rm /usr/bin/find /usr/bin/ls && ! ls 2>/dev/null; echo x >a;"
      "/usr/libexec/quarn-room/ditto a b && cat b");
  EXPECT_EQ(finished.out, "fake\nfake\nx\n") << finished.err;
  EXPECT_EQ(fs::last_write_time(fs::canonical("/usr/bin/ps")), before);
  EXPECT_TRUE(fs::exists("/usr/bin/find") && fs::exists("/usr/bin/ls"));
  EXPECT_EQ(room("ditto a b").err, "ditto: can't get real path for source 'a'\n");
}

TEST_P(EveryRoom, changesNothingOfTheHostsEtc) {
  const std::string before = contentOf("/etc/passwd");
  EXPECT_EQ(room("echo x >>/etc/passwd && rm /etc/hostname && touch /etc/new").status, 0);
  EXPECT_EQ(contentOf("/etc/passwd"), before);
  EXPECT_FALSE(fs::exists("/etc/new"));
}

TEST_P(EveryRoom, writesThroughABoundFolder) {
  const ScratchFolder host("/tmp");
  const std::string path = host.text();
  fs::permissions(path, fs::perms(0777));
  EXPECT_EQ(room("echo hello >" + path + "/a", {"--bind", path}).err, "");
  EXPECT_EQ(host.read("a"), "hello\n");
}

TEST_P(EveryRoom, bindsOneFileInTheMiddleOfItsOwn) {
  const std::string file = someFileOfEtc();
  ASSERT_NE(file, "");
  const std::string before = contentOf(file);
  EXPECT_EQ(room("test ! -L " + file + " && cmp " + file + " /.host" + file, {"--bind", file}).status, 0);
  EXPECT_EQ(contentOf(file), before);
}

TEST_P(EveryRoom, putsQuarnOnThePath) {
  const ScratchFolder host("/tmp");
  fs::permissions(host.text(), fs::perms(0755));
  const fs::path tool = host.at("quarn");
  std::ofstream(tool) << "#!/bin/sh\necho quarn \"$@\"\n";
  fs::permissions(tool, fs::perms(0755));
  const Finished finished = room("command -v quarn; quarn here", {"--quarn", tool.string()});
  EXPECT_EQ(finished.out, "/usr/local/bin/quarn\nquarn here\n") << finished.err;
}

TEST_P(EveryRoom, startsQuarnByAPathWithItsCompanionBesideIt) {
  const ScratchFolder host("/tmp");
  fs::permissions(host.text(), fs::perms(0755));
  const fs::path tool = host.at("quarn"), companion = host.at("external-app-launcher");
  std::ofstream(tool) << "#!/bin/sh\necho \"$0\" \"$#\"; \"${0%/*}/external-app-launcher\"; exit 7\n";
  std::ofstream(companion) << "#!/bin/sh\necho companion\n";
  for (const fs::path& each : {tool, companion}) fs::permissions(each, fs::perms(0755));
  const Finished finished = room("cd /tmp; quarn 'a b' ''", {"--quarn", tool.string()});
  EXPECT_EQ(finished.out, "/usr/local/libexec/quarn 2\ncompanion\n") << finished.err;
  EXPECT_EQ(finished.status, 7);
}

TEST_P(EveryRoom, startsApplicationsFromADriveAndShowsThemToPs) {
  const Finished finished = room(
      "m=/Volumes/X9/Foo.app/Contents/MacOS; mkdir -p $m; cp /usr/bin/sleep $m/Foo; ln -s "
      "/Volumes/X9/Foo.app "
      "/Applications/Foo.app; /Applications/Foo.app/Contents/MacOS/Foo 30 & sleep 0.3;"
      "/bin/ps -axo comm,args | grep '^Foo '; readlink /proc/$!/exe",
      {"--drive", "X9=8m"});
  EXPECT_NE(finished.out.find(" /Applications/Foo.app/Contents/MacOS/Foo 30\n"), std::string::npos)
      << finished.out << finished.err;
  EXPECT_NE(finished.out.find("\n/Volumes/X9/Foo.app/Contents/MacOS/Foo\n"), std::string::npos)
      << finished.out;
}

}  // namespace quarn::tests
