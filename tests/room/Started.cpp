#include "Started.h"

#include <cerrno>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quarn::tests {

namespace {

bool readSome(int& fd, std::string& into) {
  char buffer[4096];
  const ssize_t count = ::read(fd, buffer, sizeof buffer);
  if (count > 0) {
    into.append(buffer, static_cast<std::size_t>(count));
    return true;
  }
  if (count < 0 && errno == EINTR) return true;
  ::close(fd);
  fd = -1;
  return false;
}

}  // namespace

Started::Started(const std::vector<std::string>& words, const std::function<void()>& before) {
  int out[2], err[2];
  if (::pipe(out) != 0 || ::pipe(err) != 0) return;
  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(out[1], STDOUT_FILENO);
    ::dup2(err[1], STDERR_FILENO);
    for (const int end : {out[0], out[1], err[0], err[1]}) ::close(end);
    before();
    std::vector<char*> pointers;
    for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
  }
  ::close(out[1]);
  ::close(err[1]);
  out_ = out[0];
  err_ = err[0];
}

void Started::waitForOutput(const std::string& text) {
  while (out_ >= 0 && finished_.out.find(text) == std::string::npos) readSome(out_, finished_.out);
}

Finished Started::finish() {
  while (out_ >= 0 || err_ >= 0) {
    pollfd both[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (::poll(both, 2, -1) <= 0) continue;
    if (both[0].revents != 0) readSome(out_, finished_.out);
    if (both[1].revents != 0) readSome(err_, finished_.err);
  }
  int raw = 0;
  while (::waitpid(pid_, &raw, 0) < 0 && errno == EINTR) continue;
  finished_.status = WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : WEXITSTATUS(raw);
  return finished_;
}

}  // namespace quarn::tests
