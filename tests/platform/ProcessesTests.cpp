#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/IsAlive.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

using namespace std::chrono_literals;

struct Output {
  std::string out, err;
};

Output readAll(Child& child) {
  Output output;
  child.readToEnd([&](std::string_view piece) { output.out += piece; },
                  [&](std::string_view piece) { output.err += piece; });
  return output;
}

Output readUntilExit(Child& child) {
  Output output;
  child.readUntilExit([&](std::string_view piece) { output.out += piece; },
                      [&](std::string_view piece) { output.err += piece; });
  return output;
}

class Stopwatch {
 public:
  std::chrono::steady_clock::duration elapsed() const { return std::chrono::steady_clock::now() - begin_; }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// Ends what a script has left behind.
void killNumberedIn(const ScratchFolder& scratch, const std::string& name) {
  ::kill(std::stoi(scratch.read(name)), SIGKILL);
}

std::shared_ptr<quarn::Processes> theHosts() {
  return notOwned(hostPlatform().processes);
}
std::shared_ptr<quarn::Processes> gated() {
  const auto open = std::make_shared<GatedPlatform>([](const std::string&) { return Result<void>(); });
  return {open, &open->platform().processes};
}

class Processes : public testing::TestWithParam<Subject<quarn::Processes>> {
 protected:
  Result<std::unique_ptr<Child>> start(const Path& tool, const std::vector<std::string>& arguments,
                                       OutputStreams streams = OutputStreams::separate) const {
    return processes_->start(tool, arguments, streams);
  }
  std::unique_ptr<Child> script(const std::string& text,
                                OutputStreams streams = OutputStreams::separate) const {
    return start(Path("/bin/sh"), {"-c", text}, streams).orThrow();
  }
  std::vector<int> lineage() const { return processes_->lineage(); }

