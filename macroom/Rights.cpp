#include "Rights.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace quarn::room::Rights {

void becomeOrdinary() {
  ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0);
  for (unsigned long right = 0; ::prctl(PR_CAPBSET_READ, right, 0, 0, 0) >= 0; ++right)
    if (right != CAP_SYS_ADMIN) ::prctl(PR_CAPBSET_DROP, right, 0, 0, 0);

  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
  if (::syscall(SYS_capget, &header, sets.data()) != 0) return;
  for (auto& set : sets) set.inheritable = 0;
  ::syscall(SYS_capset, &header, sets.data());
}

void hideCallsUnknownToTracers() {
  constexpr std::array<unsigned, 3> hidden = {SYS_statx, SYS_faccessat2, SYS_openat2};
  std::vector<sock_filter> filter = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const unsigned call : hidden) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

}  // namespace quarn::room::Rights
