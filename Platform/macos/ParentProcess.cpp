#include "Platform/posix/ParentProcess.h"

#include <cstddef>
#include <sys/sysctl.h>

namespace quarn {

int parentOf(int process) {
  // Unlike what is newer, this tells of everybody’s processes, and those that started us may be root’s.
  int question[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, process};
  kinfo_proc answer{};
  std::size_t size = sizeof answer;
  if (::sysctl(question, 4, &answer, &size, nullptr, 0) != 0 || size == 0) return 0;
  return answer.kp_eproc.e_ppid;
}

}  // namespace quarn
