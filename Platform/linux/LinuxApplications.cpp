#include <charconv>
#include <fcntl.h>
#include <signal.h>
#include <string>
#include <string_view>
#include <thread>

#include "Platform/linux/LinuxPlatform.h"
#include "Platform/posix/BundleOfExecutable.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/FolderReader.h"

namespace quarn {
namespace {

constexpr std::string_view ofDeleted = " (deleted)";

/// Removes the " (deleted)" that the kernel appends to the path of an executable that no longer exists
/// (/proc/pid/exe, proc(5)).
std::string withoutRemark(std::string executable) {
  const std::size_t length = executable.size();
  if (length > ofDeleted.size() && executable.compare(length - ofDeleted.size(), length, ofDeleted) == 0)
    executable.resize(length - ofDeleted.size());
  return executable;
}

/// Returns the executable of a process, or an empty text for a zombie. The link can't be read for another
/// user's process (proc(5)); then the first argument stands in for it.
std::string executable(int table, const std::string& process) {
  if (auto link = linkText(table, (process + "/exe").c_str())) return withoutRemark(*std::move(link));
  std::string arguments;
  if (readWhole(PathAt(Path("/proc/" + process + "/cmdline")), arguments) != 0) return {};
  return arguments.substr(0, arguments.find('\0'));
}

std::optional<int> identifier(std::string_view name) {
  int number = 0;
  const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
  if (result.ec != std::errc() || result.ptr != name.data() + name.size()) return std::nullopt;
  return number;
}

Descriptor openTable() {
  return Descriptor(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Sends a signal unless the identifier belongs to another process by now.
void signalIfStill(const RunningApplication& application, int signal) {
  const Descriptor table = openTable();
  const std::string process = std::to_string(application.processIdentifier);
  if (application.processIdentifier > 0 &&
      bundleOfExecutable(executable(table.number(), process)) == application.bundlePath)
    ::kill(application.processIdentifier, signal);
}

}  // namespace

std::vector<RunningApplication> LinuxApplications::running() const {
  std::vector<RunningApplication> applications;
  const Descriptor table = openTable();
  if (!table.isOpen()) return applications;
  FolderReader reader;
  reader.begin(table.number());
  while (const auto entry = reader.next()) {
    const auto process = identifier(entry->name);
    if (!process) continue;
    if (auto found = bundleOfExecutable(executable(table.number(), entry->name)))
      applications.push_back({*process, std::move(found)});
  }
  return applications;
}

void LinuxApplications::terminate(const RunningApplication& application) {
  signalIfStill(application, SIGTERM);
}

void LinuxApplications::forceTerminate(const RunningApplication& application) {
  signalIfStill(application, SIGKILL);
}

void LinuxApplications::wait(std::chrono::milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace quarn
