#include <filesystem>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

const std::string source = "/Applications/Foo.app";
const std::string copy = scene::drive + "/Foo.app";

std::string verdict(const std::string& of = source, const std::string& at = copy) {
  return MoveVerifier::failureReason(hostPlatform(), Path(of), Path(at)).value_or("whole");
}

/// Copies that differ only in what is never copied: the count alone tells them apart.
void makePairThatOnlyTheCountTellsApart() {
  scene::write(source + "/Contents/file", "x");
  scene::write(copy + "/Contents/file", "x");
  ASSERT_EQ(::mkfifo((source + "/Contents/fifo").c_str(), 0600), 0);
}

void find(const std::string& script) {
  scene::replaceTool("/usr/bin/find", "#!/bin/sh\n" + script + "\n");
}

TEST(EntryCount, fewerEntriesAreToldBeforeTheItemThatIsMissing) {
  scene::write(source + "/Contents/file", "x");
  scene::write(source + "/Contents/other", "x");
  scene::makeFolder(copy + "/Contents");
  EXPECT_EQ(verdict(), "Foo.app copied with 2 of 4 entries — 2 missing.");
}

TEST(EntryCount, fewerEntriesAreToldBeforeAWrongSize) {
  makePairThatOnlyTheCountTellsApart();
  scene::write(copy + "/Contents/file", "xx");
  EXPECT_EQ(verdict(), "Foo.app copied with 3 of 4 entries — 1 missing.");
}

TEST(EntryCount, theNameToldIsThatOfTheSource) {
  makePairThatOnlyTheCountTellsApart();
  fs::rename(copy, scene::drive + "/Bar.app");
  EXPECT_EQ(verdict(source, scene::drive + "/Bar.app"), "Foo.app copied with 3 of 4 entries — 1 missing.");
}

TEST(EntryCount, aFailingFindSkipsTheCount) {
  makePairThatOnlyTheCountTellsApart();
  find("case \"$1\" in /Volumes/*) echo a;; *) printf 'a\\nb\\n';; esac; exit 1");
  EXPECT_EQ(verdict(), "whole");
}

TEST(EntryCount, aFindThatFailsOnOneSideSkipsTheCount) {
  makePairThatOnlyTheCountTellsApart();
  find("echo one; case \"$1\" in /Volumes/*) exit 1;; esac; echo two");
  EXPECT_EQ(verdict(), "whole");
}

TEST(EntryCount, aMissingFindSkipsTheCount) {
  makePairThatOnlyTheCountTellsApart();
  scene::removeTool("/usr/bin/find");
  EXPECT_EQ(verdict(), "whole");
}

TEST(EntryCount, aFindKilledByASignalSkipsTheCount) {
  makePairThatOnlyTheCountTellsApart();
  find("case \"$1\" in /Volumes/*) echo a;; *) printf 'a\\nb\\n';; esac; kill -9 $$");
  EXPECT_EQ(verdict(), "whole");
}

TEST(EntryCount, outputThatIsNoTextSkipsTheCount) {
  makePairThatOnlyTheCountTellsApart();
  find("case \"$1\" in /Volumes/*) printf 'one\\n\\377\\n';; *) printf '1\\n2\\n3\\n';; esac");
  EXPECT_EQ(verdict(), "whole");
}

TEST(EntryCount, withoutTheCountTheItemsStillDecide) {
  scene::write(source + "/Contents/file", "x");
  scene::makeFolder(copy + "/Contents");
  scene::removeTool("/usr/bin/find");
  EXPECT_EQ(verdict(), "Contents/file is missing at the destination.");
}

TEST(EntryCount, onlyLinesWithTextCountTheLastOneWithoutItsEndToo) {
  makePairThatOnlyTheCountTellsApart();
  find("case \"$1\" in /Volumes/*) printf 'a\\n\\n\\n\\nb\\n';; *) printf 'a\\nb\\n\\nc';; esac");
  EXPECT_EQ(verdict(), "Foo.app copied with 2 of 3 entries — 1 missing.");
}

TEST(EntryCount, aFindThatFloodsStandardErrorIsStillCounted) {
  makePairThatOnlyTheCountTellsApart();
  find(
      "head -c 3000000 /dev/zero | tr '\\0' 'e' >&2\n"
      "case \"$1\" in /Volumes/*) echo a;; *) printf 'a\\nb\\n';; esac");
  EXPECT_EQ(verdict(), "Foo.app copied with 1 of 2 entries — 1 missing.");
}

TEST(EntryCount, aLongListIsCountedToItsEnd) {
  makePairThatOnlyTheCountTellsApart();
  find("case \"$1\" in /Volumes/*) seq 199999;; *) seq 200000;; esac");
  EXPECT_EQ(verdict(), "Foo.app copied with 199999 of 200000 entries — 1 missing.");
}

TEST(EntryCount, findGetsThePathAsItsOnlyArgument) {
  makePairThatOnlyTheCountTellsApart();
  find("echo \"$#:$1\" >>/tmp/arguments; echo x");
  EXPECT_EQ(verdict(), "whole");
  const std::string arguments = scene::read("/tmp/arguments");
  EXPECT_NE(arguments.find("1:/Applications/Foo.app\n"), std::string::npos) << arguments;
  EXPECT_NE(arguments.find("1:/Volumes/X9/Foo.app\n"), std::string::npos) << arguments;
  EXPECT_EQ(arguments.size(), std::string("1:/Applications/Foo.app\n1:/Volumes/X9/Foo.app\n").size());
}

TEST(EntryCount, aSingleFileIsNotCounted) {
  scene::write("/Applications/note", "x");
  scene::write(scene::drive + "/note", "x");
  find("echo called >/tmp/called");
  EXPECT_EQ(verdict("/Applications/note", scene::drive + "/note"), "whole");
  EXPECT_FALSE(scene::exists("/tmp/called"));
}

}  // namespace
}  // namespace quarn
