#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/FileCopier.h"
#include "tests/support/Doubles.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;

const std::string source = "/Applications/Foo.app";
const std::string copy = scene::drive + "/Foo.app";

void ditto(const std::string& script) {
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\n" + script + "\n");
}

/// What a copy tells a person.
std::string outcome(const ProgressCallback& progress = {}, const Platform& platform = hostPlatform()) {
  Platform mine = platform;
  return thrown([&] { FileCopier::copy(mine, Path(source), Path(copy), 1000, progress); });
}

/// Every call of the progress callback, from whichever thread.
class Calls {
 public:
  struct Call {
    std::chrono::duration<double> after;
    std::int64_t copied;
    std::int64_t total;
  };
  ProgressCallback callback() {
    return [this](std::int64_t copied, std::int64_t total) {
      const std::lock_guard lock(mutex_);
      calls_.push_back({std::chrono::steady_clock::now() - begin_, copied, total});
    };
  }
  std::vector<Call> list() {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::vector<Call> calls_;
};

TEST(FileCopier, aTreeIsCopiedWhole) {
  scene::makeApp(source);
  scene::link(source + "/Contents/Current", "MacOS");
  EXPECT_EQ(outcome(), "nothing");
  EXPECT_EQ(scene::tree(copy), scene::tree(source));
}

TEST(FileCopier, dittoGetsThreeArguments) {
  scene::makeApp(source);
  ditto("printf '%s|' \"$@\" >/tmp/arguments");
  EXPECT_EQ(outcome(), "nothing");
  EXPECT_EQ(scene::read("/tmp/arguments"), "--rsrc|/Applications/Foo.app|/Volumes/X9/Foo.app|");
}

TEST(FileCopier, theToolsOwnWordsTellWhyItFailed) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"printf '  ditto: x: No space left on device \\n\\n' >&2; exit 1",
       "Copy failed: ditto failed: ditto: x: No space left on device"},
      {"printf 'a\\nb\\n' >&2; exit 1", "Copy failed: ditto failed: a\nb"},
      {"echo 'not an error'; exit 3", "Copy failed: ditto failed: exit 3"},
      {"printf ' \\n\\t' >&2; exit 7", "Copy failed: ditto failed: exit 7"},
      {"printf 'bad \\377' >&2; exit 4", "Copy failed: ditto failed: exit 4"},
      {"kill -9 $$", "Copy failed: ditto failed: exit 9"},
      {"echo warning >&2; exit 0", "nothing"},
  };
  scene::makeApp(source);
  for (const auto& [script, expected] : rows) {
    std::filesystem::remove_all(copy);
    ditto(script);
    EXPECT_EQ(outcome(), expected) << script;
  }
}

TEST(FileCopier, theRealToolNamesASourceThatIsGone) {
  EXPECT_EQ(outcome(),
            "Copy failed: ditto failed: ditto: can't get real path for source '/Applications/Foo.app'");
}

TEST(FileCopier, aMissingToolIsTold) {
  scene::removeTool("/usr/bin/ditto");
  EXPECT_EQ(outcome(), "Copy failed: The file “ditto” doesn’t exist.");
}

TEST(FileCopier, aPlaceThatIsTakenIsLeftAlone) {
  scene::makeApp(source);
  ditto("touch /tmp/started");
  for (const char* kind : {"a file", "a folder", "a dangling link"}) {
    std::filesystem::remove_all(copy);
    if (kind == std::string("a file")) scene::write(copy, "somebody else's");
    if (kind == std::string("a folder")) scene::makeFolder(copy);
    if (kind == std::string("a dangling link")) scene::link(copy, "/none");
    EXPECT_EQ(outcome(), "Destination already exists.") << kind;
    EXPECT_TRUE(scene::exists(copy)) << kind;
  }
  EXPECT_FALSE(scene::exists("/tmp/started"));
  EXPECT_FALSE(scene::exists(scene::driveTrash()));
}

TEST(FileCopier, thePlaceIsTheRunsOwnBeforeTheToolStarts) {
  scene::makeApp(source);
  ditto("stat -c '%F %a' \"$3\" >/tmp/before");
  EXPECT_EQ(outcome(), "nothing");
  EXPECT_EQ(scene::read("/tmp/before"), "directory 700\n");
}

TEST(FileCopier, theCopyHasTheModeAndTimesOfItsSource) {
  scene::makeApp(source);
  std::filesystem::permissions(source, std::filesystem::perms{0751});
  const timespec times[2] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, source.c_str(), times, 0), 0);
  EXPECT_EQ(outcome(), "nothing");
  struct stat status {};
  ASSERT_EQ(::stat(copy.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777u, 0751u);
  EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
}

TEST(FileCopier, theModeOfTheCopyDoesNotHangOnALookThatFails) {
  class Blind : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    bool exists(const Path& path) const override {
      return !path.text().starts_with(scene::drive) && FileSystemDecorator::exists(path);
    }
  };
  scene::makeApp(source);
  std::filesystem::permissions(source, std::filesystem::perms{0751});
  Blind blind(hostPlatform().files);
  Platform platform = replacing({.files = &blind});
  FileCopier::copy(platform, Path(source), Path(copy), 4, {});
  EXPECT_EQ(std::filesystem::status(copy).permissions(), std::filesystem::perms{0751});
}

TEST(FileCopier, aFailedCopyThatBroughtNothingLeavesNothing) {
  scene::makeApp(source);
  scene::write("/Applications/note", "text");
  ditto("exit 1");
  EXPECT_EQ(outcome(), "Copy failed: ditto failed: exit 1");
  EXPECT_FALSE(scene::exists(copy));
  Platform& host = hostPlatform();
  EXPECT_EQ(thrown([&] {
              FileCopier::copy(host, Path("/Applications/note"), Path(scene::drive + "/note"), 4, {});
            }),
            "Copy failed: ditto failed: exit 1");
  EXPECT_FALSE(scene::exists(scene::drive + "/note"));
  EXPECT_FALSE(scene::exists(scene::driveTrash()));
}

