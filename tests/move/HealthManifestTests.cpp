#include <filesystem>
#include <sys/stat.h>

#include "QuarnCore/move/HealthManifest.h"
#include "tests/support/Child.h"
#include "tests/support/Decorators.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Entries = std::vector<HealthManifestEntry>;

// 2026-01-31T09:05:00Z
const Moment moment{std::chrono::seconds(1'769'850'300)};

HealthManifestEntry entry(const std::string& name,
                          const std::optional<std::string>& identifier = "com.example.foo",
                          std::int64_t size = 12) {
  return {.sourcePath = "/Applications/" + name,
          .destinationPath = "/Volumes/X9/ExternalQuarn/Apps/" + name,
          .bundleIdentifier = identifier,
          .sizeBytes = size,
          .movedAt = moment};
}

Entries load() {
  return HealthManifest::load(hostPlatform());
}
void record(const HealthManifestEntry& wanted) {
  HealthManifest::record(hostPlatform(), wanted);
}
void forget(const std::string& sourcePath) {
  HealthManifest::forget(hostPlatform(), sourcePath);
}

TEST(HealthManifest, liesInTheSupportFolderOfTheUser) {
  doubles::FakePlaces places;
  places.homeFolder = Path("/Users/you");
  EXPECT_EQ(HealthManifest::fileURL(places).text(),
            "/Users/you/Library/Application Support/Quarn/health-manifest.json");
  EXPECT_STREQ(HealthManifest::filename, "health-manifest.json");
}

TEST(HealthManifest, aFreshHomeHoldsNothingAndLoadingMakesNothing) {
  const auto before = scene::tree(scene::home);
  EXPECT_TRUE(load().empty());
  EXPECT_EQ(scene::tree(scene::home), before);
}

TEST(HealthManifest, forgettingWithoutAFileMakesNone) {
  const auto before = scene::tree(scene::home);
  forget("/Applications/Foo.app");
  EXPECT_EQ(scene::tree(scene::home), before);
}

TEST(HealthManifest, isWrittenToTheByte) {
  record(entry("Foo.app", "com.example.foo", 9'007'199'254'740'993));
  record(entry("Data", std::nullopt, 0));
  EXPECT_EQ(scene::read(scene::manifest), R"([
  {
    "bundleIdentifier" : "com.example.foo",
    "destinationPath" : "\/Volumes\/X9\/ExternalQuarn\/Apps\/Foo.app",
    "movedAt" : "2026-01-31T09:05:00Z",
    "sizeBytes" : 9007199254740993,
    "sourcePath" : "\/Applications\/Foo.app"
  },
  {
    "destinationPath" : "\/Volumes\/X9\/ExternalQuarn\/Apps\/Data",
    "movedAt" : "2026-01-31T09:05:00Z",
    "sizeBytes" : 0,
    "sourcePath" : "\/Applications\/Data"
  }
])");
}

TEST(HealthManifest, aFractionOfASecondIsCutOff) {
  HealthManifestEntry late = entry("Foo.app");
  late.movedAt += std::chrono::milliseconds(999);
  record(late);
  EXPECT_EQ(load(), (Entries{entry("Foo.app")}));
}

TEST(HealthManifest, specialCharactersOfAPathComeBack) {
  HealthManifestEntry strange = entry("é\"\\\n\t\x01🎉.app");
  record(strange);
  EXPECT_EQ(load(), (Entries{strange}));
}

TEST(HealthManifest, aNameThatIsNoTextLeavesTheFileAsItWas) {
  record(entry("Foo.app"));
  record(entry("b\xFF.app"));
  HealthManifestEntry elsewhere = entry("Bar.app");
  elsewhere.destinationPath = "/Volumes/X9/\xC3";
  record(elsewhere);
  EXPECT_EQ(load(), (Entries{entry("Foo.app")}));
}

TEST(HealthManifest, aNameThatIsNoTextMakesNoFolder) {
  const auto before = scene::tree(scene::home);
  record(entry("b\xFF.app"));
  EXPECT_EQ(scene::tree(scene::home), before);
}

TEST(HealthManifest, theLastEntryLeavesAnEmptyList) {
  record(entry("Foo.app"));
  forget("/Applications/Foo.app");
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
  EXPECT_TRUE(load().empty());
}

TEST(HealthManifest, aRepeatedMoveStandsOnceAtTheEndWithItsNewValues) {
  record(entry("Foo.app", "com.example.old", 1));
  record(entry("Bar.app"));
  record(entry("Foo.app", std::nullopt, 2));
  EXPECT_EQ(load(), (Entries{entry("Bar.app"), entry("Foo.app", std::nullopt, 2)}));
  EXPECT_EQ(scene::read(scene::manifest).find("null"), std::string::npos);
}

TEST(HealthManifest, pathsAreTheSameByCanonicalEqualityAndLetterCase) {
  record(entry("Caf\u00e9.app"));
  record(entry("Cafe\u0301.app", std::nullopt, 2));
  record(entry("caf\u00e9.app", std::nullopt, 3));
  EXPECT_EQ(load(),
            (Entries{entry("Cafe\u0301.app", std::nullopt, 2), entry("caf\u00e9.app", std::nullopt, 3)}));
  forget("/Applications/Caf\u00e9.app");
  EXPECT_EQ(load(), (Entries{entry("caf\u00e9.app", std::nullopt, 3)}));
}

TEST(HealthManifest, forgettingAnUnknownPathLeavesTheFileUntouched) {
  const std::string otherLayout =
      R"([{"sourcePath":"/Applications/Foo.app","destinationPath":"/d","sizeBytes":1,)"
      R"("movedAt":"2026-01-31T09:05:00Z"}])";
  scene::write(scene::manifest, otherLayout);
  forget("/Applications/Other.app");
  EXPECT_EQ(scene::read(scene::manifest), otherLayout);
}

TEST(HealthManifest, forgettingKeepsTheOthersInTheirOrder) {
  for (const char* name : {"A", "B", "C"}) record(entry(name));
  forget("/Applications/B");
  EXPECT_EQ(load(), (Entries{entry("A"), entry("C")}));
}

/// What a file with one entry of these members loads as.
Entries reading(const std::string& members) {
  scene::write(scene::manifest, "[{" + members + "}]");
  return load();
}

const std::string path = R"("sourcePath":"/s")";
const std::string destination = R"("destinationPath":"/d")";
const std::string size = R"("sizeBytes":1)";
const std::string date = R"("movedAt":"2026-01-31T09:05:00Z")";
const std::string both = path + "," + destination + ",";

TEST(HealthManifest, readsWhatOthersWroteInTheirLayout) {
  const HealthManifestEntry plain{"/s", "/d", std::nullopt, 1, moment};
  HealthManifestEntry identified = plain;
  identified.bundleIdentifier = "com.foo";
  EXPECT_EQ(reading(both + size + "," + date), (Entries{plain}));
  EXPECT_EQ(reading(R"("sourcePath":"\/s","destinationPath":"\/d",)" + size + "," + date), (Entries{plain}));
  EXPECT_EQ(reading(both + size + "," + date + R"(,"bundleIdentifier":null)"), (Entries{plain}));
  EXPECT_EQ(reading(both + size + "," + date + R"(,"bundleIdentifier":"com.foo")"), (Entries{identified}));
  EXPECT_EQ(reading(both + size + "," + date + R"(,"unknown":[1,{}])"), (Entries{plain}));
  EXPECT_EQ(reading(both + size + "," + date + R"(,"sourcePath":"/second")"), (Entries{plain}));
  EXPECT_EQ(reading(both + size + "," + date + ","), (Entries{plain}));
  EXPECT_EQ(reading(both + R"("sizeBytes":1.0,)" + date), (Entries{plain}));
  EXPECT_EQ(reading(both + R"("sizeBytes":1e0,)" + date), (Entries{plain}));
}

TEST(HealthManifest, anEntryOfTheWrongShapeEmptiesTheWholeFile) {
  const std::vector<std::string> rows = {
      destination + "," + size + "," + date,
      path + "," + size + "," + date,
      both + date,
      both + size,
      R"("sourcePath":null,)" + destination + "," + size + "," + date,
      R"("sourcePath":1,)" + destination + "," + size + "," + date,
      both + R"("sizeBytes":"1",)" + date,
      both + R"("sizeBytes":1.5,)" + date,
      both + R"("sizeBytes":9223372036854775808,)" + date,
      both + R"("sizeBytes":null,)" + date,
      both + size + R"(,"movedAt":"2026-01-31T09:05:00.5Z")",
      both + size + R"(,"movedAt":"2026-01-31 09:05:00 +0000")",
      both + size + R"(,"movedAt":791456700)",
      both + size + R"(,"movedAt":null)",
      both + size + "," + date + R"(,"bundleIdentifier":5)",
  };
  for (const std::string& members : rows) EXPECT_TRUE(reading(members).empty()) << members;
}

TEST(HealthManifest, oneGoodAndOneBadEntryLoadAsNothingAndTheNextRecordStandsAlone) {
  scene::write(scene::manifest, "[{" + both + size + "," + date + "},{" + both + size + "}]");
  EXPECT_TRUE(load().empty());
  record(entry("Foo.app"));
  EXPECT_EQ(load(), (Entries{entry("Foo.app")}));
}

TEST(HealthManifest, aFileThatIsNoListLoadsAsNothing) {
  const std::string one = "{" + both + size + "," + date + "}";
  for (const std::string& content :
       {std::string(), std::string(" \n"), std::string("{}"), one, "[" + one + "] x", "[" + one,
        "[" + one + ",5]", "[" + one + ",null]", std::string("null"), std::string("\xff\xfe")}) {
    scene::write(scene::manifest, content);
    EXPECT_TRUE(load().empty()) << content;
  }
  scene::write(scene::manifest, "[" + one + ",]");
  EXPECT_EQ(load().size(), 1u);
}

TEST(HealthManifest, forgettingInACorruptFileLeavesItAsItIs) {
  scene::write(scene::manifest, "[{broken");
  forget("/Applications/Foo.app");
  EXPECT_EQ(scene::read(scene::manifest), "[{broken");
}

TEST(HealthManifest, aFileThatMayNotBeReadLoadsAsNothing) {
  record(entry("Foo.app"));
  ::chmod(scene::manifest.c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_TRUE(load().empty()); }), "");
}

TEST(HealthManifest, whatCannotBeWrittenIsLeftInSilence) {
  const std::string support = scene::home + "/Library/Application Support";
  scene::write(support + "/Quarn", "a file in the way");
  record(entry("Foo.app"));
  EXPECT_EQ(scene::read(support + "/Quarn"), "a file in the way");
  std::filesystem::remove(support + "/Quarn");
  scene::makeFolder(scene::manifest);
  record(entry("Foo.app"));
  EXPECT_TRUE(std::filesystem::is_directory(scene::manifest));
  EXPECT_EQ(scene::tree(support + "/Quarn").size(), 2u) << "no temporary file is left";
}

TEST(HealthManifest, aFolderThatCannotBeMadeDoesNotKeepTheFileFromBeingWritten) {
  class NoFolders : public GuardedFileSystem {
   public:
    using GuardedFileSystem::GuardedFileSystem;
    Result<void> before(const std::string& operation) override {
      if (operation.starts_with("createFolder")) return PlatformError("test", 1, "no");
      return {};
    }
  } files(hostPlatform().files);
  scene::makeFolder(scene::home + "/Library/Application Support/Quarn");
  Platform platform = replacing({.files = &files});
  HealthManifest::record(platform, entry("Foo.app"));
  EXPECT_EQ(load(), (Entries{entry("Foo.app")}));
}

TEST(HealthManifest, theOldFileIsReplacedAndNotWrittenOver) {
  record(entry("Foo.app"));
  struct stat before {};
  struct stat after {};
  ASSERT_EQ(::stat(scene::manifest.c_str(), &before), 0);
  std::filesystem::create_hard_link(scene::manifest, "/tmp/kept");
  const std::string old = scene::read("/tmp/kept");
  record(entry("Bar.app"));
  ASSERT_EQ(::stat(scene::manifest.c_str(), &after), 0);
  EXPECT_NE(before.st_ino, after.st_ino);
  EXPECT_EQ(scene::read("/tmp/kept"), old);
}

}  // namespace
}  // namespace quarn
