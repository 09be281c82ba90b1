#include "tests/support/Child.h"

#include <exception>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace child {
namespace {

const testing::TestResult& result() {
  return *testing::UnitTest::GetInstance()->current_test_info()->result();
}

std::string failuresSince(int firstPart) {
  std::string text;
  for (int i = firstPart; i < result().total_part_count(); ++i) {
    const testing::TestPartResult& part = result().GetTestPartResult(i);
    if (part.failed()) text += std::to_string(part.line_number()) + ": " + part.message() + std::string("\n");
  }
  return text;
}

std::string runHere(const std::function<void()>& body) {
  const int before = result().total_part_count();
  try {
    body();
  } catch (const std::exception& exception) {
    return std::string("threw: ") + exception.what();
  }
  return failuresSince(before);
}

}  // namespace

std::string failures(const std::function<void()>& body) {
  int ends[2];
  if (::pipe(ends) != 0) return "no pipe";
  const pid_t process = ::fork();
  if (process == 0) {
    ::close(ends[0]);
    const std::string text = runHere(body);
    const bool written = ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(written ? 0 : 1);
  }
  ::close(ends[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(process, &status, 0);
  if (status != 0) text += "ended with status " + std::to_string(status);
  return text;
}

bool succeeds(const std::function<bool()>& body) {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(body() ? 0 : 1);
  int status = 0;
  return ::waitpid(process, &status, 0) == process && status == 0;
}

std::string failuresWithoutRights(const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(dropRights());
    body();
  });
}

}  // namespace child
