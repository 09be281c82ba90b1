#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

bool write(const ScratchFolder& scratch, const std::string& content = "new") {
  return static_cast<bool>(hostPlatform().files.writeAtomically(scratch / "record", content));
}

/// The number of a process that has ended and been collected.
std::string endedProcess() {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(0);
  ::waitpid(process, nullptr, 0);
  return std::to_string(process);
}

/// A process that is killed in the middle of a write.
void writeAndBeKilled(const ScratchFolder& scratch) {
  const pid_t process = ::fork();
  if (process == 0) {
    const rlimit longestFile{100, 100}, noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::setrlimit(RLIMIT_FSIZE, &longestFile);
    ::signal(SIGXFSZ, SIG_DFL);
    write(scratch, std::string(1000, 'n'));
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
}

TEST(LeftoverFiles, aKilledWriteLeavesItsFileUntilTheNextOne) {
  ScratchFolder scratch;
  scratch.write("record", "old");
  writeAndBeKilled(scratch);
  EXPECT_EQ(scratch.read("record"), "old");
  EXPECT_EQ(scratch.count(), 2u);
  EXPECT_TRUE(write(scratch));
  EXPECT_EQ(scratch.read("record"), "new");
  EXPECT_EQ(scratch.count(), 1u);
}

/// As an ordinary user, who may not even ask whether other people's processes live.
std::string failuresAsNobody(const std::function<void()>& body) {
  return child::failures([&] {
    if (::geteuid() == 0) {
      ASSERT_EQ(::setuid(65534), 0);
    }
    body();
  });
}

TEST(LeftoverFiles, thoseOfALivingProcessStay) {
  ScratchFolder scratch;
  ::chmod(scratch.text().c_str(), 0777);
  const std::string ofTests = ".quarn.nosync" + std::to_string(::getpid()) + ".4711";
  scratch.write(ofTests);
  scratch.write(".quarn.nosync1.1");
  EXPECT_TRUE(write(scratch));
  ::unlink(scratch.at("record").c_str());
  EXPECT_EQ(failuresAsNobody([&] { EXPECT_TRUE(write(scratch)); }), "");
  EXPECT_TRUE(scratch.stands(ofTests));
  EXPECT_TRUE(scratch.stands(".quarn.nosync1.1"));
}

TEST(LeftoverFiles, everythingElseStays) {
  ScratchFolder scratch;
  const std::string process = endedProcess();
  const std::string name = ".quarn.nosync" + process;
  const std::vector<std::string> others{".quarn.nosync",
                                        ".quarn.nosync.1",
                                        name,
                                        name + ".",
                                        name + ".x",
                                        name + ".1.bak",
                                        name + ".1 ",
                                        name + ".01",
                                        ".quarn.nosync0" + process + ".1",
                                        ".quarn.nosync-1.1",
                                        ".quarn.nosync0.1",
                                        "quarn.nosync" + process + ".1",
                                        "x" + name + ".1",
                                        ".dat.nosync" + process + ".1",
                                        ".quarn.nosync99999999999999999999.1"};
  for (const std::string& other : others) scratch.write(other);
  scratch.folder(name + ".7");
  scratch.link(name + ".8", "record");
  EXPECT_TRUE(write(scratch));
  for (const std::string& other : others) EXPECT_TRUE(scratch.stands(other)) << other;
  EXPECT_TRUE(scratch.stands(name + ".7"));
  EXPECT_TRUE(scratch.stands(name + ".8"));
}

}  // namespace
}  // namespace quarn
