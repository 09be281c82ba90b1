#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"
#include "tests/support/Scene.h"

namespace scene {
namespace {

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> result;
  for (std::string& word : words) result.push_back(word.data());
  result.push_back(nullptr);
  return result;
}

int statusOf(int waitStatus) {
  return WIFSIGNALED(waitStatus) ? -WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

[[noreturn]] void become(std::vector<std::string> command, const RunOptions& options) {
  becomeOrdinary(options.mayMount);
  for (const std::string& setting : options.environment) {
    const auto equals = setting.find('=');
    ::setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  if (::chdir(options.folder.c_str()) != 0) std::_Exit(126);
  auto arguments = pointers(command);
  ::execvp(arguments[0], arguments.data());
  std::perror(arguments[0]);
  std::_Exit(127);
}

quarn::Pipe makePipe() {
  quarn::Pipe pipe = quarn::Pipe::make();
  if (!pipe.reading.isOpen()) fail("pipe");
  return pipe;
}

/// Hands on what the program has written by now.
void collect(quarn::Descriptor& from, std::string& into) {
  std::array<char, 65536> buffer{};
  const auto count = ::read(from.number(), buffer.data(), buffer.size());
  if (count > 0) into.append(buffer.data(), static_cast<std::size_t>(count));
  if (count <= 0) from.close();
}

/// Feeds the input and collects both streams until the program has closed them.
void converse(quarn::Descriptor& input, quarn::Descriptor& output, quarn::Descriptor& error,
              const RunOptions& options, Run& result) {
  std::string_view rest = options.input ? std::string_view(*options.input) : std::string_view();
  if (rest.empty()) input.close();
  while (output.isOpen() || error.isOpen()) {
    // A closed one is -1, which poll passes over.
    std::array<pollfd, 3> polled{pollfd{output.number(), POLLIN, 0}, pollfd{error.number(), POLLIN, 0},
                                 pollfd{input.number(), POLLOUT, 0}};
    if (::poll(polled.data(), polled.size(), -1) < 0) continue;
    if (polled[2].revents != 0) {
      const auto count = ::write(input.number(), rest.data(), rest.size());
      if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
      if (count <= 0 || rest.empty()) input.close();
    }
    if (polled[0].revents != 0) collect(output, result.out);
    if (polled[1].revents != 0) collect(error, result.err);
  }
}

}  // namespace

Run run(const std::vector<std::string>& command, const RunOptions& options) {
  quarn::Pipe input = makePipe();
  quarn::Pipe output = makePipe();
  quarn::Pipe error = makePipe();
  const pid_t pid = ::fork();
  if (pid < 0) fail("fork");
  if (pid == 0) {
    if (options.input) {
      ::dup2(input.reading.number(), 0);
    } else {
      ::close(0);
    }
    ::dup2(output.writing.number(), 1);
    ::dup2(error.writing.number(), 2);
    become(command, options);
  }
  input.reading.close();
  output.writing.close();
  error.writing.close();
  Run result;
  converse(input.writing, output.reading, error.reading, options, result);
  int status = 0;
  ::waitpid(pid, &status, 0);
  result.status = statusOf(status);
  return result;
}

Run quarn(const std::vector<std::string>& arguments, const RunOptions& options) {
  std::vector<std::string> command = {"quarn"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return run(command, options);
}

Run shell(const std::string& script) {
  return run({"/bin/sh", "-c", script});
}

Background::Background(const std::vector<std::string>& command) : pid_(::fork()) {
  if (pid_ < 0) fail("fork");
  if (pid_ == 0) become(command, {});
}

Background::~Background() {
  if (status_) return;
  ::kill(pid_, SIGKILL);
  wait();
}

int Background::wait() {
  if (!status_) {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    status_ = statusOf(status);
  }
  return *status_;
}

}  // namespace scene
