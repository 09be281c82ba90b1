#include "QuarnCore/uninstall/AppUninstallPlanner.h"
#include "QuarnCore/uninstall/UninstallSelection.h"
#include "tests/support/FakeTools.h"
#include "tests/uninstall/Uninstalling.h"

namespace quarn {
namespace {

using namespace uninstalling;
using Category = UninstallCategory;
using Selection = UninstallSelection;

AppUninstallPlan planOf(const std::string& path = foo, const Selection& selection = Selection::everything()) {
  return AppUninstallPlanner::plan(hostPlatform(), *inspected(path), selection);
}

UninstallCandidate candidate(Category category, const std::string& path = "/x", bool isSelected = true) {
  return {.path = path, .category = category, .defaultSelected = isSelected};
}

bool isTaken(const UninstallCandidate& each, const Selection& selection, const AppRecord& app = {}) {
  return AppUninstallPlanner::effectiveSelected(each, app, selection);
}

TEST(UninstallSelection, ofEverythingLeavesOutWhatReachesBeyondTheUsersLibrary) {
  Selection expected;
  expected.includeData = expected.includeCaches = expected.includeLogs = expected.includePrefs =
      expected.includeContainers = expected.includeLaunchAgents = true;
  EXPECT_EQ(Selection::everything(), expected);
  EXPECT_EQ(Selection::executableOnly(), Selection());
}

TEST(UninstallSelection, allowsEachCategoryByItsSwitch) {
  const std::pair<Category, UninstallSwitch> rows[] = {
      {Category::executable, nullptr},
      {Category::applicationSupport, &Selection::includeData},
      {Category::caches, &Selection::includeCaches},
      {Category::preferences, &Selection::includePrefs},
      {Category::logs, &Selection::includeLogs},
      {Category::containers, &Selection::includeContainers},
      {Category::groupContainers, &Selection::includeContainers},
      {Category::httpStorages, &Selection::includeData},
      {Category::webKit, &Selection::includeData},
      {Category::savedAppState, &Selection::includeData},
      {Category::launchAgents, &Selection::includeLaunchAgents},
      {Category::launchDaemons, &Selection::includeLaunchDaemons},
      {Category::receipts, &Selection::includeReceipts},
      {Category::installerSession, nullptr},
  };
  EXPECT_EQ(std::size(rows), allCases<Category>().size());
  for (const auto& [category, governing] : rows) {
    Selection only;
    if (governing) only.*governing = true;
    EXPECT_TRUE(only.allows(category)) << rawValue(category);
    EXPECT_EQ(Selection().allows(category), governing == nullptr) << rawValue(category);
  }
}

TEST(UninstallCategory, hasALabelAndADefault) {
  std::string labels, unselected;
  for (const Category category : allCases<Category>()) {
    labels += std::string(rowOf(category).label) + ",";
    if (!rowOf(category).defaultSelected) unselected += std::string(rawValue(category)) + ",";
  }
  EXPECT_EQ(
      labels,
      "Executables,Application Support,Caches,Preferences,Logs,Containers,Group Containers,HTTP Storages,"
      "WebKit,Saved App State,Launch Agents,Launch Daemons,Receipts,Installer Session,");
  EXPECT_EQ(unselected, "launchDaemons,receipts,");
}

TEST(UninstallPlanner, alwaysTakesTheBundleItself) {
  AppRecord app;
  app.bundlePath = foo;
  EXPECT_TRUE(isTaken(candidate(Category::executable, foo, false), Selection::executableOnly(), app));
}

TEST(UninstallPlanner, takesTheTargetOnlyIfItIsNamed) {
  AppRecord app;
  app.bundlePath = foo;
  app.externalTargetPath = copyOfFoo;
  Selection named;
  named.includeExternalTarget = true;
  EXPECT_FALSE(isTaken(candidate(Category::executable, copyOfFoo, true), Selection::everything(), app));
  EXPECT_TRUE(isTaken(candidate(Category::executable, copyOfFoo, false), named, app));
  app.isSymlink = true;
  app.externalTargetPath = "../Volumes/X9/ExternalQuarn/Apps/Foo.app";
  EXPECT_TRUE(isTaken(candidate(Category::executable, copyOfFoo, false), named, app)) << "a relative link";
}

TEST(UninstallPlanner, takesAnotherExecutableByItsOwnDefault) {
  EXPECT_TRUE(isTaken(candidate(Category::executable, "/x", true), Selection::executableOnly()));
  EXPECT_FALSE(isTaken(candidate(Category::executable, "/x", false), Selection::everything()));
}

TEST(UninstallPlanner, takesRecordsOfInstallationsByTheirDefault) {
  EXPECT_FALSE(isTaken(candidate(Category::installerSession, "/x", false), Selection::everything()));
  EXPECT_TRUE(isTaken(candidate(Category::installerSession, "/x", true), Selection::executableOnly()));
}

TEST(UninstallPlanner, turnsCategoriesOnAndNotSingleItems) {
  Selection all = Selection::everything();
  all.includeReceipts = all.includeLaunchDaemons = true;
  for (const Category category : allCases<Category>()) {
    if (category == Category::executable || category == Category::installerSession) continue;
    EXPECT_TRUE(isTaken(candidate(category, "/x", true), all));
    EXPECT_FALSE(isTaken(candidate(category, "/x", false), all)) << rawValue(category);
    EXPECT_FALSE(isTaken(candidate(category, "/x", true), Selection::executableOnly())) << rawValue(category);
  }
}

TEST(UninstallPlanner, countsWhatWasFoundAndWhatIsTaken) {
  scene::makeApp(copyOfFoo, {}, 500'000);
  scene::link(foo, copyOfFoo);
  scene::writeBytes(library + "/Caches/com.example.foo/x", 100'000);
  const auto plan = planOf();
  const auto target = at(plan.candidates, copyOfFoo).sizeBytes;
  const auto caches = at(plan.candidates, library + "/Caches/com.example.foo").sizeBytes;
  const auto link = at(plan.candidates, foo).sizeBytes;
  EXPECT_GE(target, 500'000);
  EXPECT_EQ(plan.totalBytes, link + target + caches);
  EXPECT_EQ(plan.selectedBytes, link + caches);
  EXPECT_EQ(planOf(foo, Selection::executableOnly()).selectedBytes, link);
  Selection named;
  named.includeExternalTarget = true;
  EXPECT_EQ(planOf(foo, named).selectedBytes, link + target);
}

TEST(UninstallPlanner, groupsByCategoryInTheirOrder) {
  AppUninstallPlan plan;
  plan.candidates = {candidate(Category::receipts, "r"), candidate(Category::caches, "c2"),
                     candidate(Category::executable, "e"), candidate(Category::caches, "c1")};
  const auto groups = plan.grouped();
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(groups[0].first, Category::executable);
  EXPECT_EQ(groups[1].first, Category::caches);
  EXPECT_EQ(pathsOf(groups[1].second), (Texts{"c2", "c1"}));
  EXPECT_EQ(groups[2].first, Category::receipts);
  EXPECT_TRUE(AppUninstallPlan().grouped().empty());
}

TEST(UninstallPlanner, warnsOfNothingWithoutACause) {
  scene::makeApp(foo);
  EXPECT_EQ(planOf().warnings, Texts{});
}

TEST(UninstallPlanner, warnsInAFixedOrder) {
  scene::makeApp(foo);
  scene::write(foo + "/Contents/_MASReceipt/receipt", "x");
  scene::write(foo + "/Contents/Library/SystemExtensions/x", "x");
  scene::write(foo + "/Contents/Resources/ExternalAppTarget.txt", "/gone/Foo.app");
  scene::write("/Library/PrivilegedHelperTools/com.example.foo", "x");
  doubles::FakeTools tools;
  tools.answers["/usr/bin/mdutil -s"] = {.output = "/:\n\tIndexing disabled.\n"};
  const auto plan = AppUninstallPlanner::plan(tools.platform(), *inspected(), Selection::everything());
  ASSERT_EQ(plan.warnings.size(), 5u);
  EXPECT_EQ(Texts(plan.warnings.begin(), plan.warnings.begin() + 4),
            (Texts{"App declares a system extension; review carefully.",
                   "Mac App Store app; receipt may also need to be forgotten.",
                   "Launch daemons detected; requires admin authentication.",
                   "Quarn launcher: external target will only be removed if explicitly included."}));
}

TEST(UninstallPlanner, warnsFirstOfAPartOfTheSystemAndShowsItAllTheSame) {
  scene::makeApp("/System/Applications/Foo.app");
  scene::write("/System/Applications/Foo.app/Contents/_MASReceipt/receipt", "x");
  scene::writeBytes(library + "/Caches/com.example.foo/x", 1000);
  const auto plan = planOf("/System/Applications/Foo.app");
  EXPECT_EQ(plan.warnings.front(), "Refusing system app uninstall: /System/Applications/Foo.app");
  EXPECT_EQ(pathsOf(plan.candidates),
            (Texts{"/System/Applications/Foo.app", library + "/Caches/com.example.foo"}));
}

TEST(UninstallPlanner, doesntWarnOfALauncherWithoutATarget) {
  makeBundle(foo, key("CFBundleExecutable", "ExternalAppLauncher"));
  EXPECT_EQ(planOf().warnings, Texts{});
}

}  // namespace
}  // namespace quarn
