#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Platform/DateText.h"
#include "QuarnCore/foundation/FileStash.h"
#include "tests/support/Decorators.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string item = "/Users/me/Foo Bar.app";
const std::string beside = "/Users/me/.QuarnTrash/";

/// A platform whose clock stands at 2026-01-31 09:05:07.9 UTC and whose Trash may refuse.
class Stash : public testing::Test {
 protected:
  Stash() {
    clock.moment = *DateText::parsingISO8601("2026-01-31T09:05:07Z") + std::chrono::milliseconds(900);
    scene::write(item + "/Contents/a", "precious");
  }
  Platform platform(bool trashRefuses) {
    Platform& host = hostPlatform();
    Trash& trash = trashRefuses ? static_cast<Trash&>(refusing) : host.trash;
    return replacing({.files = &files, .trash = &trash, .clock = &clock});
  }
  std::optional<Path> moveAside(bool trashRefuses, const std::string& path = item,
                                const std::string& reason = "replaced") {
    Platform made = platform(trashRefuses);
    return FileStash::moveAside(made, Path(path), reason);
  }
  void stash(bool trashRefuses, const std::string& path = item) {
    Platform made = platform(trashRefuses);
    MoverStasher::stash(made, Path(path));
  }

  doubles::FakeClock clock;
  doubles::RefusingTrash refusing;
  Recording files{hostPlatform().files};
};

using FileStashes = Stash;
using MoverStashes = Stash;

TEST_F(FileStashes, takesAnItemToTheTrash) {
  moveAside(false);
  EXPECT_FALSE(scene::exists(item));
  EXPECT_EQ(scene::read("/Users/me/.Trash/Foo Bar.app/Contents/a"), "precious");
  EXPECT_FALSE(scene::exists("/Users/me/.QuarnTrash"));
}

TEST_F(MoverStashes, takesACopyToTheTrash) {
  stash(false);
  EXPECT_FALSE(scene::exists(item));
  EXPECT_EQ(scene::read("/Users/me/.Trash/Foo Bar.app/Contents/a"), "precious");
  EXPECT_FALSE(scene::exists("/Users/me/.QuarnTrash"));
}

TEST_F(FileStashes, aNameThatIsTakenInTheTrashCostsNeitherItem) {
  scene::write("/Users/me/.Trash/Foo Bar.app/Contents/a", "older");
  moveAside(false);
  EXPECT_FALSE(scene::exists(item));
  std::vector<std::string> contents;
  for (const auto& entry : std::filesystem::directory_iterator("/Users/me/.Trash")) {
    contents.push_back(scene::read(entry.path().string() + "/Contents/a"));
  }
  std::sort(contents.begin(), contents.end());
  EXPECT_EQ(contents, (std::vector<std::string>{"older", "precious"}));
}

TEST_F(FileStashes, whatTheTrashRefusesGoesBesideItsPlaceUnderReasonAndTime) {
  moveAside(true);
  EXPECT_FALSE(scene::exists(item));
  EXPECT_EQ(scene::read(beside + "Foo Bar.app-replaced-2026-01-31T090507Z/Contents/a"), "precious");
  EXPECT_EQ(refusing.asked, 1);
}

TEST_F(MoverStashes, whatTheTrashRefusesGoesBesideItsPlaceUnderTheSecondsSince1970) {
  stash(true);
  EXPECT_FALSE(scene::exists(item));
  EXPECT_EQ(scene::read(beside + "Foo Bar.app-1769850307/Contents/a"), "precious");
  EXPECT_EQ(refusing.asked, 1);
}

TEST_F(FileStashes, takesADanglingLinkToTheTrash) {
  scene::link("/Users/me/dangling", "/nowhere");
  moveAside(false, "/Users/me/dangling");
  EXPECT_FALSE(scene::exists("/Users/me/dangling"));
  EXPECT_EQ(scene::target("/Users/me/.Trash/dangling"), "/nowhere");
}

TEST_F(FileStashes, putsARefusedDanglingLinkBesideItsPlace) {
  scene::link("/Users/me/dangling", "/nowhere");
  moveAside(true, "/Users/me/dangling", "stale");
  EXPECT_FALSE(scene::exists("/Users/me/dangling"));
  EXPECT_EQ(scene::target(beside + "dangling-stale-2026-01-31T090507Z"), "/nowhere");
}

TEST_F(MoverStashes, leavesADanglingLinkWhereItIs) {
  scene::link("/Users/me/dangling", "/nowhere");
  stash(false, "/Users/me/dangling");
  stash(true, "/Users/me/dangling");
  EXPECT_EQ(scene::target("/Users/me/dangling"), "/nowhere");
  EXPECT_EQ(refusing.asked, 0);
}

TEST_F(FileStashes, aLinkGoesAndItsTargetStays) {
  scene::link("/Users/me/link", item);
  moveAside(true, "/Users/me/link", "old");
  EXPECT_EQ(scene::target(beside + "link-old-2026-01-31T090507Z"), item);
  EXPECT_EQ(scene::read(item + "/Contents/a"), "precious");
}

