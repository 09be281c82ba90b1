#include <future>
#include <thread>

#include "QuarnCore/foundation/SizingService.h"
#include "tests/support/FakeTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/NiceValue.h"

namespace quarn {
namespace {

using doubles::FakeTree;

Platform with(FileSystem& files) {
  return replacing({.files = &files});
}

/// A tree without an end: one file of 512 bytes in each folder, until the visitor has enough.
class EndlessTree : public FakeTree {
 public:
  using FakeTree::FakeTree;
  void walk(const Path&, Hidden, WalkVisitor& visitor) const override {
    Once once;
    for (std::uint64_t number = 1;; ++number) {
      once.items = {folder("f" + std::to_string(number), {1, number}), file("a", 512)};
      if (once.show(visitor)) return;
      begun.store(true);
    }
  }
  mutable std::atomic<bool> begun{false};

 private:
  struct Once {
    std::vector<Item> items;
    bool show(WalkVisitor& visitor) {
      struct Watch : WalkVisitor {
        explicit Watch(WalkVisitor& visitor) : inner(visitor) {}
        WalkStep visit(const WalkItem& item) override {
          const WalkStep step = inner.visit(item);
          stopped = stopped || step == WalkStep::stop;
          return step;
        }
        WalkStep failed(const Path& path, const PlatformError& error) override {
          return inner.failed(path, error);
        }
        WalkVisitor& inner;
        bool stopped = false;
      } watch(visitor);
      FakeTree tree(hostPlatform().files);
      tree.items = items;
      tree.walk({}, Hidden::included, watch);
      return watch.stopped;
    }
  };
};

TEST(SizingServiceAsync, givesTheSameFigureAtEveryPriority) {
  const ScratchFolder folder;
  for (int i = 0; i < 20; ++i) folder.write("d" + std::to_string(i) + "/f", std::string(10'000, 'x'));
  folder.link("link", folder.text());
  const auto expected = SizingService::measure(hostPlatform(), folder.path());
  ASSERT_GT(expected, 0);
  for (const auto priority :
       {ThreadPriority::userInitiated, ThreadPriority::utility, ThreadPriority::background}) {
    EXPECT_EQ(SizingService::sizeAsync(hostPlatform(), folder.path(), priority)->value(), expected);
    EXPECT_EQ(SizingService::sizeAsync(hostPlatform(), folder / "link", priority)->value(), expected);
  }
}

TEST(SizingServiceAsync, runsOnAThreadOfItsOwn) {
  FakeTree files(hostPlatform().files);
  files.items = {FakeTree::file("a", 512)};
  std::thread::id walker;
  files.afterEach = [&](const FakeTree::Item&) { walker = std::this_thread::get_id(); };
  Platform platform = with(files);
  EXPECT_EQ(SizingService::sizeAsync(platform, Path("/Applications"), ThreadPriority::utility)->value(), 512);
  EXPECT_NE(walker, std::thread::id());
  EXPECT_NE(walker, std::this_thread::get_id());
}

TEST(SizingServiceAsync, runsAtThePriorityThatIsAskedFor) {
  if (const int own = niceValue(); own != 0) GTEST_SKIP() << "the tests run at nice value " << own;
  FakeTree files(hostPlatform().files);
  files.items = {FakeTree::file("a", 512)};
  int met = -1;
  files.afterEach = [&](const FakeTree::Item&) { met = niceValue(); };
  Platform platform = with(files);
  const auto measured = [&](ThreadPriority priority) {
    SizingService::sizeAsync(platform, Path("/Applications"), priority)->value();
    return met;
  };
  EXPECT_EQ(measured(ThreadPriority::userInitiated), 0);
  EXPECT_EQ(measured(ThreadPriority::utility), 5);
  EXPECT_EQ(measured(ThreadPriority::background), 15);
}

TEST(SizingServiceAsync, severalAtATimeDoNotDisturbEachOther) {
  const ScratchFolder folder;
  for (int i = 0; i < 30; ++i) folder.write("d" + std::to_string(i) + "/f", std::string(5'000, 'x'));
  const auto expected = SizingService::measure(hostPlatform(), folder.path());
  std::vector<std::unique_ptr<SizingService::SizeTask>> tasks;
  for (int i = 0; i < 6; ++i) {
    tasks.push_back(SizingService::sizeAsync(hostPlatform(), folder.path(), ThreadPriority::userInitiated));
  }
  for (const auto& task : tasks) EXPECT_EQ(task->value(), expected);
}

TEST(SizingServiceAsync, cancelledItGivesTheSumOfWhatWasWalked) {
  FakeTree files(hostPlatform().files);
  std::promise<void> reached;
  std::promise<void> goOn;
  files.items = {FakeTree::folder("one", {1, 1}), FakeTree::file("one/a", 512), FakeTree::file("one/b", 1024),
                 FakeTree::folder("two", {1, 2}), FakeTree::file("two/c", 2048)};
  files.afterEach = [&](const FakeTree::Item& item) {
    if (item.path != "one/a") return;
    reached.set_value();
    goOn.get_future().wait();
  };
  Platform platform = with(files);
  const auto task = SizingService::sizeAsync(platform, Path("/Applications"), ThreadPriority::utility);
  reached.get_future().wait();
  task->cancel();
  goOn.set_value();
  EXPECT_EQ(task->value(), 512 + 1024);
}

TEST(SizingServiceAsync, cancelledAfterItsEndItKeepsTheFigure) {
  const ScratchFolder folder;
  folder.write("a", std::string(10'000, 'x'));
  const auto expected = SizingService::measure(hostPlatform(), folder.path());
  std::promise<void> done;
  FakeTree files(hostPlatform().files);
  files.items = {FakeTree::file("a", expected)};
  files.afterEach = [&](const FakeTree::Item&) { done.set_value(); };
  Platform platform = with(files);
  const auto task = SizingService::sizeAsync(platform, folder.path(), ThreadPriority::utility);
  done.get_future().wait();
  task->cancel();
  EXPECT_EQ(task->value(), expected);
}

TEST(SizingServiceAsync, aTaskThatNobodyWantsAnyMoreStops) {
  EndlessTree files(hostPlatform().files);
  Platform platform = with(files);
  auto task = SizingService::sizeAsync(platform, Path("/Applications"), ThreadPriority::utility);
  while (!files.begun.load()) std::this_thread::yield();
  task.reset();  // would never return if the walk went on
  EXPECT_EQ(task, nullptr);
}

}  // namespace
}  // namespace quarn
