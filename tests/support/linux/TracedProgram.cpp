#include "tests/support/linux/TracedProgram.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Scene.h"

namespace scene {
namespace {

[[noreturn]] void execute(std::vector<std::string> command) {
  becomeOrdinary();
  // The calls of the script that is on the PATH are none of the program's.
  if (command[0] == "quarn") command[0] = "/usr/local/libexec/quarn";
  std::vector<char*> words;
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  // A leak can't be looked for in a process that is traced, and the attempt would count as a failure.
  ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  ::execvp(words[0], words.data());
  std::_Exit(127);
}

const std::string outputName = "output";

[[noreturn]] void becomeTraced(const std::function<void()>& body, int output) {
  const int nothing = ::open("/dev/null", O_RDWR);
  ::dup2(nothing, 0);
  for (const int stream : {1, 2}) ::dup2(output, stream);
  ::close(nothing);
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) std::_Exit(126);
  ::raise(SIGSTOP);
  body();
  std::_Exit(0);
}

/// The number of the call that a stopped child has entered; -1 is that of none.
bool replaceCall(pid_t process, int number) {
#if defined(__x86_64__)
  return ::ptrace(PTRACE_POKEUSER, process, offsetof(user_regs_struct, orig_rax),
                  static_cast<long>(number)) == 0;
#elif defined(__aarch64__)
  iovec value{&number, sizeof number};
  return ::ptrace(PTRACE_SETREGSET, process, NT_ARM_SYSTEM_CALL, &value) == 0;
#else
  return false;
#endif
}

/// What the call that a stopped child comes back from answers.
bool replaceAnswer(pid_t process, long answer) {
#if defined(__x86_64__)
  return ::ptrace(PTRACE_POKEUSER, process, offsetof(user_regs_struct, rax), answer) == 0;
#elif defined(__aarch64__)
  user_regs_struct registers{};
  iovec value{&registers, sizeof registers};
  if (::ptrace(PTRACE_GETREGSET, process, NT_PRSTATUS, &value) != 0) return false;
  registers.regs[0] = static_cast<unsigned long>(answer);
  return ::ptrace(PTRACE_SETREGSET, process, NT_PRSTATUS, &value) == 0;
#else
  return false;
#endif
}

/// The signal that a stop is about and that the child shall get; 0 for the stops of the tracing itself.
int signalOf(int status) {
  const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
  const bool isExec = status >> 8 == (SIGTRAP | (PTRACE_EVENT_EXEC << 8));
  return isCall || isExec ? 0 : WSTOPSIG(status);
}

}  // namespace

TracedProgram::TracedProgram(const std::vector<std::string>& command)
    : TracedProgram([&command] { execute(command); }) {}

TracedProgram::TracedProgram(const std::function<void()>& body)
    : output_(::memfd_create(outputName.c_str(), MFD_CLOEXEC)), process_(::fork()) {
  if (process_ == 0) becomeTraced(body, output_);
  if (process_ < 0 || !WIFSTOPPED(wait())) return;
  const long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
  if (::ptrace(PTRACE_SETOPTIONS, process_, nullptr, options) != 0) kill();
}

TracedProgram::~TracedProgram() {
  kill();
  ::close(output_);
}

int TracedProgram::wait() {
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0) {
    if (errno != EINTR) return 0;
  }
  if (WIFEXITED(status)) status_ = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) status_ = -WTERMSIG(status);
  return status;
}

std::optional<CallStop> TracedProgram::next() {
  for (int passedOn = 0; process_ > 0 && !status_;) {
    if (::ptrace(PTRACE_SYSCALL, process_, nullptr, passedOn) != 0) return std::nullopt;
    const int status = wait();
    if (status_ || !WIFSTOPPED(status)) return std::nullopt;
    passedOn = signalOf(status);
    if (WSTOPSIG(status) != (SIGTRAP | 0x80)) continue;
    CallStop stop{};
    const auto request = static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO);
    if (::ptrace(request, process_, sizeof stop, &stop) <= 0) return std::nullopt;
    return stop;
  }
  return std::nullopt;
}

void TracedProgram::kill() {
  if (process_ <= 0 || status_) return;
  ::kill(process_, SIGKILL);
  while (!status_) wait();
}

bool TracedProgram::refuse(int errorNumber) {
  if (!replaceCall(process_, -1)) return false;
  const auto stop = next();
  return stop && stop->op == PTRACE_SYSCALL_INFO_EXIT && replaceAnswer(process_, -errorNumber);
}

std::string TracedProgram::said() const {
  std::string text;
  char bytes[4096];
  for (ssize_t count; (count = ::pread(output_, bytes, sizeof bytes, static_cast<off_t>(text.size()))) > 0;)
    text.append(bytes, static_cast<std::size_t>(count));
  return text;
}

bool TracedProgram::isOutput(const std::string& path) {
  return path.starts_with("/memfd:" + outputName);
}

std::optional<std::uint64_t> TracedProgram::numberAt(std::uint64_t address) const {
  errno = 0;
  const long word = ::ptrace(PTRACE_PEEKDATA, process_, address, nullptr);
  if (errno != 0) return std::nullopt;
  return static_cast<std::uint64_t>(word);
}

std::string TracedProgram::textAt(std::uint64_t address) const {
  std::string text;
  while (const auto word = numberAt(address)) {
    char bytes[sizeof *word];
    std::memcpy(bytes, &*word, sizeof bytes);
    const std::size_t length = ::strnlen(bytes, sizeof bytes);
    text.append(bytes, length);
    if (length < sizeof bytes) break;
    address += sizeof bytes;
  }
  return text;
}

std::string TracedProgram::pathOf(int descriptor) const {
  const std::string own = "/proc/" + std::to_string(process_);
  const std::string link = descriptor == AT_FDCWD ? own + "/cwd" : own + "/fd/" + std::to_string(descriptor);
  std::error_code ignored;
  return std::filesystem::read_symlink(link, ignored).string();
}

}  // namespace scene
