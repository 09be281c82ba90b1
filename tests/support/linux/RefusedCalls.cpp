#include "tests/support/linux/RefusedCalls.h"

#include <cerrno>
#include <cstddef>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include "tests/support/Child.h"

namespace child {
namespace {

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

}  // namespace

std::string failuresRefusing(long call, int error, const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(refuse(call, error));
    body();
  });
}

bool canRefuseCalls() {
  return succeeds([] { return refuse(SYS_renameat2, EINVAL); });
}

}  // namespace child
