#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "QuarnCore/foundation/Sighting.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

/// Why an item can't be looked at; "nothing" if it can.
std::string failureOf(const std::string& item, const FileSystem& files = hostPlatform().files) {
  return thrown([&] { sight(files, Path(item)).orThrow(); });
}

TEST(Sightings, ofWhatIsMissingAreSure) {
  scene::write("/Users/me/file", "x");
  scene::link("/Users/me/dangling", "/nowhere");
  scene::link("/Users/me/loop", "/Users/me/loop");
  for (const std::string& item : {std::string("/Users/me/none/deeper"), std::string("/Users/me/dangling"),
                                  std::string("/Users/me/loop"), std::string("/Users/me/file/below/it"),
                                  std::string("/Users/me/loop/below/it"), std::string("/Users/me/dangling/x"),
                                  "/Users/me/" + std::string(300, 'n'), std::string("/")}) {
    EXPECT_EQ(failureOf(item), "nothing") << item;
  }
}

TEST(Sightings, throughAFolderThatMayNotBeSearchedAreNot) {
  scene::makeFolder("/Users/me/closed/inside");
  scene::link("/Users/me/link", "/Users/me/closed/inside");
  ::chmod("/Users/me/closed", 0);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(failureOf("/Users/me/closed/inside/x"),
                        "“x” can’t be looked at: The file “x” couldn’t be opened because you don’t have "
                        "permission to view it.");
              EXPECT_EQ(failureOf("/Users/me/link").substr(0, 40),
                        std::string("“link” can’t be looked at: The file “link”").substr(0, 40));
              EXPECT_EQ(failureOf("/Users/me/closed"), "nothing");
            }),
            "");
  ::chmod("/Users/me/closed", 0700);
}

TEST(Sightings, whoseRealPathIsTooLongAreNot) {
  const std::string far = makeFarFolder("/Users/me/tree", "/Users/me/half");
  const std::string name(200, 'd');
  const std::string sentence = "” can’t be looked at: The file “" + name + "” couldn’t be opened.";
  EXPECT_EQ(failureOf(far), "“" + name + sentence);
  EXPECT_EQ(failureOf(far + "/none"), "“none" + sentence);
  EXPECT_EQ(failureOf("/Users/me/half"), "nothing");
}

TEST(Sightings, ofALinkItselfAreAsSureAsThoseOfItsFolder) {
  scene::makeFolder("/Users/me/folder");
  scene::link("/Users/me/folder/link", "/Users/me");
  const Unresolving files("/Users/me/folder");
  EXPECT_EQ(sightItself(files, Path("/Users/me/folder/link")).failure->description,
            Unresolving::of("folder"));
  const Unresolving others("/Users/me/other");
  EXPECT_FALSE(sightItself(others, Path("/Users/me/folder/link")).failure);
}

TEST(Sightings, thatAreNotSureAnswerNoQuestionWhereALinkLeads) {
  const Unresolving files("/Users/me/folder");
  scene::makeFolder("/Users/me/folder");
  EXPECT_EQ(thrown([&] { leadsInto(files, Path("/Users/me/folder"), Path("/Users/me")); }),
            Unresolving::of("folder"));
  EXPECT_EQ(thrown([&] { leadsInto(files, Path("/Users/me"), Path("/Users/me/folder")); }),
            Unresolving::of("folder"));
}

}  // namespace
}  // namespace quarn
