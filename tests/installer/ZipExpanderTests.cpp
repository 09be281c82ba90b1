#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/installer/ZipExpander.h"
#include "tests/support/FakeTools.h"
#include "tests/support/FakeTree.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Patterns.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

Path expanded(Platform& platform, const Path& archive) {
  TemporaryFolders temporaryFolders(platform);
  return ZipExpander::expand(platform, temporaryFolders, archive);
}

using Words = std::vector<std::string>;

const std::string archive = "/Users/me/Foo.zip";
const std::string trash = "/Users/me/.Trash";
/// A folder of the test's own: in /tmp a room may show the folder that it was built in.
const std::string temporary = "/var/tmp/expanding";
const std::string unsafe = "Archive contains unsafe paths.";

class ZipExpanding : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeFolder(temporary);
    ::setenv("TMPDIR", temporary.c_str(), 1);
  }
};

/// Puts a script in the place of `ditto`. "$4" is the folder; what it was told is kept.
void ditto(const std::string& script) {
  scene::replaceTool(
      "/usr/bin/ditto",
      "#!/bin/sh\nprintf '<%s>' \"$#\" \"$@\" >/Users/me/told\n[ -d \"$4\" ] || exit 99\n" + script + "\n");
}

Words namesIn(const std::string& folder) {
  Words names;
  if (!scene::exists(folder)) return names;
  for (const auto& item : std::filesystem::directory_iterator(folder))
    names.push_back(item.path().filename());
  return names;
}

/// The only name in a folder.
std::string nameIn(const std::string& folder) {
  const Words names = namesIn(folder);
  return names.size() == 1 ? names.front() : std::to_string(names.size()) + " names in " + folder;
}

PlatformError failure(Platform& platform) {
  try {
    expanded(platform, Path(archive));
  } catch (const PlatformError& error) {
    return error;
  }
  return {"none", 0, "nothing"};
}

void expectFailure(Platform& platform, int code, const std::string& description) {
  const PlatformError error = failure(platform);
  EXPECT_EQ(error.domain, "zip");
  EXPECT_EQ(error.code, code);
  EXPECT_EQ(error.localizedDescription(), description);
}

TEST_F(ZipExpanding, expandsIntoAFreshFolderOfItsOwn) {
  ditto("mkdir \"$4/Foo.app\"; echo precious >\"$4/Foo.app/a\"");
  const Path folder = expanded(hostPlatform(), Path(archive));
  EXPECT_TRUE(
      patterns::match(folder.text(), temporary + "/QuarnZip-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"))
      << folder.text();
  EXPECT_EQ(scene::read(folder.text() + "/Foo.app/a"), "precious\n");
  EXPECT_NE(expanded(hostPlatform(), Path(archive)), folder);
  EXPECT_EQ(namesIn(temporary).size(), 2u);
  EXPECT_FALSE(scene::exists(trash));
}

TEST_F(ZipExpanding, theToolGetsTheseWords) {
  ditto("");
  for (const std::string odd :
       {"/Users/me/Foo.zip", "/Users/me/a b \"c\" 'd' $e;*.zip", "/Users/me/line\nfeed.zip", "/Users/me/-x",
        "/Users/me/Caf\u00E9.zip", "/Users/me/Cafe\u0301.zip"}) {
    const Path folder = expanded(hostPlatform(), Path(odd));
    EXPECT_EQ(scene::read("/Users/me/told"), "<4><-x><-k><" + odd + "><" + folder.text() + ">");
  }
}

TEST_F(ZipExpanding, theToolHasNoTimeLimit) {
  doubles::FakeTools tools;
  tools.answers["/usr/bin/ditto "] = {.hangs = true};
  expanded(tools.platform(), Path(archive));
  EXPECT_EQ(tools.secondsWaited(), 0) << "nobody looked at the clock";
}

TEST_F(ZipExpanding, theTemporaryFolderIsMadeIfItIsMissing) {
  ditto("");
  doubles::FakePlaces places;
  places.temporary = Path("/Users/me/made/here/");
  Platform platform = replacing({.places = &places});
  EXPECT_EQ(expanded(platform, Path(archive)).parent(), Path("/Users/me/made/here"));
}

TEST_F(ZipExpanding, aTemporaryFolderThatCannotBeUsedIsTheError) {
  ditto("");
  scene::write("/Users/me/file", "content");
  doubles::FakePlaces places;
  places.temporary = Path("/Users/me/file");
  Platform platform = replacing({.places = &places});
  const PlatformError error = failure(platform);
  EXPECT_EQ(error.domain, "NSCocoaErrorDomain");
  EXPECT_FALSE(scene::exists("/Users/me/told")) << "the tool isn't started";
}

