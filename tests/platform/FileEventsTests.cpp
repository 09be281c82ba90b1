#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "tests/support/Child.h"
#include "tests/support/HeardEvents.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SpecialFiles.h"
#include "tests/support/VolumeTraits.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;
using Paths = std::set<std::string>;

/// A scratch folder with a root in it, by its real path, as events tell it.
class WatchedScratch : public ScratchFolder {
 public:
  WatchedScratch() { folder("root"); }
  std::string root() const { return std::filesystem::canonical(text()).string() + "/root"; }
  std::string in(const std::string& name) const { return root() + "/" + name; }
  std::vector<Path> roots() const { return {Path(root())}; }
};

/// A change in the root "root", and the names that it is told of by.
struct Change {
  const char* what;
  std::function<void(const WatchedScratch&)> prepare;
  std::function<void(const WatchedScratch&)> change;
  std::vector<std::string> told;
};

void nothing(const WatchedScratch&) {}
void writeFile(const WatchedScratch& scratch) {
  scratch.write("root/file");
}
void makeFolder(const WatchedScratch& scratch) {
  scratch.folder("root/folder");
}
void rename(const WatchedScratch& scratch, const std::string& from, const std::string& to) {
  std::filesystem::rename(scratch.at(from), scratch.at(to));
}

const std::vector<Change> changes{
    {"a file is made", nothing, writeFile, {"file"}},
    {"a hidden file is made", nothing, [](const auto& scratch) { scratch.write("root/.file"); }, {".file"}},
    {"a folder is made", nothing, makeFolder, {"folder"}},
    {"a link is made", nothing, [](const auto& scratch) { scratch.link("root/link", "none"); }, {"link"}},
    {"a FIFO is made",
     nothing,
     [](const auto& scratch) { EXPECT_EQ(::mkfifo(scratch.at("root/fifo").c_str(), 0600), 0); },
     {"fifo"}},
    {"a hard link is made",
     writeFile,
     [](const auto& scratch) {
       EXPECT_EQ(::link(scratch.at("root/file").c_str(), scratch.at("root/name").c_str()), 0);
     },
     {"name"}},
    {"a file is written to",
     writeFile,
     [](const auto& scratch) { std::ofstream(scratch.at("root/file"), std::ios::app) << "more"; },
     {"file"}},
    {"a file is removed",
     writeFile,
     [](const auto& scratch) { EXPECT_EQ(::unlink(scratch.at("root/file").c_str()), 0); },
     {"file"}},
    {"a folder is removed",
     makeFolder,
     [](const auto& scratch) { EXPECT_EQ(::rmdir(scratch.at("root/folder").c_str()), 0); },
     {"folder"}},
    {"a file is renamed",
     writeFile,
     [](const auto& scratch) { rename(scratch, "root/file", "root/other"); },
     {"file", "other"}},
    {"a folder is renamed",
     makeFolder,
     [](const auto& scratch) { rename(scratch, "root/folder", "root/other"); },
     {"folder", "other"}},
    {"a file is moved out",
     writeFile,
     [](const auto& scratch) { rename(scratch, "root/file", "out"); },
     {"file"}},
    {"a file is moved in",
     [](const auto& scratch) { scratch.write("out"); },
     [](const auto& scratch) { rename(scratch, "out", "root/file"); },
     {"file"}},
    {"a file gets another mode",
     writeFile,
     [](const auto& scratch) { EXPECT_EQ(::chmod(scratch.at("root/file").c_str(), 0640), 0); },
     {"file"}},
    {"a folder gets another mode",
     makeFolder,
     [](const auto& scratch) { EXPECT_EQ(::chmod(scratch.at("root/folder").c_str(), 0710), 0); },
     {"folder"}},
    {"a file gets an owner",
     writeFile,
     [](const auto& scratch) {
       EXPECT_EQ(::chown(scratch.at("root/file").c_str(), ::getuid(), ::getgid()), 0);
     },
     {"file"}},
};

TEST(FileEvents, tellOfEachKindOfChange) {
  for (const Change& row : changes) {
    const WatchedScratch scratch;
    row.prepare(scratch);
    HeardEvents events(scratch.roots());
    ASSERT_TRUE(events.isWatching());
    row.change(scratch);
    const Paths& heard = events.stop();
    for (const std::string& name : row.told) EXPECT_TRUE(heard.contains(scratch.in(name))) << row.what;
  }
}

TEST(FileEvents, tellOfAnExtendedAttribute) {
  const WatchedScratch scratch;
  if (!traitsOf(scratch).attributes) GTEST_SKIP() << "the volume keeps no extended attributes";
  writeFile(scratch);
  HeardEvents events(scratch.roots());
  ASSERT_TRUE(setAttribute(scratch.at("root/file"), "text"));
  EXPECT_TRUE(events.stop().contains(scratch.in("file")));
}

