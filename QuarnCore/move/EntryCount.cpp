#include "QuarnCore/move/EntryCount.h"

#include <thread>

#include "Platform/UTF8.h"

namespace quarn {
namespace {

/// Counts lines that aren't empty as they arrive, so that the list of a large tree is never held in memory.
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

struct EntryCount::Run {
  explicit Run(std::unique_ptr<Child> started) : child(std::move(started)), reader([this] { read(); }) {}

  void read() {
    child->readToEnd(
        [this](std::string_view bytes) {
          lines.take(bytes);
          text.take(bytes);
        },
        [](std::string_view) {});
  }
  void waitForEnd() {
    if (reader.joinable()) reader.join();
  }

  std::unique_ptr<Child> child;
  LineCounter lines;
  UTF8Check text;
  std::thread reader;  // last, because it uses the others from the moment it starts
};

EntryCount::EntryCount(const ReadOnlyPlatform& platform, const Path& root) {
  auto child = platform.processes.start(Path("/usr/bin/find"), {root.text()}, OutputStreams::separate);
  if (child) run_ = std::make_unique<Run>(*std::move(child));
}

EntryCount::~EntryCount() {
  if (!run_) return;
  // Ends `find`, or the wait for the thread could take as long as the rest of the tree.
  run_->child->terminate();
  run_->waitForEnd();
}

std::optional<std::int64_t> EntryCount::value() {
  if (!run_) return std::nullopt;
  run_->waitForEnd();
  if (run_->child->waitForExit() != 0 || !run_->text.isText()) return std::nullopt;
  return run_->lines.total();
}

}  // namespace quarn
