#include "QuarnCore/discovery/AppEntry.h"

namespace quarn {
namespace {

AppEntry flagged(bool store, bool login, bool extension, bool linked = false) {
  AppEntry entry;
  entry.isMacAppStore = store;
  entry.hasLoginItems = login;
  entry.hasSystemExtension = extension;
  entry.isAlreadySymlinked = linked;
  return entry;
}

AppEntry holding(const std::vector<DataPathSize>& sizes) {
  AppEntry entry;
  entry.dataPathSizes = sizes;
  return entry;
}

using Sentences = std::vector<std::string>;

TEST(AppEntry, theRiskIsThatOfItsWorstFlag) {
  EXPECT_EQ(flagged(false, false, false).riskLevel(), RiskLevel::low);
  EXPECT_EQ(flagged(true, false, false).riskLevel(), RiskLevel::medium);
  EXPECT_EQ(flagged(false, true, false).riskLevel(), RiskLevel::medium);
  EXPECT_EQ(flagged(false, false, true).riskLevel(), RiskLevel::high);
  EXPECT_EQ(flagged(true, true, true).riskLevel(), RiskLevel::high);
  EXPECT_EQ(flagged(false, false, false, true).riskLevel(), RiskLevel::low);
}

TEST(AppEntry, risksHaveWordsAndAnOrder) {
  EXPECT_EQ(rawValue(RiskLevel::low), "low");
  EXPECT_EQ(rawValue(RiskLevel::medium), "medium");
  EXPECT_EQ(rawValue(RiskLevel::high), "high");
  EXPECT_LT(RiskLevel::low, RiskLevel::medium);
  EXPECT_LT(RiskLevel::medium, RiskLevel::high);
}

TEST(AppEntry, eachFlagHasItsWarning) {
  EXPECT_EQ(flagged(false, false, false).warnings(), Sentences{});
  EXPECT_EQ(flagged(true, false, false).warnings(),
            Sentences{"Mac App Store app — moving may break the receipt"});
  EXPECT_EQ(flagged(false, true, false).warnings(), Sentences{"Registers a login item / helper"});
  EXPECT_EQ(flagged(false, false, true).warnings(), Sentences{"Has a system extension — do not move"});
  EXPECT_EQ(flagged(false, false, false, true).warnings(), Sentences{"Already a symlink (previously moved)"});
}

TEST(AppEntry, warningsStandInAFixedOrder) {
  EXPECT_EQ(
      flagged(true, true, true, true).warnings(),
      (Sentences{"Mac App Store app — moving may break the receipt", "Has a system extension — do not move",
                 "Registers a login item / helper", "Already a symlink (previously moved)"}));
}

TEST(AppEntry, theTotalIsTheAppAndItsData) {
  AppEntry entry;
  entry.appSize = 5'000'000'000;
  entry.dataSize = 7;
  EXPECT_EQ(entry.totalSize(), 5'000'000'007);
}

TEST(AppEntry, theDominantDataPathIsTheFirstOfTheLargest) {
  EXPECT_EQ(holding({{Path("/a"), 5}, {Path("/b"), 9}, {Path("/c"), 9}, {Path("/d"), 1}}).dominantDataPath(),
            (DataPathSize{Path("/b"), 9}));
  EXPECT_EQ(holding({{Path("/a"), 0}, {Path("/b"), 0}}).dominantDataPath(), (DataPathSize{Path("/a"), 0}));
  EXPECT_EQ(holding({}).dominantDataPath(), std::nullopt);
}

TEST(AppEntry, dataIsGroupedInTheOrderOfDisplayTheLargestItemFirst) {
  const std::string library = "/Users/me/Library/";
  const DataPathSize dot{Path("/Users/me/.foo"), 50};
  const DataPathSize smallCache{Path(library + "Caches/small"), 1};
  const DataPathSize bigCache{Path(library + "Caches/big"), 100};
  const DataPathSize support{Path(library + "Application Support/Foo"), 2};
  const DataPathSize preferences{Path(library + "Preferences/foo.plist"), 3};
  EXPECT_EQ(holding({dot, smallCache, preferences, bigCache, support}).categorizedPaths(),
            (std::vector<CategorizedPaths>{{DataPathCategory::applicationSupport, {support}},
                                           {DataPathCategory::caches, {bigCache, smallCache}},
                                           {DataPathCategory::preferences, {preferences}},
                                           {DataPathCategory::other, {dot}}}));
  EXPECT_TRUE(holding({}).categorizedPaths().empty());
}

TEST(AppEntry, anotherDisplayNameChangesNothingElse) {
  AppEntry entry = flagged(true, false, true);
  entry.id = "com.example.foo";
  entry.name = "Foo";
  entry.bundlePath = Path("/Applications/Foo.app");
  entry.appSize = 12;
  AppEntry expected = entry;
  expected.name = "Foo (2)";
  EXPECT_EQ(entry.withDisplayName("Foo (2)"), expected);
  EXPECT_EQ(entry.name, "Foo");
}

TEST(CategorizedPaths, sumsAndCountsItsItems) {
  CategorizedPaths group{DataPathCategory::caches, {}};
  EXPECT_EQ(group.total(), 0);
  EXPECT_EQ(group.fileFolderSummary(), "0 items");
  group.items.push_back({Path("/a"), 3'000'000'000});
  EXPECT_EQ(group.fileFolderSummary(), "1 item");
  group.items.push_back({Path("/b"), 4'000'000'000});
  EXPECT_EQ(group.total(), 7'000'000'000);
  EXPECT_EQ(group.fileFolderSummary(), "2 items");
}

}  // namespace
}  // namespace quarn
