#include <condition_variable>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <thread>

#include "tests/support/HeardEvents.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/Inotify.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;
using Paths = std::set<std::string>;

/// Waits until what has been made so far is older than a stream that begins now, by the coarsest clock.
void letAge() {
  std::this_thread::sleep_for(3100ms);
}

/// Holds the first call until it is let go, so that events pile up.
class HeldSink {
 public:
  void operator()(const std::vector<Path>& changed) {
    std::unique_lock guard(lock_);
    for (const Path& path : changed) paths_.insert(path.text());
    isHeld_ = true;
    wake_.notify_all();
    wake_.wait(guard, [this] { return isLetGo_; });
  }
  void waitUntilHeld() {
    std::unique_lock guard(lock_);
    wake_.wait(guard, [this] { return isHeld_; });
  }
  void letGo() {
    const std::lock_guard guard(lock_);
    isLetGo_ = true;
    wake_.notify_all();
  }
  bool hasHeard(const std::string& path) {
    const std::lock_guard guard(lock_);
    return paths_.contains(path);
  }
  const Paths& paths() const { return paths_; }

 private:
  std::mutex lock_;
  std::condition_variable wake_;
  bool isHeld_ = false, isLetGo_ = false;
  Paths paths_;
};

TEST(FileEventOverflow, anOverflowIsMadeGoodByLookingAgain) {
  const int limit = inotifyQueueLimit();
  if (limit < 16 || limit > 1'000'000) GTEST_SKIP() << "the queue holds " << limit << " events";
  const ScratchFolder scratch, outside;
  for (const char* file : {"kept/inner/old", "removed/inner/old", "renamed/inner/old", "replaced/old"})
    scratch.write(file);
  for (const char* file : {"moved/inner/old", "second/other"}) outside.write(file);
  letAge();
  HeldSink sink;
  auto stream = hostPlatform().events.watch({scratch.path(), scratch / "late"}, std::ref(sink));
  scratch.write("first");
  sink.waitUntilHeld();
  ASSERT_TRUE(overflowInotify(scratch.text()));
  // Nobody is told of any of this.
  scratch.write("kept/inner/file");
  scratch.write("made/inner/file");
  scratch.write("late/file");
  std::filesystem::remove_all(scratch.at("removed"));
  std::filesystem::rename(scratch.at("renamed"), scratch.at("other"));
  std::filesystem::rename(outside.at("moved"), scratch.at("movedIn"));
  std::filesystem::remove_all(scratch.at("replaced"));
  std::filesystem::rename(outside.at("second"), scratch.at("replaced"));
  sink.letGo();
  for (int i = 0; i < 3000 && !sink.hasHeard(scratch.at("made/inner/file")); ++i)
    std::this_thread::sleep_for(10ms);
  scratch.write("last");
  for (int i = 0; i < 3000 && !sink.hasHeard(scratch.at("last")); ++i) std::this_thread::sleep_for(10ms);
  const Paths probes = probeEachFolder(scratch.text(), "probe");
  stream->stop();
  EXPECT_EQ(missingIn(sink.paths(), scratch.text()),
            (Paths{scratch.at("kept"), scratch.at("kept/inner/old")}));
  for (const char* gone : {"removed", "removed/inner", "renamed", "renamed/inner"})
    EXPECT_TRUE(sink.paths().contains(scratch.at(gone))) << gone;
  EXPECT_EQ(without(probes, sink.paths()), Paths()) << "in folders that appeared unnoticed";
}

TEST(FileEventOverflow, whatCannotBeWatchedIsLookedAtInTheEnd) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "calls can't be refused here";
  const ScratchFolder scratch, outside;
  for (const char* file : {"kept/inner/old", "gone/old", "renamed/old"}) scratch.write(file);
  outside.write("moved/inner/old");
  letAge();
  // What inotify_add_watch(2) answers when there are as many watches as a user may have.
  EXPECT_EQ(child::failuresRefusing(SYS_inotify_add_watch, ENOSPC,
                                    [&] {
                                      HeardEvents events({scratch.path()});
                                      ASSERT_TRUE(events.isWatching());
                                      scratch.write("kept/inner/deeper/file");
                                      std::filesystem::rename(outside.at("moved"), scratch.at("movedIn"));
                                      std::filesystem::rename(scratch.at("renamed"), scratch.at("other"));
                                      std::filesystem::remove_all(scratch.at("gone"));
                                      const Paths& heard = events.stop();
                                      EXPECT_TRUE(heard.contains(scratch.at("gone")));
                                      EXPECT_EQ(missingIn(heard, scratch.text()),
                                                (Paths{scratch.at("kept"), scratch.at("kept/inner/old")}));
                                    }),
            "");
}

}  // namespace
}  // namespace quarn
