#include "QuarnCore/move/EntryCount.h"

#include "Platform/UTF8Check.h"

namespace quarn::EntryCount {
namespace {

/// Counts lines that aren't empty as they come; the whole list of a large tree is never held.
class LineCounter {
 public:
  void take(std::string_view bytes) {
    for (const char byte : bytes) {
      if (byte != '\n') {
        lineHasText_ = true;
      } else if (lineHasText_) {
        endLine();
      }
    }
  }
  std::int64_t total() {
    if (lineHasText_) endLine();
    return lines_;
  }

 private:
  void endLine() {
    ++lines_;
    lineHasText_ = false;
  }

  std::int64_t lines_ = 0;
  bool lineHasText_ = false;
};

}  // namespace

std::optional<std::int64_t> ofTree(Platform& platform, const Path& root) {
  auto child = platform.processes.start(Path("/usr/bin/find"), {root.text()}, OutputStreams::separate);
  if (!child) return std::nullopt;
  LineCounter lines;
  UTF8Check check;
  (*child)->readToEnd(
      [&](std::string_view bytes) {
        lines.take(bytes);
        check.take(bytes);
      },
      [](std::string_view) {});
  if ((*child)->waitForExit() != 0 || !check.isText()) return std::nullopt;
  return lines.total();
}

}  // namespace quarn::EntryCount
