#include "QuarnCore/foundation/CommandRunner.h"

#include <mutex>
#include <thread>

#include "Platform/Text.h"

namespace quarn {

std::vector<std::string> CommandResult::lines() const {
  const auto pieces = Text::nonEmptyLines(standardOutput);
  return {pieces.begin(), pieces.end()};
}

namespace CommandRunner {
namespace {

using namespace std::chrono_literals;
using SteadyTime = std::chrono::steady_clock::time_point;

constexpr auto pollInterval = 50ms;
constexpr auto graceBeforeKill = 2s;

/// Returns nothing at all if any byte isn't UTF-8: part of a text could be mistaken for the whole.
std::string textOf(std::string bytes) {
  if (!Text::isUTF8(bytes)) bytes.clear();
  return bytes;
}

/// Filled by the reading thread while the caller waits.
class ConcurrentBuffer {
 public:
  void append(std::string_view bytes) {
    std::lock_guard guard(lock_);
    data_.append(bytes);
  }
  std::string text() {
    std::lock_guard guard(lock_);
    return textOf(data_);
  }

 private:
  std::mutex lock_;
  std::string data_;
};

/// Reads both streams on a thread of its own. Otherwise a tool that writes more than a pipe holds would
/// block, and the wait for its end with it.
class Reader {
 public:
  explicit Reader(Child& child)
      : thread_([this, &child] {
          child.readToEnd([this](std::string_view bytes) { output.append(bytes); },
                          [this](std::string_view bytes) { error.append(bytes); });
        }) {}
  ~Reader() { waitForEnd(); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  void waitForEnd() {
    if (thread_.joinable()) thread_.join();
  }

  ConcurrentBuffer output;
  ConcurrentBuffer error;

 private:
  std::thread thread_;
};

/// Returns false if the tool still runs at the deadline.
bool endsBefore(SteadyTime deadline, const ReadOnlyPlatform& platform, Child& child) {
  while (child.isRunning() && platform.clock.steadyNow() < deadline) platform.clock.sleep(pollInterval);
  return !child.isRunning();
}

/// Returns true if the tool had to be ended.
bool endAtTimeout(double timeout, const ReadOnlyPlatform& platform, Child& child) {
  if (endsBefore(platform.clock.after(timeout), platform, child)) return false;
  child.terminate();
  if (!endsBefore(platform.clock.steadyNow() + graceBeforeKill, platform, child)) child.kill();
  return true;
}

}  // namespace

CommandResult run(const ReadOnlyPlatform& platform, const std::string& executable,
                  const std::vector<std::string>& arguments, std::optional<double> timeout) {
  auto started = platform.processes.start(Path(executable), arguments, OutputStreams::separate);
  if (!started) return {notStarted, "", started.error().description, false};
  const std::unique_ptr<Child> child = *std::move(started);

  Reader reader(*child);
  const bool timedOut = timeout && endAtTimeout(*timeout, platform, *child);
  const int status = child->waitForExit();
  // Only after the process has ended: both buffers are complete now.
  reader.waitForEnd();
  return {status, reader.output.text(), reader.error.text(), timedOut};
}

Result<CommandResult> capture(const ReadOnlyPlatform& platform, const Path& executable,
                              const std::vector<std::string>& arguments, OutputStreams streams) {
  auto started = platform.processes.start(executable, arguments, streams);
  if (!started) return started.error();
  const std::unique_ptr<Child> child = *std::move(started);
  std::string output;
  child->readToEnd([&output](std::string_view bytes) { output.append(bytes); }, [](std::string_view) {});
  const int status = child->waitForExit();
  return CommandResult{status, textOf(std::move(output)), "", false};
}

}  // namespace CommandRunner
}  // namespace quarn
