#include "Platform/posix/Spawn.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include "Platform/system/SpawnCalls.h"

extern char** environ;

namespace quarn {
namespace {

class FileActions {
 public:
  FileActions() { ::posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void hand(int ours, int theirs) {
    if (ours >= 0) ::posix_spawn_file_actions_adddup2(&actions_, ours, theirs);
  }
  void closeAbove2() { quarn::closeAbove2(actions_); }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

/// What posix_spawn(2) sets in the new process before the tool starts.
class Attributes {
 public:
  Attributes() {
    ::posix_spawnattr_init(&attributes_);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    // The actions of these two signals can't be changed (sigaction(2)).
    sigdelset(&all, SIGKILL);
    sigdelset(&all, SIGSTOP);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    // Its own group, so that Ctrl-C in the terminal reaches only us.
    ::posix_spawnattr_setpgroup(&attributes_, 0);
    int flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
// Only macOS has this flag. Elsewhere `closeAbove2` adds an action that does the same.
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
    ::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags));
  }
  ~Attributes() {
    ::posix_spawnattr_destroy(&attributes_);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  const posix_spawnattr_t* get() const {
    return &attributes_;
  }

 private:
  posix_spawnattr_t attributes_;
};

bool holdsNul(const std::string& word) {
  return word.find('\0') != std::string::npos;
}

}  // namespace

int spawn(const Path& executable, const std::vector<std::string>& arguments, int output, int error,
          pid_t& process) {
  if (executable.holdsNul() || std::any_of(arguments.begin(), arguments.end(), holdsNul)) return EINVAL;
  FileActions actions;
  actions.hand(output, STDOUT_FILENO);
  actions.hand(error, STDERR_FILENO);
  // Last, so that it doesn't close the pipes before they have been passed on.
  actions.closeAbove2();
  // posix_spawn(2) takes pointers to non-const characters for historical reasons and doesn't change them.
  std::vector<char*> words{const_cast<char*>(executable.text().c_str())};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const Attributes attributes;
  return ::posix_spawn(&process, words[0], actions.get(), attributes.get(), words.data(), environ);
}

}  // namespace quarn