TEST_F(ZipExpanding, afterAFailureWhatWasExpandedGoesToTheTrash) {
  ditto("echo half >\"$4/a\"; echo 'ditto: Foo.app/b: Permission denied' >&2; exit 1");
  expectFailure(hostPlatform(), 1, "ditto: Foo.app/b: Permission denied\n");
  EXPECT_EQ(namesIn(temporary), Words{});
  const std::string name = nameIn(trash);
  EXPECT_TRUE(name.starts_with("QuarnZip-")) << name;
  EXPECT_EQ(scene::read(trash + "/" + name + "/a"), "half\n");
}

TEST_F(ZipExpanding, whatTheTrashRefusesIsSetAsideWithTheReason) {
  doubles::RefusingTrash refusing;
  Platform platform = replacing({.trash = &refusing});
  ditto("echo half >\"$4/a\"; echo \"ditto: Couldn't read PKZip signature\" >&2; exit 1");
  expectFailure(platform, 1, "ditto: Couldn't read PKZip signature\n");
  const std::string aside = nameIn(temporary + "/.QuarnTrash");
  EXPECT_TRUE(aside.starts_with("QuarnZip-")) << aside;
  EXPECT_NE(aside.find("-zip-failed-"), std::string::npos) << aside;
  EXPECT_EQ(scene::read(temporary + "/.QuarnTrash/" + aside + "/a"), "half\n");
}

TEST_F(ZipExpanding, otherFailuresOfTheToolAreErrorsToo) {
  ditto("kill -KILL $$");
  expectFailure(hostPlatform(), 9, "The operation couldn’t be completed. (zip error 9.)");
  ditto("printf 'cut \\303' >&2; exit 3");
  expectFailure(hostPlatform(), 3, "The operation couldn’t be completed. (zip error 3.)");
  ditto("head -c 8000000 /dev/zero | tr '\\0' x >&2; exit 1");
  expectFailure(hostPlatform(), 1, std::string(8'000'000, 'x'));
  scene::removeTool("/usr/bin/ditto");
  expectFailure(hostPlatform(), 127, "The file “ditto” doesn’t exist.");
  EXPECT_EQ(namesIn(temporary), Words{});
}

TEST_F(ZipExpanding, whatTheToolWritesWhileItSucceedsDoesNotMatter) {
  ditto("head -c 8000000 /dev/zero; echo warning >&2");
  EXPECT_EQ(failure(hostPlatform()).domain, "none");
}

/// An archive that puts these items into the folder, as a file system tells of them. Not one of those that
/// exist has such names.
PlatformError expandedAs(const Words& items) {
  ditto("echo precious >\"$4/a\"");
  doubles::FakeTree tree(hostPlatform().files);
  for (const std::string& item : items) tree.items.push_back(doubles::FakeTree::file(item, 0));
  doubles::RefusingTrash refusing;
  Platform platform = replacing({.files = &tree, .trash = &refusing});
  return failure(platform);
}

TEST_F(ZipExpanding, anEntryOutsideOfTheFolderIsRefusedAndAllIsSetAsideWithTheReason) {
  for (const std::string outside :
       {"../evil", "a/../../evil", "..", "a/..", ".", "b/./..", "../../../etc/passwd"}) {
    const auto error = expandedAs({"a", outside});
    EXPECT_EQ(error.domain + std::to_string(error.code) + error.localizedDescription(), "zip1" + unsafe)
        << outside;
    const std::string aside = nameIn(temporary + "/.QuarnTrash");
    EXPECT_NE(aside.find("-zip-unsafe-"), std::string::npos) << aside;
    EXPECT_EQ(scene::read(temporary + "/.QuarnTrash/" + aside + "/a"), "precious\n");
    scene::shell("rm -r " + temporary + "/.QuarnTrash");
  }
}

TEST_F(ZipExpanding, aNeighbourWhoseNameBeginsAlikeIsOutside) {
  ditto("");
  struct Neighbour : doubles::FakeTree {
    using FakeTree::FakeTree;
    void walk(const Path& root, Hidden, WalkVisitor& visitor) const override {
      FakeTree one(hostPlatform().files);
      one.items.push_back(file("../" + root.lastComponent() + "x/evil", 0));
      one.FakeTree::walk(root, Hidden::included, visitor);
    }
  } tree(hostPlatform().files);
  Platform platform = replacing({.files = &tree});
  EXPECT_EQ(failure(platform).description, unsafe);
}

TEST_F(ZipExpanding, namesThatOnlyLookLikeAWayOutAreSafe) {
  for (const std::string inside : {"...", "..a", "a..", "a/../b", "/etc/passwd", "a//b", "./a", ".hidden/..b",
                                   "line\nfeed", "-x", "~"}) {
    EXPECT_EQ(expandedAs({inside}).domain, "none") << inside;
  }
}

