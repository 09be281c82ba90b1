#include "Rights.h"

#include <array>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

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

}  // namespace quarn::room::Rights
