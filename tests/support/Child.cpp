#include "tests/support/Child.h"

#include <cerrno>
#include <cstddef>
#include <exception>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace child {
namespace {

const testing::TestResult& result() {
  return *testing::UnitTest::GetInstance()->current_test_info()->result();
}

std::string failuresSince(int firstPart) {
  std::string text;
  for (int i = firstPart; i < result().total_part_count(); ++i) {
    const testing::TestPartResult& part = result().GetTestPartResult(i);
    if (part.failed()) text += std::to_string(part.line_number()) + ": " + part.message() + std::string("\n");
  }
  return text;
}

std::string runHere(const std::function<void()>& body) {
  const int before = result().total_part_count();
  try {
    body();
  } catch (const std::exception& exception) {
    return std::string("threw: ") + exception.what();
  }
  return failuresSince(before);
}

/// By a filter that the kernel asks at every call; see seccomp(2).
bool refuse(long call, int error) {
  sock_filter steps[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | (static_cast<unsigned>(error) & SECCOMP_RET_DATA)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{std::size(steps), steps};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

bool succeedsInChild(const std::function<bool()>& body) {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(body() ? 0 : 1);
  int status = 0;
  return ::waitpid(process, &status, 0) == process && status == 0;
}

bool takeOwnMounts() {
  return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

std::string failures(const std::function<void()>& body) {
  int ends[2];
  if (::pipe(ends) != 0) return "no pipe";
  const pid_t process = ::fork();
  if (process == 0) {
    ::close(ends[0]);
    const std::string text = runHere(body);
    const bool written = ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(written ? 0 : 1);
  }
  ::close(ends[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(process, &status, 0);
  if (status != 0) text += "ended with status " + std::to_string(status);
  return text;
}

std::string failuresWithoutRights(const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(dropRights());
    body();
  });
}

// A user who isn't root has none of these to begin with.
bool dropRights() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2]{};
  if (::syscall(SYS_capget, &header, data) != 0) return false;
  const unsigned dropped = (1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH) | (1u << CAP_FOWNER);
  data[0].effective &= ~dropped;
  data[0].permitted &= ~dropped;
  data[0].inheritable &= ~dropped;
  return ::syscall(SYS_capset, &header, data) == 0;
}

std::string failuresRefusing(long call, int error, const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(refuse(call, error));
    body();
  });
}

bool canRefuseCalls() {
  return succeedsInChild([] { return refuse(SYS_renameat2, EINVAL); });
}

std::string failuresWithOwnMounts(const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(takeOwnMounts());
    body();
  });
}

bool canMount() {
  return succeedsInChild(takeOwnMounts);
}

bool mountMemory(const std::string& folder, const std::string& options) {
  return ::mount("memory", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool makeReadOnly(const std::string& folder) {
  return ::mount("memory", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

}  // namespace child
