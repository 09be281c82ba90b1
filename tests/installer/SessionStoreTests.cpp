#include <filesystem>
#include <gtest/gtest.h>

#include "Platform/DateText.h"
#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/support/Child.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using Texts = std::vector<std::string>;
using Status = InstallerSessionStatus;

InstallerSession sample(const std::string& id = "20260131_090500") {
  return {.id = id,
          .sourcePath = "a b/\"Foo\".pkg",
          .optionID = "trusted-external",
          .createdAt = *DateText::fromSecondsSince2001(791456700.5),
          .actions = {"installed-pkg\t/a.pkg"},
          .changedPaths = {"/Applications/Foo.app", "/Library/x\ty"},
          .newReceipts = {"com.example.foo"},
          .status = Status::pendingExternalize,
          .targetDrivePath = "/Volumes/X9",
          .pendingExternalizeApps = {"/Applications/Foo.app"}};
}

const char* const text =
    R"({"id":"20260131_090500","sourcePath":"a b\/\"Foo\".pkg","optionID":"trusted-external",)"
    R"("createdAt":791456700.5,"actions":["installed-pkg\t\/a.pkg"],)"
    R"("changedPaths":["\/Applications\/Foo.app","\/Library\/x\ty"],"newReceipts":["com.example.foo"],)"
    R"("status":"pendingExternalize","targetDrivePath":"\/Volumes\/X9",)"
    R"("pendingExternalizeApps":["\/Applications\/Foo.app"]})";

class Sessions : public testing::Test {
 protected:
  void save(const InstallerSession& session) { SessionStore::save(hostPlatform(), session, root); }
  std::vector<InstallerSession> listed() { return SessionStore::list(hostPlatform(), root); }
  std::optional<InstallerSession> found(const std::string& id) {
    return SessionStore::find(hostPlatform(), id, root);
  }
  Texts identifiers() {
    Texts ids;
    for (const InstallerSession& session : listed()) ids.push_back(session.id);
    return ids;
  }

  ScratchFolder scratch;
  const Path root = scratch / "made/Sessions";
};

TEST_F(Sessions, aSessionIsCompactJsonAndAListOfPaths) {
  save(sample());
  EXPECT_EQ(scratch.read("made/Sessions/20260131_090500/session.json"), text);
  EXPECT_EQ(scratch.read("made/Sessions/20260131_090500/changed-paths.tsv"),
            "/Applications/Foo.app\n/Library/x\ty");
}

TEST_F(Sessions, allKeysAreWrittenAndNoChangesGiveAnEmptyList) {
  InstallerSession empty;
  empty.id = "x";
  empty.createdAt = *DateText::fromSecondsSince2001(791456700);
  save(empty);
  EXPECT_EQ(scratch.read("made/Sessions/x/session.json"),
            R"({"id":"x","sourcePath":"","optionID":"","createdAt":791456700,"actions":[],"changedPaths":[],)"
            R"("newReceipts":[],"status":"done","targetDrivePath":"","pendingExternalizeApps":[]})");
  ASSERT_TRUE(scratch.stands("made/Sessions/x/changed-paths.tsv"));
  EXPECT_EQ(scratch.read("made/Sessions/x/changed-paths.tsv"), "");
}

TEST_F(Sessions, whatWasSavedIsReadBack) {
  save(sample());
  EXPECT_EQ(found("20260131_090500"), sample());
  EXPECT_EQ(SessionStore::load(hostPlatform(), root.appending("20260131_090500")), sample());
  EXPECT_EQ(listed(), std::vector<InstallerSession>{sample()});
}

TEST_F(Sessions, aLaterSessionWithTheSameIdentifierReplacesBothFiles) {
  save(sample());
  InstallerSession later = sample();
  later.changedPaths = {"/other"};
  save(later);
  EXPECT_EQ(found("20260131_090500"), later);
  EXPECT_EQ(scratch.read("made/Sessions/20260131_090500/changed-paths.tsv"), "/other");
}

TEST_F(Sessions, ofEarlyVersionsAreReadWithWhatTheyMeant) {
  scratch.write("made/Sessions/20200101_000000/session.json",
                R"({"id":"20200101_000000","sourcePath":"/a","optionID":"o","createdAt":1,"actions":[],)"
                R"("changedPaths":[],"newReceipts":[]})");
  const auto session = found("20200101_000000");
  ASSERT_TRUE(session);
  EXPECT_EQ(session->status, Status::done);
  EXPECT_EQ(session->targetDrivePath, "");
  EXPECT_EQ(session->pendingExternalizeApps, Texts{});
}

TEST_F(Sessions, keysOfLaterVersionsDoNotMatter) {
  std::string more = text;
  more.insert(1, R"("later":{"a":[1,2]},)");
  scratch.write("made/Sessions/20260131_090500/session.json", more);
  EXPECT_EQ(found("20260131_090500"), sample());
}