TEST_F(ZipExpanding, hiddenItemsAreLookedAt) {
  struct Hiding : doubles::FakeTree {
    using FakeTree::FakeTree;
    void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
      if (hidden == Hidden::included) FakeTree::walk(root, hidden, visitor);
    }
  } tree(hostPlatform().files);
  tree.items.push_back(doubles::FakeTree::file(".a/../../evil", 0));
  ditto("");
  Platform platform = replacing({.files = &tree});
  EXPECT_EQ(failure(platform).description, unsafe);
}

TEST_F(ZipExpanding, aFolderThatCannotBeListedIsNotUnsafe) {
  struct Unlistable : FileSystemDecorator {
    using FileSystemDecorator::FileSystemDecorator;
    void walk(const Path& root, Hidden, WalkVisitor& visitor) const override {
      EXPECT_EQ(visitor.failed(root, doubles::unreadable()), WalkStep::proceed) << "with what else there is";
    }
  } files(hostPlatform().files);
  ditto("");
  Platform platform = replacing({.files = &files});
  EXPECT_EQ(failure(platform).domain, "none");
}

TEST_F(ZipExpanding, anArchivedLinkThatLeadsOutIsKeptAndNothingBehindItTouched) {
  scene::write("/Users/me/precious", "mine");
  ditto("ln -s /Users/me \"$4/out\"; ln -s ../../Users/me/precious \"$4/up\"; ln -s nowhere \"$4/dangling\"");
  const Path folder = expanded(hostPlatform(), Path(archive));
  EXPECT_EQ(scene::target(folder.text() + "/out"), "/Users/me");
  EXPECT_EQ(scene::target(folder.text() + "/up"), "../../Users/me/precious");
  ditto("ln -s /Users/me \"$4/out\"; exit 1");
  expectFailure(hostPlatform(), 1, "The operation couldn’t be completed. (zip error 1.)");
  EXPECT_EQ(scene::read("/Users/me/precious"), "mine");
  EXPECT_EQ(scene::target(trash + "/" + nameIn(trash) + "/out"), "/Users/me");
}

TEST_F(ZipExpanding, aTemporaryFolderBehindALinkOrWithDotsIsNoUnsafePath) {
  ditto("mkdir -p \"$4/a/b\"; : >\"$4/a/b/c\"");
  scene::makeFolder("/Users/me/real/inner");
  scene::link("/Users/me/linked", "/Users/me/real/inner");
  doubles::FakePlaces places;
  Platform platform = replacing({.places = &places});
  for (const std::string elsewhere : {"/Users/me/linked", "/Users/me/linked/../sub", "/Users/me//./real"}) {
    places.temporary = Path(elsewhere);
    EXPECT_EQ(failure(platform).domain, "none") << elsewhere;
  }
}

TEST_F(ZipExpanding, aBombEndsWithTheVolumeAndNothingBesideItIsLost) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs a small volume of its own";
  scene::plug("Tiny", "1m");
  scene::write("/Volumes/Tiny/precious", "mine");
  ditto("yes bomb >\"$4/bomb\" 2>/dev/null || { echo 'ditto: bomb: No space left on device' >&2; exit 1; }");
  doubles::FakePlaces places;
  places.temporary = Path("/Volumes/Tiny");
  Platform platform = replacing({.places = &places});
  expectFailure(platform, 1, "ditto: bomb: No space left on device\n");
  EXPECT_EQ(scene::read("/Volumes/Tiny/precious"), "mine");
  EXPECT_TRUE(scene::exists(scene::driveTrash("/Volumes/Tiny") + "/" +
                            nameIn(scene::driveTrash("/Volumes/Tiny")) + "/bomb"));
}

/// How many changing operations an expansion takes whose tool fails, when the `refused`-th of them is
/// refused, alone or with all that follow.
int stepsWithRefusal(int refused, bool forGood) {
  scene::shell("rm -rf " + temporary + "/* " + temporary + "/.QuarnTrash " + trash);
  int steps = 0;
  bool started = false;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    ++steps;
    if (steps == refused || (forGood && steps > refused)) return doubles::unreadable();
    started = started || operation.starts_with("start ");
    return {};
  });
  EXPECT_NE(failure(gated.platform()).domain, "none") << refused;
  const std::string found =
      scene::shell("find " + temporary + " " + trash + " -name a 2>/dev/null | wc -l").out;
  EXPECT_EQ(found, started ? "1\n" : "0\n") << refused << (forGood ? " for good" : " once");
  return steps;
}

TEST_F(ZipExpanding, whateverStepFailsNothingThatWasExpandedIsLost) {
  ditto("echo half >\"$4/a\"; exit 1");
  for (const bool forGood : {false, true}) {
    int refused = 1;
    while (stepsWithRefusal(refused, forGood) >= refused) ++refused;
    EXPECT_GE(refused, 4);
  }
}

}  // namespace
}  // namespace quarn
