#include "Platform/posix/LeftoverFiles.h"

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <optional>
#include <signal.h>
#include <string_view>
#include <vector>

#include "Platform/posix/PathAt.h"
#include "Platform/system/FolderReader.h"

namespace quarn {
namespace {

// The system's own names for such files contain "nosync" too. Services that synchronize a Mac's documents
// skip files with that word in their names.
constexpr std::string_view beginning = ".quarn.nosync";

template <class Number>
Number takeNumber(std::string_view& text) {
  Number number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
  return number;
}

/// Returns the process that a temporary file belongs to, or nothing for any other name.
std::optional<pid_t> writerOf(std::string_view name) {
  if (!name.starts_with(beginning)) return std::nullopt;
  std::string_view rest = name.substr(beginning.size());
  const auto process = takeNumber<pid_t>(rest);
  if (process <= 0 || !rest.starts_with('.')) return std::nullopt;
  rest.remove_prefix(1);
  const auto count = takeNumber<unsigned>(rest);
  // Composing the name again refuses leading zeros, signs and trailing text.
  if (temporaryName(process, count) != name) return std::nullopt;
  return process;
}

bool hasEnded(pid_t process) {
  // Signal 0 only checks whether the process exists. EPERM would mean that it does (kill(2)).
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

std::string temporaryName(pid_t process, unsigned count) {
  return std::string(beginning) + std::to_string(process) + "." + std::to_string(count);
}

void removeLeftoverFiles(const Path& folder) {
  const PathAt at(folder);
  if (at.error()) return;
  const Descriptor opened(::openat(at.folder(), at.name(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.isOpen()) return;
  // Collected first: removing entries while the folder is read may make the reader skip some (readdir(3)).
  std::vector<std::string> leftovers;
  FolderReader reader;
  reader.begin(opened.number());
  while (const auto entry = reader.next()) {
    const auto writer = entry->kind == FileKind::regular ? writerOf(entry->name) : std::nullopt;
    if (writer && hasEnded(*writer)) leftovers.emplace_back(entry->name);
  }
  for (const std::string& name : leftovers) ::unlinkat(opened.number(), name.c_str(), 0);
}

}  // namespace quarn