 private:
  std::shared_ptr<quarn::Processes> processes_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(, Processes,
                         testing::Values(Subject<quarn::Processes>{"Host", theHosts},
                                         Subject<quarn::Processes>{"Gated", gated}),
                         nameOf<Subject<quarn::Processes>>);

TEST_P(Processes, keepTheStreamsApart) {
  const auto child = script("echo out; echo err >&2");
  const Output output = readAll(*child);
  EXPECT_EQ(output.out, "out\n");
  EXPECT_EQ(output.err, "err\n");
  EXPECT_EQ(child->waitForExit(), 0);
}

TEST_P(Processes, joinTheStreamsInTheOrderOfWriting) {
  const auto child = script("echo out; echo err >&2; echo out", OutputStreams::joined);
  const Output output = readAll(*child);
  EXPECT_EQ(output.out, "out\nerr\nout\n");
  EXPECT_EQ(output.err, "");
}

TEST_P(Processes, inheritedStreamsAreOursAndReadingThemEndsAtOnce) {
  ScratchFolder scratch;
  const int ours = ::dup(STDOUT_FILENO);
  const int file = ::open(scratch.at("out").c_str(), O_CREAT | O_WRONLY, 0600);
  ::dup2(file, STDOUT_FILENO);
  const auto child = script("echo seen", OutputStreams::inherited);
  ::dup2(ours, STDOUT_FILENO);
  ::close(file);
  ::close(ours);
  EXPECT_EQ(readAll(*child).out, "");
  EXPECT_EQ(child->waitForExit(), 0);
  EXPECT_EQ(scratch.read("out"), "seen\n");
}

TEST_P(Processes, tellTheExitStatusOrTheSignal) {
  EXPECT_EQ(script("exit 3")->waitForExit(), 3);
  EXPECT_EQ(script("exit 255")->waitForExit(), 255);
  EXPECT_EQ(script("kill -9 $$")->waitForExit(), 9);
  EXPECT_EQ(script("kill -15 $$")->waitForExit(), 15);
}

TEST_P(Processes, passArgumentsAsTheyAre) {
  const auto child = start(Path("/usr/bin/printf"), {"%s|", "a b", "$HOME", "", "x\ny", "*"}).orThrow();
  EXPECT_EQ(readAll(*child).out, "a b|$HOME||x\ny|*|");
}

TEST_P(Processes, aToolThatCannotBeStartedIsAnError) {
  ScratchFolder scratch;
  scratch.write("plain", "#!/bin/sh\n");
  scratch.folder("folder");
  scratch.write("foreign", "no program");
  ::chmod(scratch.at("foreign").c_str(), 0755);
  for (const char* name : {"none", "plain", "folder", "foreign", "plain/below"}) {
    const auto child = start(scratch / name, {});
    ASSERT_FALSE(child) << name;
    EXPECT_EQ(child.error().code, 4) << name;
    EXPECT_EQ(child.error().description,
              "The file “" + (scratch / name).lastComponent() + "” doesn’t exist.");
  }
}

TEST_P(Processes, aToolIsNotStartedWithWordsThatAZeroByteWouldCut) {
  const std::string cut("\0x", 2);
  for (const auto& [tool, argument] :
       std::vector<std::pair<std::string, std::string>>{{"/bin/echo", "a" + cut}, {"/bin/echo" + cut, "a"}}) {
    const auto child = start(Path(tool), {argument});
    ASSERT_FALSE(child) << tool;
    EXPECT_EQ(child.error().domain, "NSPOSIXErrorDomain");
    EXPECT_EQ(child.error().code, EINVAL);
  }
}

TEST_P(Processes, theSearchPathIsNotUsed) {
  EXPECT_FALSE(start(Path("sh"), {"-c", "exit 0"}));
}

TEST_P(Processes, theExitStatus127OfAToolIsNoFailureToStart) {
  EXPECT_EQ(script("exit 127")->waitForExit(), 127);
}

TEST_P(Processes, giveTheToolAGroupOfItsOwn) {
  ScratchFolder scratch;
  const auto child = script("echo $$ > '" + scratch.at("number") + "'; exec sleep 30");
  while (scratch.read("number").empty()) std::this_thread::sleep_for(10ms);
  const pid_t process = std::stoi(scratch.read("number"));
  EXPECT_EQ(::getpgid(process), process);
  child->kill();
  child->waitForExit();
}

TEST_P(Processes, giveTheToolNoOtherDescriptors) {
  const int leaking = ::fcntl(STDIN_FILENO, F_DUPFD, 3);
  ASSERT_GT(leaking, 2);
  ASSERT_LT(leaking, 10) << "a shell can't ask for it";
  const auto child = script("for n in 3 4 5 6 7 8 9; do (: <&$n) 2>/dev/null && echo $n; done; exit 0");
  EXPECT_EQ(readAll(*child).out, "");
  ::close(leaking);
}

TEST_P(Processes, giveTheToolItsSignalsBack) {
  ::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked, before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const int ofPipe = script("kill -PIPE $$")->waitForExit();
  const int ofUser = script("kill -USR1 $$")->waitForExit();
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  EXPECT_EQ(ofPipe, SIGPIPE);
  EXPECT_EQ(ofUser, SIGUSR1);
}

TEST_P(Processes, aFloodOnBothStreamsBlocksNobody) {
  constexpr std::size_t bytes = 3'000'000;
  const std::string flood =
      "head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero; "
      "head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero";
  const auto first = script(flood);
  const Output toEnd = readAll(*first);
  EXPECT_EQ(toEnd.out.size(), 2 * bytes);
  EXPECT_EQ(toEnd.err.size(), 2 * bytes);
  const auto second = script(flood);
  const Output untilExit = readUntilExit(*second);
  EXPECT_EQ(untilExit.out.size(), 2 * bytes);
  EXPECT_EQ(untilExit.err.size(), 2 * bytes);
}

TEST_P(Processes, handOverBytesThatAreNoText) {
  const auto child = script("printf 'a\\377\\000b'");
  EXPECT_EQ(readAll(*child).out, std::string("a\xFF\0b", 4));
}

TEST_P(Processes, readToEndWaitsForWhoeverHoldsThePipe) {
  const auto child = script("(sleep 0.4; echo late) & echo early");
  EXPECT_EQ(child->waitForExit(), 0);
  EXPECT_EQ(readAll(*child).out, "early\nlate\n");
}

TEST_P(Processes, readUntilExitWaitsForNobodyElse) {
  ScratchFolder scratch;
  const Stopwatch watch;
  const auto child = script("sleep 30 & echo $! > '" + scratch.at("number") + "'; echo early");
  EXPECT_EQ(readUntilExit(*child).out, "early\n");
  EXPECT_LT(watch.elapsed(), 10s);
  killNumberedIn(scratch, "number");
}

TEST_P(Processes, aToolMayCloseItsPipesAndLiveOn) {
  const auto child = script("exec >&- 2>&-; sleep 0.4; exit 7");
  const Stopwatch watch;
  EXPECT_EQ(readUntilExit(*child).out, "");
  EXPECT_GE(watch.elapsed(), 300ms);
  EXPECT_FALSE(child->isRunning());
  EXPECT_EQ(child->waitForExit(), 7);
}

TEST_P(Processes, waitForExitMayBeAskedAgain) {
  const auto child = script("exit 5");
  EXPECT_EQ(child->waitForExit(), 5);
  EXPECT_EQ(child->waitForExit(), 5);
  EXPECT_FALSE(child->isRunning());
}

TEST_P(Processes, terminateAsksAndKillDoesNot) {
  const auto polite = script("exec sleep 30");
  EXPECT_TRUE(polite->isRunning());
  polite->terminate();
  EXPECT_EQ(polite->waitForExit(), 15);

  const auto stubborn = script("trap '' TERM; echo ready; while :; do sleep 0.1; done");
  std::string ready;
  std::thread reader(
      [&] { stubborn->readToEnd([&](std::string_view piece) { ready += piece; }, [](std::string_view) {}); });
  std::this_thread::sleep_for(300ms);
  stubborn->terminate();
  std::this_thread::sleep_for(200ms);
  EXPECT_TRUE(stubborn->isRunning());
  stubborn->kill();
  EXPECT_EQ(stubborn->waitForExit(), 9);
  reader.join();
  EXPECT_EQ(ready, "ready\n");
}

TEST_P(Processes, signalsReachThatOneProcessAlone) {
  ScratchFolder scratch;
  const auto child = script("sleep 30 & echo $! > '" + scratch.at("number") + "'; echo ready; wait");
  std::string ready;
  while (scratch.read("number").empty()) std::this_thread::sleep_for(10ms);
  child->kill();
  EXPECT_EQ(child->waitForExit(), 9);
  EXPECT_TRUE(scene::isAlive(std::stoi(scratch.read("number"))));
  killNumberedIn(scratch, "number");
}

TEST_P(Processes, aToolCanBeEndedWhileAnotherThreadWaitsForIt) {
  const auto child = script("exec sleep 30");
  int status = -1;
  std::thread waiting([&] { status = child->waitForExit(); });
  std::this_thread::sleep_for(100ms);
  child->kill();
  waiting.join();
  EXPECT_EQ(status, 9);
}

TEST_P(Processes, readingOnOneThreadAndWaitingOnAnotherAgree) {
  for (int i = 0; i < 20; ++i) {
    const auto child = script("echo x; echo y >&2; exit 4");
    Output output;
    std::thread reader([&] { output = readAll(*child); });
    while (child->isRunning()) std::this_thread::sleep_for(1ms);
    EXPECT_EQ(child->waitForExit(), 4);
    reader.join();
    EXPECT_EQ(output.out + output.err, "x\ny\n");
  }
}

TEST_P(Processes, aChildThatHasEndedLeavesNoZombie) {
  std::string number;
  {
    const auto child = script("echo $$");
    number = readAll(*child).out;
    std::this_thread::sleep_for(300ms);
  }
  EXPECT_EQ(::waitpid(std::stoi(number), nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_P(Processes, destroyingARunningChildNeitherWaitsNorKills) {
  ScratchFolder scratch;
  const Stopwatch watch;
  { const auto child = script("echo $$ > '" + scratch.at("number") + "'; exec sleep 30"); }
  EXPECT_LT(watch.elapsed(), 10s);
  while (scratch.read("number").empty()) std::this_thread::sleep_for(10ms);
  EXPECT_TRUE(scene::isAlive(std::stoi(scratch.read("number"))));
  killNumberedIn(scratch, "number");
  ::waitpid(std::stoi(scratch.read("number")), nullptr, 0);
}

TEST_P(Processes, lineageBeginsHereAndGoesUp) {
  const auto chain = lineage();
  ASSERT_GE(chain.size(), 1u);
  EXPECT_EQ(chain[0], ::getpid());
  if (::getppid() != 0) {
    ASSERT_GE(chain.size(), 2u);
    EXPECT_EQ(chain[1], ::getppid());
  }
  EXPECT_EQ(std::count(chain.begin(), chain.end(), 0), 0);
}

}  // namespace
}  // namespace quarn::contract