TEST_F(Sessions, whatIsNoSessionIsLeftOut) {
  save(sample());
  scratch.folder("made/Sessions/empty");
  scratch.write("made/Sessions/a file", text);
  scratch.write("made/Sessions/cut/session.json", std::string(text).substr(0, 100));
  scratch.write("made/Sessions/no text/session.json", "\xFF\xFE");
  scratch.write("made/Sessions/nothing/session.json", "");
  scratch.write("made/Sessions/wrong status/session.json",
                std::string(text).replace(std::string(text).find("pendingExternalize"), 18, "somethingElse"));
  scratch.write("made/Sessions/.hidden/session.json", text);
  scratch.folder("made/Sessions/folder/session.json");
  EXPECT_EQ(identifiers(), Texts{"20260131_090500"});
  for (const char* id : {"empty", "a file", "cut", "no text", "nothing", "wrong status", "folder", "none"})
    EXPECT_EQ(found(id), std::nullopt) << id;
}

TEST_F(Sessions, withoutAFolderThereAreNone) {
  EXPECT_EQ(identifiers(), Texts{});
}

TEST_F(Sessions, areListedFromTheNewest) {
  for (const auto& [id, seconds] : {std::pair{"a", 2.0}, {"b", 3.0}, {"c", 1.0}, {"d", 2.0}}) {
    InstallerSession session = sample(id);
    session.createdAt = *DateText::fromSecondsSince2001(seconds);
    save(session);
  }
  EXPECT_EQ(identifiers(), (Texts{"b", "a", "d", "c"}));
}

TEST_F(Sessions, anIdentifierMayHoldSpacesLettersAndOtherDigits) {
  for (const char* id :
       {"20260131_090500 PM", "\u0662\u0660\u0662\u0666", "25690131_090500", "-x", "--yes"}) {
    save(sample(id));
    ASSERT_TRUE(found(id)) << id;
    EXPECT_EQ(found(id)->id, id);
  }
}

TEST_F(Sessions, anIdentifierThatNamesNoFolderOfItsOwnIsNone) {
  scratch.write("outside/session.json", text);
  scratch.write("made/session.json", text);
  scratch.write("made/Sessions/session.json", text);
  const Texts ids = {"", ".", "..", "../../outside", "a/b", "/tmp", std::string("a\0b", 3)};
  for (const std::string& id : ids) {
    EXPECT_EQ(found(id), std::nullopt) << id;
    EXPECT_THROW(save(sample(id)), PlatformError) << id;
  }
  EXPECT_EQ(scratch.read("made/session.json"), text);
  EXPECT_EQ(scratch.read("outside/session.json"), text);
}

TEST_F(Sessions, aSessionInTheFolderOfAnotherIdentifierIsNotThatSession) {
  // Finishing it would otherwise write into the folder that the file names.
  save(sample());
  scratch.write("made/Sessions/20260131_090500 copy/session.json", text);
  EXPECT_EQ(found("20260131_090500 copy"), std::nullopt);
  EXPECT_EQ(listed().size(), 2u) << "it is still shown";
}

TEST_F(Sessions, aFileThatCannotBeWrittenLeavesTheFormerOneWhole) {
  save(sample());
  InstallerSession later = sample();
  later.actions.clear();
  int writes = 0;
  for (const int failing : {1, 2}) {
    writes = 0;
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (operation.starts_with("writeAtomically") && ++writes == failing)
        return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "full");
      return {};
    });
    EXPECT_EQ(thrown([&] { SessionStore::save(gated.platform(), later, root); }), "full");
    // The first file has been written when the second one fails.
    EXPECT_EQ(found("20260131_090500"), failing == 1 ? sample() : later);
    EXPECT_EQ(scratch.read("made/Sessions/20260131_090500/changed-paths.tsv"),
              "/Applications/Foo.app\n/Library/x\ty");
  }
}

TEST_F(Sessions, aFolderThatMayNotBeWrittenIsAnError) {
  scratch.folder("made/Sessions");
  std::filesystem::permissions(scratch.at("made/Sessions"), std::filesystem::perms(0555));
  EXPECT_EQ(child::failuresWithoutRights([&] {
              EXPECT_NE(thrown([&] { save(sample()); }), "nothing");
              EXPECT_EQ(identifiers(), Texts{});
            }),
            "");
}

TEST(InstallerSession, aCopyKeepsWhatIsNotGiven) {
  const InstallerSession session = sample();
  InstallerSession expected = session;
  expected.status = Status::done;
  EXPECT_EQ(session.with(Status::done), expected);
  expected.actions = {"x"};
  EXPECT_EQ(session.with(Status::done, Texts{"x"}), expected);
  expected.pendingExternalizeApps = {};
  EXPECT_EQ(session.with(Status::done, Texts{"x"}, Texts{}), expected);
}

}  // namespace
}  // namespace quarn
