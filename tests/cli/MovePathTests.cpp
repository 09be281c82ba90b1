#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string source = "/Users/me/Movies";
const std::string destination = "/Volumes/X9/Movies";
const std::string usage = "Usage: move path --source <path> --destination <path> [--yes] [--progress]";

scene::Run movePath(const std::string& from, const std::string& to,
                    const std::vector<std::string>& flags = {"--yes"},
                    const scene::RunOptions& options = {}) {
  std::vector<std::string> command = {"move", "path", "--source", from, "--destination", to};
  command.insert(command.end(), flags.begin(), flags.end());
  return quarn(command, options);
}

std::int64_t kilobytes(const std::string& path) {
  return std::stoll(scene::run({"/usr/bin/du", "-sk", path}).out);
}

std::string heading(const std::string& from, const std::string& to, std::int64_t kb) {
  return "source:      " + from + "\ndestination: " + to + "\nsource_kb:   " + std::to_string(kb) +
         "\nminimum_kb:  " + std::to_string(kb * 95 / 100) + "\n";
}

/// A `du` that tells so many kilobytes, first for the source and then for the copy.
void makeDiskUsage(const std::string& ofSource, const std::string& ofCopy) {
  scene::replaceTool("/usr/bin/du", "#!/bin/sh\ncase \"$2\" in /Users/*) printf '" + ofSource +
                                        "\\t%s\\n' \"$2\";; *) printf '" + ofCopy +
                                        "\\t%s\\n' \"$2\";; esac\n");
}