TEST(FileCopier, aFailedCopyGoesToTheTrash) {
  scene::makeApp(source);
  ditto("mkdir -p \"$3\"; echo part >\"$3/part\"; exit 1");
  EXPECT_EQ(outcome(), "Copy failed: ditto failed: exit 1");
  EXPECT_FALSE(scene::exists(copy));
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Foo.app/part"), "part\n");
}

TEST(FileCopier, whatTheTrashRefusesIsSetAsideBesideItUnderNameAndSeconds) {
  doubles::RefusingTrash trash;
  scene::makeApp(source);
  doubles::FakeClock clock;
  clock.moment = Moment{std::chrono::seconds(1'769'850'300)} + 900ms;
  ditto("mkdir -p \"$3\"; echo part >\"$3/part\"; exit 1");
  EXPECT_EQ(outcome({}, replacing({.trash = &trash, .clock = &clock})), "Copy failed: ditto failed: exit 1");
  EXPECT_EQ(trash.asked, 1);
  EXPECT_FALSE(scene::exists(copy));
  EXPECT_EQ(scene::read(scene::drive + "/.QuarnTrash/Foo.app-1769850300/part"), "part\n");
}

TEST(FileCopier, whatCannotBeSetAsideStays) {
  doubles::RefusingTrash trash;
  scene::makeApp(source);
  scene::write(scene::drive + "/.QuarnTrash", "a file in the way");
  ditto("mkdir -p \"$3\"; echo part >\"$3/part\"; exit 1");
  EXPECT_EQ(outcome({}, replacing({.trash = &trash})), "Copy failed: ditto failed: exit 1");
  EXPECT_EQ(scene::read(copy + "/part"), "part\n");
}

TEST(FileCopier, aToolThatWritesMoreThanAPipeHoldsEndsAllTheSame) {
  ditto("head -c 2000000 /dev/zero | tr '\\0' e >&2; head -c 2000000 /dev/zero; exit 1");
  EXPECT_EQ(outcome(), "Copy failed: ditto failed: " + std::string(2'000'000, 'e'));
}

TEST(FileCopier, aProcessThatTheToolLeavesBehindIsNotWaitedFor) {
  scene::makeApp(source);
  ditto("sleep 20 & exit 0");
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(outcome(), "nothing");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
}

TEST(FileCopier, progressComesEveryHalfSecondWithTheSizeOfWhatHasArrivedAndOnceAtTheEnd) {
  scene::makeApp(source);
  scene::writeBytes("/tmp/first", 50'000);
  ditto("mkdir -p \"$3\"; cp /tmp/first \"$3/first\"; cp /tmp/first \"$3/.hidden\"; sleep 1.8");
  Calls calls;
  EXPECT_EQ(outcome(calls.callback()), "nothing");
  const auto list = calls.list();
  const std::int64_t arrived = SizeCalculator::size(hostPlatform(), Path(copy + "/first"));
  ASSERT_GE(list.size(), 3u);
  EXPECT_GT(arrived, 0);
  for (std::size_t i = 0; i + 1 < list.size(); ++i) {
    EXPECT_GE(list[i].after.count(), 0.5 * static_cast<double>(i + 1));
    EXPECT_EQ(list[i].copied, arrived) << "hidden files don't count";
    EXPECT_EQ(list[i].total, 1000);
  }
  EXPECT_EQ(list.back().copied, 1000);
  EXPECT_EQ(list.back().total, 1000);
  EXPECT_GE(list.back().after.count(), 1.8);
  EXPECT_LE(static_cast<double>(list.size() - 1), list.back().after.count() / 0.5);
}

TEST(FileCopier, afterTheEndProgressIsSilent) {
  scene::makeApp(source);
  ditto("sleep 0.6");
  Calls calls;
  EXPECT_EQ(outcome(calls.callback()), "nothing");
  const auto count = calls.list().size();
  std::this_thread::sleep_for(1200ms);
  EXPECT_EQ(calls.list().size(), count);
}

/// Calls that a copy of such a length may have brought, its end left out.
double mostCalls(std::chrono::steady_clock::duration elapsed) {
  return std::chrono::duration<double>(elapsed).count() / 0.5;
}

TEST(FileCopier, aQuickCopyTellsItsEndAlone) {
  scene::makeApp(source);
  ditto("exit 0");
  Calls calls;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(outcome(calls.callback()), "nothing");
  const auto elapsed = std::chrono::steady_clock::now() - begin;
  ASSERT_FALSE(calls.list().empty());
  EXPECT_EQ(calls.list().back().copied, 1000);
  EXPECT_LE(static_cast<double>(calls.list().size() - 1), mostCalls(elapsed))
      << "none of a copy under half a second";
}

TEST(FileCopier, aFailedCopyTellsNoEndAndIsSilentAfterwards) {
  scene::makeApp(source);
  ditto("mkdir -p \"$3\"; sleep 0.7; exit 1");
  Calls calls;
  EXPECT_EQ(outcome(calls.callback()), "Copy failed: ditto failed: exit 1");
  const auto told = calls.list();
  std::this_thread::sleep_for(1200ms);
  EXPECT_EQ(calls.list().size(), told.size());
  ASSERT_FALSE(told.empty());
  for (const Calls::Call& call : told) EXPECT_EQ(call.copied, 0);
}

}  // namespace
}  // namespace quarn