TEST(FileEvents, tellOfWhatAnotherProcessDoes) {
  const WatchedScratch scratch;
  HeardEvents events(scratch.roots());
  ASSERT_TRUE(child::succeeds([&] { return ::mkdir(scratch.at("root/folder").c_str(), 0700) == 0; }));
  EXPECT_TRUE(events.stop().contains(scratch.in("folder")));
}

TEST(FileEvents, tellOfEverythingInNewFolders) {
  const WatchedScratch scratch;
  HeardEvents events(scratch.roots());
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(i);
    const std::string folder = "root/" + std::to_string(i % 10) + "/.b/" + std::to_string(i % 50) + "/c";
    scratch.write(folder + "/" + number);
    if (i % 3 == 0) rename(scratch, folder + "/" + number, folder + "/renamed" + number);
    if (i % 7 == 0) rename(scratch, folder, folder + number);
    if (i % 11 == 0) std::filesystem::remove_all(scratch.at(folder));
  }
  ASSERT_GT(std::distance(std::filesystem::recursive_directory_iterator(scratch.root()), {}), 500);
  EXPECT_EQ(missingIn(events.stop(), scratch.root()), Paths());
}

TEST(FileEvents, tellOfEverythingThatSeveralThreadsMakeAtOnce) {
  const WatchedScratch scratch;
  HeardEvents events(scratch.roots());
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&scratch, thread] {
      for (int i = 0; i < 100; ++i)
        scratch.write("root/a" + std::to_string(i) + "/b/c" + std::to_string(thread) + "/d/file");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(missingIn(events.stop(), scratch.root()), Paths());
}

TEST(FileEvents, tellNamesAsTheyAre) {
  const WatchedScratch scratch;
  const VolumeTraits traits = traitsOf(scratch);
  std::vector<std::string> names{"line\nfeed", "tab\tand space ", "caf\u00e9",
                                 std::string(traits.longestName, 'n')};
  if (traits.normalForms) names.push_back("cafe\u0301");
  if (traits.anyBytes) names.push_back("\xff\xfe");
  scratch.folder("root/old");
  HeardEvents events(scratch.roots());
  for (const std::string& name : names) {
    scratch.write("root/" + name + "/" + name);
    scratch.write("root/old/" + name);
  }
  const Paths& heard = events.stop();
  for (const std::string& name : names) {
    EXPECT_TRUE(heard.contains(scratch.in(name))) << name;
    EXPECT_TRUE(heard.contains(scratch.in(name + "/" + name))) << name;
    EXPECT_TRUE(heard.contains(scratch.in("old/" + name))) << name;
  }
}

TEST(FileEvents, followNoLinkBelowARoot) {
  const WatchedScratch scratch;
  scratch.folder("outside");
  scratch.link("root/old", scratch.at("outside"));
  HeardEvents events(scratch.roots());
  scratch.link("root/new", scratch.at("outside"));
  scratch.write("outside/file");
  scratch.write("root/old/through");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.in("new")));
  for (const std::string& path : heard) EXPECT_TRUE(path.starts_with(scratch.root())) << path;
  EXPECT_EQ(below(scratch.in("old"), heard), Paths());
  EXPECT_EQ(below(scratch.in("new"), heard), Paths());
}

TEST(FileEvents, tellTheRealPathsBelowARootThatIsALink) {
  const WatchedScratch scratch;
  scratch.link("link", "root");
  HeardEvents events({scratch / "link"});
  scratch.write("root/folder/file");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.in("folder")));
  EXPECT_TRUE(heard.contains(scratch.in("folder/file")));
}

TEST(FileEvents, tellOfARootAsSoonAsItExists) {
  const WatchedScratch scratch;
  const std::string late = scratch.in("not/yet/there");
  HeardEvents events({Path(late)});
  ASSERT_TRUE(events.isWatching());
  scratch.write("root/not/yet/there/file");
  scratch.write("root/not/yet/elsewhere/file");
  scratch.write("root/not/yet/there/folder/file");
  const Paths& heard = events.stop();
  for (const char* name : {"", "/file", "/folder", "/folder/file"})
    EXPECT_TRUE(heard.contains(late + name)) << name;
  EXPECT_EQ(below(scratch.in("not/yet/elsewhere"), heard), Paths());
}

TEST(FileEvents, goOnWithARootThatWentAndCameBack) {
  const WatchedScratch scratch;
  writeFile(scratch);
  HeardEvents events(scratch.roots());
  std::filesystem::remove_all(scratch.root());
  scratch.write("root/again/file");
  rename(scratch, "root", "aside");
  scratch.write("root/third/file");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.root()));
  for (const char* name : {"file", "third", "third/file"})
    EXPECT_TRUE(heard.contains(scratch.in(name))) << name;
}

