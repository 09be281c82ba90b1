#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

#include "QuarnCore/installer/FilesystemEventRecorder.h"
#include "tests/support/Replacing.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using Texts = std::vector<std::string>;

/// Events that a test decides.
class ToldEvents : public FileEvents {
 public:
  std::unique_ptr<FileEventStream> watch(const std::vector<Path>& roots, FileEventSink sink) const override {
    Texts texts;
    for (const Path& root : roots) texts.push_back(root.text());
    asked.push_back(texts);
    if (refuses) return nullptr;
    ++streams;
    sink_ = std::move(sink);
    return std::make_unique<Stream>(*this);
  }
  void tell(const Texts& paths) const {
    std::vector<Path> changed;
    for (const std::string& path : paths) changed.emplace_back(path);
    sink_(changed);
  }

  bool refuses = false;
  Texts rest;                        ///< told when a stream is stopped
  mutable std::vector<Texts> asked;  ///< the roots of each stream
  mutable int streams = 0;           ///< that haven't been stopped

 private:
  class Stream : public FileEventStream {
   public:
    explicit Stream(const ToldEvents& events) : events_(events) {}
    ~Stream() override { stop(); }
    void stop() override {
      if (std::exchange(isStopped_, true)) return;
      // On a thread of its own, as the system does.
      std::thread([this] { events_.tell(events_.rest); }).join();
      --events_.streams;
    }

   private:
    const ToldEvents& events_;
    bool isStopped_ = false;
  };

  mutable FileEventSink sink_;
};

class EventRecorder : public testing::Test {
 protected:
  ToldEvents events;
  Platform platform = replacing({.events = &events});
};

std::vector<Path> paths(const Texts& texts) {
  std::vector<Path> paths;
  for (const std::string& text : texts) paths.emplace_back(text);
  return paths;
}

TEST_F(EventRecorder, watchesItsRootsStandardized) {
  FilesystemEventRecorder recorder(platform, paths({"/a//b/./c", "/none/../d"}));
  recorder.start();
  EXPECT_EQ(events.asked, (std::vector<Texts>{{"/a/b/c", "/d"}}));
}

TEST_F(EventRecorder, returnsWhatItWasToldSortedAndOnce) {
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  recorder.start();
  events.tell({"/a/c", "/a/b"});
  events.tell({"/a/c", "/a//x/../y/", "/a/B", "/a/b/c"});
  EXPECT_EQ(recorder.stop(), (Texts{"/a/B", "/a/b", "/a/b/c", "/a/c", "/a/y"}));
}

TEST_F(EventRecorder, takesCanonicallyEquivalentTextsForOne) {
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  recorder.start();
  events.tell({"/a/cafe\u0301", "/a/caf\u00e9", "/a/cafz"});
  EXPECT_EQ(recorder.stop(), (Texts{"/a/cafz", "/a/cafe\u0301"}));
}

TEST_F(EventRecorder, returnsWhatComesWhileItStops) {
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  recorder.start();
  events.rest = {"/a/late"};
  EXPECT_EQ(recorder.stop(), Texts{"/a/late"});
  EXPECT_EQ(events.streams, 0);
}

TEST_F(EventRecorder, startsOnce) {
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  recorder.start();
  recorder.start();
  EXPECT_EQ(events.asked.size(), 1u);
}

TEST_F(EventRecorder, withoutRootsItWatchesNothing) {
  FilesystemEventRecorder recorder(platform, {});
  recorder.start();
  EXPECT_TRUE(events.asked.empty());
  EXPECT_EQ(recorder.stop(), Texts());
}

TEST_F(EventRecorder, recordsNothingWhereTheSystemRefuses) {
  events.refuses = true;
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  recorder.start();
  EXPECT_EQ(events.asked.size(), 1u);
  EXPECT_EQ(recorder.stop(), Texts());
}

TEST_F(EventRecorder, stoppingTwiceReturnsTheSame) {
  FilesystemEventRecorder recorder(platform, paths({"/a"}));
  EXPECT_EQ(recorder.stop(), Texts()) << "before it has begun";
  recorder.start();
  events.tell({"/a/b"});
  EXPECT_EQ(recorder.stop(), Texts{"/a/b"});
  EXPECT_EQ(recorder.stop(), Texts{"/a/b"});
  EXPECT_EQ(events.streams, 0);
}

TEST_F(EventRecorder, theDestructorStopsItWhileThingsAreTold) {
  events.rest = {"/a/late"};
  {
    FilesystemEventRecorder recorder(platform, paths({"/a"}));
    recorder.start();
    EXPECT_EQ(events.streams, 1);
  }
  EXPECT_EQ(events.streams, 0);
}

// With the events of the system.

std::string real(const ScratchFolder& scratch) {
  return std::filesystem::canonical(scratch.text()).string();
}

TEST(FilesystemEventRecorder, recordsWhatAnInstallerLeaves) {
  const ScratchFolder scratch;
  scratch.write("root/old/kept");
  scratch.write("aside/inner/file");
  FilesystemEventRecorder recorder(hostPlatform(), {scratch / "root", scratch / "late"});
  recorder.start();
  for (int i = 0; i < 1000; ++i)
    scratch.write("root/" + std::to_string(i % 7) + "/" + std::to_string(i % 70) + "/" + std::to_string(i));
  std::filesystem::rename(scratch.at("root/1"), scratch.at("root/one\ntwo\tthree"));
  std::filesystem::rename(scratch.at("root/2"), scratch.at("out"));
  std::filesystem::rename(scratch.at("aside"), scratch.at("root/in"));
  std::filesystem::remove_all(scratch.at("root/3"));
  ASSERT_EQ(::mkfifo(scratch.at("root/fifo").c_str(), 0600), 0);
  scratch.write("late/" + std::string(255, 'n'));
  scratch.write("root/old/changed");
  const Texts found = recorder.stop();
  EXPECT_TRUE(std::is_sorted(found.begin(), found.end()));
  const auto isFound = [&](const std::string& path) {
    return std::binary_search(found.begin(), found.end(), path);
  };
  for (const char* root : {"/root", "/late"}) {
    for (const auto& item : std::filesystem::recursive_directory_iterator(real(scratch) + root)) {
      const std::string path = item.path().string();
      const bool isOld = path.ends_with("/old") || path.ends_with("/kept");
      EXPECT_NE(isFound(path), isOld) << path;
    }
  }
  for (const char* gone : {"/root/1", "/root/2", "/root/3"})
    EXPECT_TRUE(isFound(real(scratch) + gone)) << gone;
  EXPECT_EQ(recorder.stop(), found);
}

TEST(FilesystemEventRecorder, goesOnAfterItWasStopped) {
  const ScratchFolder scratch;
  FilesystemEventRecorder recorder(hostPlatform(), {scratch.path()});
  recorder.start();
  scratch.write("first");
  recorder.stop();
  scratch.write("unseen");
  recorder.start();
  scratch.write("second");
  EXPECT_EQ(recorder.stop(), (Texts{real(scratch) + "/first", real(scratch) + "/second"}));
}

}  // namespace
}  // namespace quarn
