#include "Started.h"

#include <cerrno>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"

namespace quarn::tests {

namespace {

void readSome(Descriptor& from, std::string& into) {
  char buffer[4096];
  const ssize_t count = ::read(from.number(), buffer, sizeof buffer);
  if (count > 0) into.append(buffer, static_cast<std::size_t>(count));
  if (count == 0 || (count < 0 && errno != EINTR)) from.close();
}

}  // namespace

Started::Started(const std::vector<std::string>& words, const std::function<void()>& before) {
  Pipe out = Pipe::make(), err = Pipe::make();
  if (!out.reading.isOpen() || !err.reading.isOpen()) return;
  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(out.writing.number(), STDOUT_FILENO);
    ::dup2(err.writing.number(), STDERR_FILENO);
    before();
    std::vector<char*> pointers;
    for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
  }
  out_ = std::move(out.reading);
  err_ = std::move(err.reading);
}

void Started::waitForOutput(const std::string& text) {
  while (out_.isOpen() && finished_.out.find(text) == std::string::npos) readSome(out_, finished_.out);
}

Finished Started::finish() {
  while (out_.isOpen() || err_.isOpen()) {
    pollfd both[2] = {{out_.number(), POLLIN, 0}, {err_.number(), POLLIN, 0}};
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
