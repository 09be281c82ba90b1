#include "QuarnCore/discovery/DataPathCategory.h"

namespace quarn {
namespace {

using C = DataPathCategory;

struct Row {
  C category;
  std::string label;
  int order;
};

const std::vector<Row> rows = {
    {C::applicationSupport, "Application Support", 0},
    {C::caches, "Caches", 3},
    {C::preferences, "Preferences", 7},
    {C::logs, "Logs", 8},
    {C::httpStorages, "HTTPStorages", 4},
    {C::savedState, "Saved State", 6},
    {C::containers, "Containers", 1},
    {C::groupContainers, "Group Containers", 2},
    {C::applicationScripts, "Application Scripts", 10},
    {C::launchAgents, "Launch Agents", 11},
    {C::launchDaemons, "Launch Daemons", 12},
    {C::webKit, "WebKit", 5},
    {C::cookies, "Cookies", 9},
    {C::dockIcon, "Dock Icon", 13},
    {C::other, "Other", 99},
};

C classify(const std::string& path) {
  return DataPathCategories::classify(Path(path));
}

TEST(DataPathCategory, everyCaseHasItsLabelAndItsPlaceInADisplay) {
  for (const Row& row : rows) {
    EXPECT_EQ(DataPathCategories::label(row.category), row.label);
    EXPECT_EQ(DataPathCategories::displayOrder(row.category), row.order) << row.label;
  }
}

TEST(DataPathCategory, allCasesAreListedInTheirOwnOrder) {
  std::vector<C> expected;
  for (const Row& row : rows) expected.push_back(row.category);
  constexpr auto cases = DataPathCategories::allCases();
  EXPECT_EQ(std::vector<C>(cases.begin(), cases.end()), expected);
}

TEST(DataPathCategory, aPathBelongsToTheLibraryFolderThatItLiesIn) {
  const std::vector<std::pair<std::string, C>> expected = {
      {"/Users/me/Library/Application Support/Foo", C::applicationSupport},
      {"/Users/me/Library/Group Containers/g", C::groupContainers},
      {"/Users/me/Library/Containers/c", C::containers},
      {"/Users/me/Library/Application Scripts/s", C::applicationScripts},
      {"/Users/me/Library/HTTPStorages/h", C::httpStorages},
      {"/Users/me/Library/WebKit/w", C::webKit},
      {"/Users/me/Library/Saved Application State/s.savedState", C::savedState},
      {"/Users/me/Library/Caches/c", C::caches},
      {"/Users/me/Library/Logs/l", C::logs},
      {"/Users/me/Library/Cookies/c", C::cookies},
      {"/Users/me/Library/Preferences/p.plist", C::preferences},
      {"/Users/me/Library/LaunchAgents/a.plist", C::launchAgents},
      {"/Library/LaunchDaemons/d.plist", C::launchDaemons},
      {"/Applications/Foo.app", C::dockIcon},
      {"/Users/me/.foo", C::other},
      {"/Users/me/Documents/x", C::other},
      {"/", C::other},
  };
  for (const auto& [path, category] : expected) EXPECT_EQ(classify(path), category) << path;
}

TEST(DataPathCategory, theSystemsOwnLibraryCountsLikeThatOfTheUser) {
  EXPECT_EQ(classify("/Library/Application Support/Logic"), C::applicationSupport);
  EXPECT_EQ(classify("/Library/Caches/x"), C::caches);
}

TEST(DataPathCategory, theFirstMarkOfTheOrderDecidesWhereverItStands) {
  EXPECT_EQ(classify("/Users/me/Library/Containers/c/Data/Library/Application Support/x"),
            C::applicationSupport);
  EXPECT_EQ(classify("/Users/me/Library/Containers/c/Data/Library/Caches/x"), C::containers);
  EXPECT_EQ(classify("/Users/me/Library/Caches/Library/Group Containers/x"), C::groupContainers);
  EXPECT_EQ(classify("/Users/me/Library/Logs/Library/Caches/x"), C::caches);
  EXPECT_EQ(classify("/Library/LaunchDaemons/Library/LaunchAgents"), C::launchAgents);
  EXPECT_EQ(classify("/Users/me/Library/Application Support/Foo/Foo.app"), C::applicationSupport);
}

TEST(DataPathCategory, marksAreMatchedAsTextWithLetterCase) {
  EXPECT_EQ(classify("/Users/me/Library/CachesOld/x"), C::caches);
  EXPECT_EQ(classify("/Users/me/library/caches/x"), C::other);
  EXPECT_EQ(classify("/Applications/Foo.APP"), C::other);
  EXPECT_EQ(classify("/Applications/Foo.app/Contents"), C::other);
}

TEST(DataPathCategory, theDiskIsNotAsked) {
  EXPECT_EQ(classify("/no/such/place/Library/WebKit/x"), C::webKit);
}

}  // namespace
}  // namespace quarn
