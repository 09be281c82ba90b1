#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/Child.h"
#include "tests/support/Scene.h"

namespace child {

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

}  // namespace child

namespace scene {

void becomeOrdinary(bool mayMount) {
  // Off the bounding set, since a program started by root would get them back from there.
  for (const int capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER}) {
    ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
  }
  if (!mayMount) ::prctl(PR_CAPBSET_DROP, CAP_SYS_ADMIN, 0, 0, 0);
}

}  // namespace scene
