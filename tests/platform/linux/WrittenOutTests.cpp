#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/CallsOf.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/RefusedCalls.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

FileSystem& files() {
  return hostPlatform().files;
}

/// What the body asks of the system; it ends with 0 only if the body gives success.
scene::TracedRun traced(const std::function<Result<void>()>& body) {
  const auto run = scene::callsOf([&body] {
    if (!body()) std::_Exit(1);
  });
  return run.value_or(scene::TracedRun{.status = -1, .calls = {}});
}

/// The same lines with the name of the temporary file, which is another one each time, as "NEW".
Lines withoutTemporaryName(const scene::TracedRun& run) {
  Lines lines = run.texts();
  const std::string name = run.calls.empty() ? "" : run.calls.front().paths.at(0);
  for (std::string& line : lines) {
    const auto at = name.empty() ? std::string::npos : line.find(name);
    if (at != std::string::npos) line.replace(at, name.size(), "NEW");
  }
  return lines;
}

TEST(WrittenOut, anAtomicWriteReachesTheDiskBeforeItTakesItsName) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  const std::string file = scratch.at("file");
  const auto write = [&] { return files().writeAtomically(Path(file), "content"); };
  const auto made = traced(write);
  EXPECT_EQ(made.status, 0);
  EXPECT_EQ(withoutTemporaryName(made),
            (Lines{"openat NEW", "write NEW", "fsync NEW", "renameat NEW " + file}));
  const auto replaced = traced(write);
  EXPECT_EQ(replaced.status, 0);
  EXPECT_EQ(withoutTemporaryName(replaced),
            (Lines{"openat NEW", "write NEW", "fsync NEW", "fchmod NEW", "renameat NEW " + file}));
}

TEST(WrittenOut, aFlushWritesOutTheVolumeOfTheItem) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  scratch.write("folder/file");
  scratch.link("folder/dangling", "none");
  for (const char* item : {"folder", "folder/file", "folder/dangling"}) {
    const auto run = traced([&] { return files().flush(scratch / item); });
    EXPECT_EQ(run.status, 0) << item;
    ASSERT_EQ(run.calls.size(), 1U) << item;
    EXPECT_EQ(run.calls[0].name, "syncfs") << item;
    EXPECT_TRUE(run.calls[0].paths[0].starts_with(scratch.text())) << run.calls[0].paths[0];
  }
}

TEST(WrittenOut, aFlushOfAMountPointIsThatOfTheVolumeMountedThere) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const auto run = traced([] { return files().flush(Path("/Volumes/X9")); });
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.texts(), Lines{"syncfs /Volumes/X9"});
}

TEST(WrittenOut, aFlushFindsAWayWhereTheFolderMayBeWrittenButNotRead) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  scratch.write("folder/open");
  scratch.write("folder/closed");
  ASSERT_EQ(::chmod(scratch.at("folder/closed").c_str(), 0), 0);
  ASSERT_EQ(::chmod(scratch.at("folder").c_str(), 0300), 0);
  const auto flushed = [&](const std::string& item) {
    return traced([&] {
      if (!child::dropRights()) std::_Exit(2);
      return files().flush(scratch / item);
    });
  };
  const auto byTheItem = flushed("folder/open");
  EXPECT_EQ(byTheItem.status, 0);
  EXPECT_EQ(byTheItem.texts(), Lines{"syncfs " + scratch.at("folder/open")});
  const auto everything = flushed("folder/closed");
  EXPECT_EQ(everything.status, 0);
  EXPECT_EQ(everything.texts(), Lines{"sync"});
}

TEST(WrittenOut, aVolumeThatCannotBeAskedIsAskedForTheItem) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  scratch.write("folder/file");
  for (const int error : {ENOTSUP, EINVAL, ENOTTY, ENOSYS}) {
    EXPECT_EQ(child::failuresRefusing(SYS_syncfs, error,
                                      [&] {
                                        EXPECT_TRUE(files().flush(scratch / "folder"));
                                        // What counts then is whether the item itself could be written out.
                                        const auto flush = [&] {
                                          EXPECT_FALSE(files().flush(scratch / "folder"));
                                        };
                                        EXPECT_EQ(child::failuresRefusing(SYS_fsync, EIO, flush), "");
                                      }),
              "")
        << error;
  }
}

TEST(WrittenOut, aVolumeThatFailedIsAnError) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  ScratchFolder scratch;
  for (const int error : {EIO, ENOSPC, EROFS}) {
    EXPECT_EQ(
        child::failuresRefusing(SYS_syncfs, error, [&] { EXPECT_FALSE(files().flush(scratch.path())); }), "")
        << error;
  }
}

TEST(WrittenOut, aFlushOfNothingIsAnError) {
  ScratchFolder scratch;
  const auto flushed = files().flush(scratch / "none/x");
  ASSERT_FALSE(flushed);
  EXPECT_EQ(flushed.error().code, 4);
}

}  // namespace
}  // namespace quarn