TEST(MovePath, aFolderIsMovedAndALinkLeadsToIt) {
  scene::writeBytes(source + "/a.mov", 30'000);
  scene::write(source + "/Sub/.hidden", "x");
  scene::link(source + "/Sub/link", "../a.mov");
  const auto before = scene::tree(source);
  const std::int64_t kb = kilobytes(source);
  const auto run = movePath(source, destination);
  EXPECT_EQ(shown(run), printed(heading(source, destination, kb) +
                                "destination_kb: " + std::to_string(kilobytes(destination)) +
                                "\nlinked: " + source + " -> " + destination + "\n"));
  EXPECT_EQ(scene::target(source), destination);
  EXPECT_EQ(scene::tree(destination), before);
  EXPECT_FALSE(scene::exists(scene::manifest)) << "nothing is recorded";
}

TEST(MovePath, aFileIsMovedIntoANewFolder) {
  scene::writeBytes("/Users/me/film.mov", 30'000);
  const std::string content = scene::read("/Users/me/film.mov");
  EXPECT_EQ(movePath("/Users/me/film.mov", "/Volumes/X9/new/folder/film.mov").status, 0);
  EXPECT_EQ(scene::target("/Users/me/film.mov"), "/Volumes/X9/new/folder/film.mov");
  EXPECT_EQ(scene::read("/Users/me/film.mov"), content);
}

TEST(MovePath, hardLinksStayHardLinks) {
  scene::writeBytes(source + "/a", 30'000);
  std::filesystem::create_hard_link(source + "/a", source + "/b");
  EXPECT_EQ(movePath(source, destination).status, 0);
  EXPECT_TRUE(std::filesystem::equivalent(destination + "/a", destination + "/b"));
}

TEST(MovePath, aSecondTimeTheSourceIsALinkAlready) {
  scene::writeBytes(source + "/a.mov", 30'000);
  movePath(source, destination);
  EXPECT_EQ(shown(movePath(source, destination)),
            printed("already symlink: " + source + " -> " + destination + "\n"));
  scene::link("/Users/me/dangling", "nowhere/at all");
  EXPECT_EQ(shown(movePath("/Users/me/dangling", destination)),
            printed("already symlink: /Users/me/dangling -> nowhere/at all\n"));
}

TEST(MovePath, withoutBothPathsTheUsageIsTold) {
  const std::vector<std::string> rows[] = {{},
                                           {"--source", "/a"},
                                           {"--destination", "/a"},
                                           {"/a", "/b"},
                                           {"--source", "/a", "--destination"},
                                           {"--source=/a", "--destination=/b"}};
  for (const auto& words : rows) {
    std::vector<std::string> command = {"move", "path"};
    command.insert(command.end(), words.begin(), words.end());
    EXPECT_EQ(shown(quarn(command)), failed(usage));
  }
}

TEST(MovePath, aMissingSourceIsNamedByItsWholePath) {
  EXPECT_EQ(shown(movePath("~/Nope", destination)), failed("Source path does not exist: /Users/me/Nope"));
  EXPECT_EQ(shown(movePath("Nope/./x//y", destination)),
            failed("Source path does not exist: /Users/me/Nope/x/y"));
}

TEST(MovePath, anEmptyPathIsAMissingOneAndNeverTheCurrentFolder) {
  scene::write(source + "/a.mov", "film");
  const auto before = scene::tree("/Users/me");
  const std::vector<std::string> rows[] = {{"--source", "", "--destination", destination},
                                           {"--source", source, "--destination", ""},
                                           {"--source", "", "--destination", ""}};
  for (const auto& words : rows) {
    std::vector<std::string> command = {"move", "path", "--yes"};
    command.insert(command.end(), words.begin(), words.end());
    EXPECT_EQ(shown(quarn(command, {.input = "", .folder = source})), failed(usage));
  }
  EXPECT_EQ(scene::tree("/Users/me"), before);
  EXPECT_FALSE(scene::exists(destination));
}

TEST(MovePath, onePathWrittenTwoWaysIsTheSame) {
  scene::write(source + "/a.mov", "film");
  for (const std::string other :
       {"/Users/me/Movies", "/Users/me/./Movies//", "~/Movies", "Movies", "/Users/me/Desktop/../Movies"}) {
    EXPECT_EQ(shown(movePath(source, other)), failed("Source and destination are the same path.")) << other;
  }
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
}

TEST(MovePath, aDestinationInsideTheSourceIsRefused) {
  scene::write(source + "/Sub/a.mov", "film");
  const auto before = scene::tree("/Users/me");
  for (const std::string to : {"/Users/me/Movies/Sub", "/Users/me/Movies/new/deep", "Movies/Sub/../new"}) {
    const auto run = movePath(source, to);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with("error\tDestination lies inside the source: /Users/me/Movies/"))
        << run.err;
  }
  EXPECT_EQ(scene::tree("/Users/me"), before);
}

TEST(MovePath, aDestinationThatLeadsIntoTheSourceThroughALinkIsRefused) {
  scene::write(source + "/Sub/a.mov", "film");
  scene::link("/Users/me/shortcut", source);
  scene::link("/Volumes/X9/deep", source + "/Sub");
  const auto before = scene::tree("/Users/me");
  for (const std::string to :
       {"/Users/me/shortcut", "/Users/me/shortcut/new", "/Volumes/X9/deep/new/folder", "/Volumes/X9/deep"}) {
    EXPECT_EQ(shown(movePath(source, to)), failed("Destination lies inside the source: " + to));
  }
  EXPECT_EQ(scene::tree("/Users/me"), before);
}

TEST(MovePath, aFileMovedOntoItselfByAnotherNameIsRefused) {
  scene::write("/Users/me/film.mov", "film");
  std::filesystem::create_hard_link("/Users/me/film.mov", "/Users/me/other.mov");
  scene::link("/Users/me/link.mov", "/Users/me/film.mov");
  for (const std::string to : {"/Users/me/other.mov", "/Users/me/link.mov"}) {
    EXPECT_EQ(shown(movePath("/Users/me/film.mov", to)), failed("Destination lies inside the source: " + to));
  }
  EXPECT_EQ(scene::read("/Users/me/film.mov"), "film");
  EXPECT_EQ(scene::read("/Users/me/other.mov"), "film");
}

TEST(MovePath, aSourceReachedThroughALinkIsProtectedFromItselfToo) {
  scene::write(source + "/Sub/a.mov", "film");
  scene::link("/Users/me/home", "/Users/me");
  const auto before = scene::tree(source);
  EXPECT_EQ(movePath("/Users/me/home/Movies", "/Users/me/Movies").status, 1);
  EXPECT_EQ(movePath("/Users/me/home/Movies", "/Users/me/Movies/new").status, 1);
  EXPECT_EQ(scene::tree(source), before);
}

TEST(MovePath, aSourceOnTheSameVolumeMayMoveBesideItself) {
  scene::write(source + "/a.mov", "film");
  EXPECT_EQ(movePath(source, "/Users/me/Movies 2").status, 0);
  EXPECT_EQ(scene::target(source), "/Users/me/Movies 2");
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
}

TEST(MovePath, aDestinationThatExistsIsMergedInto) {
  scene::write(source + "/a.mov", "film");
  scene::write(destination + "/b.mov", "older");
  EXPECT_EQ(movePath(source, destination).status, 0);
  EXPECT_EQ(scene::read(destination + "/a.mov"), "film");
  EXPECT_EQ(scene::read(destination + "/b.mov"), "older");
}

TEST(MovePath, aCopyBelowNinetyFivePercentLeavesBothSides) {
  scene::write(source + "/a.mov", "film");
  makeDiskUsage("100", "94");
  EXPECT_EQ(shown(movePath(source, destination)),
            failed("Verification failed: destination is below 95%; source left untouched.",
                   heading(source, destination, 100) + "destination_kb: 94\n"));
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
  EXPECT_FALSE(scene::isLink(source));
  EXPECT_EQ(scene::read(destination + "/a.mov"), "film");
}

TEST(MovePath, theMinimumIsNinetyFivePercentWithTheRemainderDropped) {
  const std::tuple<std::string, std::string, std::string> rows[] = {
      {"0", "0", "0"}, {"19", "18", "18"}, {"1", "0", "0"}, {"100", "95", "95"}, {"21", "19", "19"}};
  for (const auto& [kb, minimum, copy] : rows) {
    scene::write(source + "/a.mov", "film");
    makeDiskUsage(kb, copy);
    const auto run = movePath(source, destination);
    EXPECT_EQ(run.status, 0) << kb;
    EXPECT_NE(run.out.find("source_kb:   " + kb + "\nminimum_kb:  " + minimum + "\ndestination_kb: " + copy),
              std::string::npos)
        << run.out;
    std::filesystem::remove(source);
    std::filesystem::remove_all(destination);
  }
}

TEST(MovePath, theFirstWordOfTheMeasureCountsWhateverSeparatesIt) {
  for (const std::string body :
       {"printf '19\\t/a b\\n'", "printf ' \\n\\t19\\n20\\n'", "echo 19", "printf '19 20'", "printf 19"}) {
    scene::write(source + "/a.mov", "film");
    scene::replaceTool("/usr/bin/du", "#!/bin/sh\n" + body + "\n");
    const auto run = movePath(source, destination);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.out.starts_with(heading(source, destination, 19))) << run.out;
    std::filesystem::remove(source);
    std::filesystem::remove_all(destination);
  }
}

TEST(MovePath, withProgressTheToolsOwnOutputIsSeen) {
  scene::writeBytes(source + "/a.mov", 30'000);
  scene::replaceTool("/usr/bin/rsync",
                     "#!/bin/sh\nfor word; do echo \"<$word>\"; done\n"
                     "cp -a \"/Users/me/Movies/.\" \"/Volumes/X9/Movies/\"\necho told >&2\n");
  const auto run = movePath(source, destination, {"--yes", "--progress"});
  EXPECT_NE(
      run.out.find("\n<-aH>\n<--progress>\n</Users/me/Movies/>\n</Volumes/X9/Movies/>\ndestination_kb: "),
      std::string::npos)
      << run.out;
  EXPECT_EQ(run.err, "told\n");
}

TEST(MovePath, aFailedCopyingToolIsNamedWithItsStatus) {
  scene::write(source + "/a.mov", "film");
  for (const auto& [body, status] : {std::pair<std::string, std::string>{"exit 23", "23"},
                                     {"kill -9 $$", "9"},
                                     {"echo text >&2; exit 1", "1"}}) {
    scene::replaceTool("/usr/bin/rsync", "#!/bin/sh\n" + body + "\n");
    const auto run = movePath(source, destination);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.ends_with("error\trsync exited " + status + "\n")) << run.err;
    EXPECT_EQ(scene::read(source + "/a.mov"), "film");
    EXPECT_FALSE(scene::isLink(source));
  }
}

TEST(MovePath, missingToolsAreNamed) {
  scene::write(source + "/a.mov", "film");
  scene::removeTool("/usr/bin/rsync");
  EXPECT_EQ(movePath(source, destination).err, "error\tThe file “rsync” doesn’t exist.\n");
  scene::removeTool("/usr/bin/du");
  EXPECT_EQ(shown(movePath(source, destination)), failed("The file “du” doesn’t exist."));
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
}

TEST(MovePath, aFailedOrOddMeasureIsToldWithItsWords) {
  scene::write(source + "/a.mov", "film");
  const std::pair<std::string, std::string> rows[] = {
      {"echo out; echo bad >&2; exit 3", "du exited 3: out\nbad\n"},
      {"printf 'x12\\t/a\\n'", "Could not parse du output for " + source + ": x12\t/a\n"},
      {"true", "Could not parse du output for " + source + ": "},
      {"printf '\\377 12'", "Could not parse du output for " + source + ": "},
      {"echo 12.5", "Could not parse du output for " + source + ": 12.5\n"},
      {"kill -9 $$", "du exited 9: "},
  };
  for (const auto& [body, message] : rows) {
    scene::replaceTool("/usr/bin/du", "#!/bin/sh\n" + body + "\n");
    EXPECT_EQ(shown(movePath(source, destination)), failed(message)) << body;
  }
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
}

TEST(MovePath, anUnreadablePartOfTheSourceStopsTheMove) {
  scene::write(source + "/a.mov", "film");
  scene::write(source + "/secret/b", "text");
  std::filesystem::permissions(source + "/secret", std::filesystem::perms::none);
  const auto run = movePath(source, destination);
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("error\tdu exited 1: ")) << run.err;
  std::filesystem::permissions(source + "/secret", std::filesystem::perms::owner_all);
  EXPECT_EQ(scene::read(source + "/secret/b"), "text");
  EXPECT_EQ(scene::tree(scene::drive).size(), 1U);
}

TEST(MovePath, aFullDriveLeavesTheSourceWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "256k");
  scene::writeBytes(source + "/a.mov", 600'000);
  const auto before = scene::tree(source);
  const auto run = movePath(source, "/Volumes/Tiny/Movies");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.ends_with("error\trsync exited 11\n")) << run.err;
  EXPECT_EQ(scene::tree(source), before);
}

TEST(MovePath, aReadOnlyDriveIsNamed) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Locked", "1m", true);
  scene::write(source + "/a.mov", "film");
  EXPECT_EQ(movePath(source, "/Volumes/Locked/Movies").err,
            "error\tYou can’t save the file “Movies” because the volume “Locked” is read only.\n");
  EXPECT_EQ(scene::read(source + "/a.mov"), "film");
}

}  // namespace