TEST(FileEvents, watchEveryRoot) {
  const WatchedScratch scratch;
  scratch.folder("root/one/two");
  scratch.folder("root/three");
  HeardEvents events({Path(scratch.in("one")), Path(scratch.in("one/two")), Path(scratch.in("three"))});
  for (const char* name : {"one/a", "one/two/b", "three/c", "d"}) scratch.write(std::string("root/") + name);
  const Paths& heard = events.stop();
  for (const char* name : {"one/a", "one/two/b", "three/c"})
    EXPECT_TRUE(heard.contains(scratch.in(name))) << name;
  EXPECT_FALSE(heard.contains(scratch.in("d")));
}

TEST(FileEvents, followAFolderThatIsMovedIn) {
  const WatchedScratch scratch;
  scratch.folder("outside/inner");
  HeardEvents events(scratch.roots());
  rename(scratch, "outside", "root/moved");
  scratch.write("root/moved/file");
  scratch.write("root/moved/inner/file");
  const Paths& heard = events.stop();
  for (const char* name : {"moved", "moved/file", "moved/inner/file"})
    EXPECT_TRUE(heard.contains(scratch.in(name))) << name;
}

TEST(FileEvents, leaveAFolderThatIsMovedOut) {
  const WatchedScratch scratch;
  scratch.folder("root/folder/inner");
  HeardEvents events(scratch.roots());
  rename(scratch, "root/folder", "outside");
  scratch.write("outside/inner/file");
  scratch.write("outside/file");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.in("folder")));
  for (const std::string& path : heard) EXPECT_TRUE(path.starts_with(scratch.root())) << path;
  EXPECT_FALSE(heard.contains(scratch.in("folder/file")));
  EXPECT_FALSE(heard.contains(scratch.in("folder/inner/file")));
}

TEST(FileEvents, tellTheNewPathsInAFolderThatIsRenamed) {
  const WatchedScratch scratch;
  scratch.folder("root/folder/inner");
  HeardEvents events(scratch.roots());
  rename(scratch, "root/folder", "root/other");
  scratch.write("root/other/inner/file");
  scratch.write("root/folder/inner/file");
  const Paths& heard = events.stop();
  EXPECT_TRUE(heard.contains(scratch.in("other/inner/file")));
  EXPECT_TRUE(heard.contains(scratch.in("folder/inner/file")));
}

TEST(FileEvents, arriveWhileTheStreamGoesOn) {
  const WatchedScratch scratch;
  HeardEvents events(scratch.roots());
  EXPECT_TRUE(events.catchUp(scratch.in("file")));
}

TEST(FileEvents, comeNoMoreOnceStopped) {
  const WatchedScratch scratch;
  std::atomic<int> calls{0};
  auto stream = hostPlatform().events.watch(scratch.roots(), [&](const auto&) { ++calls; });
  writeFile(scratch);
  stream->stop();
  const int then = calls;
  EXPECT_GT(then, 0);
  scratch.write("root/later");
  stream->stop();
  std::this_thread::sleep_for(600ms);
  EXPECT_EQ(calls, then);
}

TEST(FileEvents, stopWaitsForACallThatHasBegun) {
  const WatchedScratch scratch;
  std::atomic<bool> begun{false}, isRunning{false};
  auto stream = hostPlatform().events.watch(scratch.roots(), [&](const auto&) {
    isRunning = true;
    begun = true;
    std::this_thread::sleep_for(200ms);
    isRunning = false;
  });
  writeFile(scratch);
  for (int i = 0; i < 1000 && !begun; ++i) std::this_thread::sleep_for(10ms);
  ASSERT_TRUE(begun);
  stream->stop();
  EXPECT_FALSE(isRunning);
}

TEST(FileEvents, areDeliveredByTheDestructorAndEndWithIt) {
  const WatchedScratch scratch;
  std::atomic<int> calls{0};
  auto stream = hostPlatform().events.watch(scratch.roots(), [&](const auto&) { ++calls; });
  writeFile(scratch);
  stream.reset();
  const int then = calls;
  EXPECT_GT(then, 0);
  scratch.write("root/later");
  std::this_thread::sleep_for(600ms);
  EXPECT_EQ(calls, then);
}

TEST(FileEvents, severalStreamsTellTheSame) {
  const WatchedScratch scratch;
  HeardEvents one(scratch.roots()), other(scratch.roots());
  writeFile(scratch);
  EXPECT_TRUE(one.stop().contains(scratch.in("file")));
  scratch.write("root/later");
  EXPECT_TRUE(other.stop().contains(scratch.in("file")));
  EXPECT_TRUE(other.stop().contains(scratch.in("later")));
}

}  // namespace
}  // namespace quarn