TEST_F(FileStashes, nothingThereIsFine) {
  moveAside(true, "/Users/me/nothing");
  EXPECT_EQ(refusing.asked, 0);
  EXPECT_FALSE(scene::exists("/Users/me/.QuarnTrash"));
}

TEST_F(MoverStashes, nothingThereIsFine) {
  stash(true, "/Users/me/nothing");
  EXPECT_EQ(refusing.asked, 0);
  EXPECT_FALSE(scene::exists("/Users/me/.QuarnTrash"));
}

TEST_F(FileStashes, ifBothWaysFailTheItemStaysWhole) {
  scene::write("/Users/me/.QuarnTrash", "a file in the way");
  const auto before = scene::tree("/Users/me");
  moveAside(true);
  EXPECT_EQ(scene::tree("/Users/me"), before);
}

TEST_F(MoverStashes, ifBothWaysFailTheItemStaysWhole) {
  scene::write("/Users/me/.QuarnTrash", "a file in the way");
  const auto before = scene::tree("/Users/me");
  stash(true);
  EXPECT_EQ(scene::tree("/Users/me"), before);
}

TEST_F(MoverStashes, itemsSetAsideInTheSameSecondGetNumbers) {
  const std::string first = beside + "Foo Bar.app-1769850307";
  for (const std::string number : {"", "-2", "-3"}) {
    scene::write(item + "/Contents/a", "copy" + number);
    stash(true);
  }
  EXPECT_FALSE(scene::exists(item));
  for (const std::string number : {"", "-2", "-3"})
    EXPECT_EQ(scene::read(first + number + "/Contents/a"), "copy" + number);
}

TEST_F(FileStashes, itemsSetAsideInTheSameSecondGetNumbers) {
  const std::string first = beside + "Foo Bar.app-replaced-2026-01-31T090507Z";
  scene::link(first + "-2", "/nowhere");
  for (const std::string number : {"", "-3", "-4"}) {
    scene::write(item + "/Contents/a", "item" + number);
    EXPECT_EQ(moveAside(true), Path(first + number));
  }
  EXPECT_FALSE(scene::exists(item));
  for (const std::string number : {"", "-3", "-4"})
    EXPECT_EQ(scene::read(first + number + "/Contents/a"), "item" + number);
  EXPECT_EQ(scene::target(first + "-2"), "/nowhere") << "a link takes a name, too";
}

TEST_F(FileStashes, aNameThatWouldBeTooLongIsShortenedAndStaysText) {
  const std::string end = "-replaced-2026-01-31T090507Z";
  // 255 bytes less those of the end are an odd number: the cut would fall into a character of two bytes.
  std::string twice, fitting;
  for (int count = 0; count < 125; ++count) twice += "é";
  for (int count = 0; count < 113; ++count) fitting += "é";
  for (const std::string number : {"", "-2"}) {
    scene::write("/Users/me/" + twice, "item" + number);
    const auto place = moveAside(true, "/Users/me/" + twice);
    ASSERT_TRUE(place);
    EXPECT_EQ(scene::read(place->text()), "item" + number);
    EXPECT_EQ(place->text(),
              beside + (number.empty() ? fitting : fitting.substr(0, fitting.size() - 2)) + end + number);
  }
}

TEST_F(MoverStashes, aNameThatWouldBeTooLongIsShortened) {
  const std::string name(std::min<std::size_t>(scene::longestName(), 254), 'x');
  scene::write("/Users/me/" + name, "copy");
  stash(true, "/Users/me/" + name);
  EXPECT_EQ(scene::read(beside + std::string(244, 'x') + "-1769850307"), "copy");
}

TEST_F(FileStashes, nothingIsEverRemoved) {
  moveAside(true);
  EXPECT_EQ(files.operations(), (std::vector<std::string>{"createFolder /Users/me/.QuarnTrash",
                                                          "rename " + item + " -> " + beside +
                                                              "Foo Bar.app-replaced-2026-01-31T090507Z"}));
}

TEST_F(MoverStashes, nothingIsEverRemoved) {
  stash(true);
  EXPECT_EQ(files.operations(),
            (std::vector<std::string>{"createFolder /Users/me/.QuarnTrash",
                                      "rename " + item + " -> " + beside + "Foo Bar.app-1769850307"}));
}

TEST_F(MoverStashes, aCopyOnADriveGoesToTheTrashOfThatDrive) {
  scene::write(scene::drive + "/ExternalQuarn/Apps/Foo.app/a", "half");
  stash(false, scene::drive + "/ExternalQuarn/Apps/Foo.app");
  EXPECT_FALSE(scene::exists(scene::drive + "/ExternalQuarn/Apps/Foo.app"));
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Foo.app/a"), "half");
}

}  // namespace
}  // namespace quarn
