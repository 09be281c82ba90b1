#include <cerrno>
#include <fcntl.h>

#include "Platform/CocoaError.h"
#include "Platform/DateText.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/uninstall/AppUninstallError.h"
#include "QuarnCore/uninstall/AppUninstallRunner.h"
#include "QuarnCore/uninstall/UninstallSessionStore.h"
#include "tests/support/Child.h"
#include "tests/support/FakeTools.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Unresolving.h"
#include "tests/uninstall/Uninstalling.h"

namespace quarn {
namespace {

using namespace uninstalling;
using Selection = UninstallSelection;
using Paths = std::set<std::string>;

const std::string sessions = library + "/Application Support/Quarn/UninstallSessions";
const std::string caches = library + "/Caches/com.example.foo";
const std::string support = library + "/Application Support/Foo";

/// A run of which the steps are kept.
struct Runner {
  AppUninstallSession run(const AppUninstallPlan& plan, const Platform& platform = hostPlatform(),
                          const std::optional<Paths>& selected = std::nullopt, bool dryRun = false) {
    Platform whole = platform;
    AppUninstallReporter reporter;
    reporter.log = [this](const std::string& line) { steps.push_back(line); };
    reporter.warn = [this](const std::string& sentence) { warnings.push_back(sentence); };
    reporter.unrecorded = [this](const AppUninstallSession& session) { unrecorded.push_back(session); };
    return AppUninstallRunner::run(whole, plan, Selection::everything(), dryRun, selected, reporter);
  }

  Texts steps, warnings;
  std::vector<AppUninstallSession> unrecorded;
};

AppUninstallPlan planned(const std::string& path = foo) {
  return AppUninstallPlanner::plan(hostPlatform(), *inspected(path), Selection::everything());
}

void makeFoo() {
  scene::makeApp(foo);
  scene::write(caches + "/x", "cache");
  scene::write(support + "/x", "data");
}

std::string refusalOf(const AppUninstallPlan& plan, bool dryRun = false,
                      const Platform& platform = hostPlatform()) {
  Runner runner;
  try {
    runner.run(plan, platform, std::nullopt, dryRun);
  } catch (const AppUninstallError& error) {
    EXPECT_EQ(runner.steps, Texts{});
    return error.localizedDescription();
  }
  return "not refused";
}

TEST(UninstallRunner, movesEachItemToTheTrashAndRecordsWhereItIs) {
  makeFoo();
  scene::write(library + "/Caches/com.example.foo2/x", "foreign");
  const auto bundle = scene::tree(foo);
  Runner runner;
  const auto session = runner.run(planned());
  EXPECT_EQ(runner.steps, (Texts{"uninstall-start\t" + foo + "\tdry=false", "trash\texecutable\t" + foo,
                                 "trash\tapplicationSupport\t" + support, "trash\tcaches\t" + caches,
                                 "session\t" + session.id, "uninstall-done\titems=3\treceipts=0"}));
  EXPECT_EQ(session.appPath, foo);
  EXPECT_EQ(session.appName, "Foo");
  EXPECT_EQ(session.bundleIdentifier, "com.example.foo");
  EXPECT_FALSE(session.dryRun);
  ASSERT_EQ(session.movedItems.size(), 3u);
  const Texts names = {"Foo.app", "Foo", "com.example.foo"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto& item = session.movedItems[i];
    EXPECT_TRUE(item.succeeded);
    EXPECT_EQ(item.trashedTo, inTrash(names[i]));
    EXPECT_EQ(item.stashedTo, std::nullopt);
    EXPECT_EQ(item.error, std::nullopt);
    EXPECT_FALSE(scene::exists(item.originalPath));
  }
  EXPECT_EQ(scene::tree(inTrash("Foo.app")), bundle);
  EXPECT_EQ(scene::read(library + "/Caches/com.example.foo2/x"), "foreign");
  const auto recorded = UninstallSessionStore::find(hostPlatform(), session.id, Path(sessions));
  ASSERT_TRUE(recorded);
  EXPECT_EQ(recorded->movedItems, session.movedItems);
}

TEST(UninstallRunner, takesTheLinkAndLeavesWhatItLeadsTo) {
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  const auto copy = scene::tree(copyOfFoo);
  Runner().run(planned());
  EXPECT_FALSE(scene::exists(foo));
  EXPECT_EQ(scene::target(inTrash("Foo.app")), copyOfFoo);
  EXPECT_EQ(scene::tree(copyOfFoo), copy);
}

TEST(UninstallRunner, changesNothingInADryRun) {
  makeFoo();
  const auto before = scene::tree("/Users/me");
  Runner runner;
  const auto session = runner.run(planned(), hostPlatform(), Paths{foo, "com.example.foo"}, true);
  EXPECT_TRUE(session.dryRun);
  EXPECT_EQ(session.movedItems.size(), 1u);
  EXPECT_TRUE(session.movedItems[0].succeeded);
  EXPECT_EQ(session.movedItems[0].trashedTo, std::nullopt);
  EXPECT_EQ(runner.steps, (Texts{"uninstall-start\t" + foo + "\tdry=true", "dry-trash\texecutable\t" + foo,
                                 "uninstall-done\titems=1\treceipts=0"}));
  EXPECT_EQ(scene::tree("/Users/me"), before);
  EXPECT_TRUE(scene::exists(foo));
}

TEST(UninstallRunner, takesExactlyTheNamedPathsThatAreInThePlan) {
  makeFoo();
  scene::write("/Users/me/.foo/settings", "x");
  scene::write("/Users/me/Documents/precious", "precious");
  Runner runner;
  const auto session =
      runner.run(planned(), hostPlatform(), Paths{"/Users/me/.foo", caches, "/Users/me/Documents"});
  EXPECT_EQ(session.movedItems.size(), 2u);
  EXPECT_EQ(namesIn("/Users/me/.Trash"), (Texts{".foo", "com.example.foo"}));
  EXPECT_TRUE(scene::exists(foo));
  EXPECT_EQ(scene::read("/Users/me/Documents/precious"), "precious");
}

TEST(UninstallRunner, writesARecordOfNothingForNoPaths) {
  makeFoo();
  const auto session = Runner().run(planned(), hostPlatform(), Paths{});
  EXPECT_TRUE(session.movedItems.empty());
  EXPECT_EQ(UninstallSessionStore::list(hostPlatform(), Path(sessions)).size(), 1u);
  EXPECT_TRUE(scene::exists(foo));
}

TEST(UninstallRunner, countsWhatHasVanishedSinceThePlanAsGone) {
  makeFoo();
  const auto plan = planned();
  std::filesystem::remove_all(caches);
  Runner runner;
  const auto session = runner.run(plan);
  const auto& item = session.movedItems[2];
  EXPECT_EQ(item.originalPath, caches);
  EXPECT_TRUE(item.succeeded);
  EXPECT_EQ(item.trashedTo, std::nullopt);
  EXPECT_EQ(item.stashedTo, library + "/Caches/.QuarnTrash");
  EXPECT_EQ(runner.steps[3], "stash\tcaches\t" + caches);
  EXPECT_FALSE(scene::exists(library + "/Caches/.QuarnTrash"));
}

TEST(UninstallRunner, stashesBesideWhatTheTrashRefuses) {
  makeFoo();
  doubles::RefusingTrash trash;
  Runner runner;
  const auto session = runner.run(planned(), replacing({.trash = &trash}));
  EXPECT_EQ(runner.steps[1], "stash\texecutable\t" + foo);
  EXPECT_EQ(runner.warnings.size(), 3u);
  EXPECT_TRUE(runner.warnings[0].starts_with("The Trash refused “" + foo +
                                             "”. It is in /Applications/.QuarnTrash/Foo.app-uninstall-"));
  for (const auto& item : session.movedItems) {
    EXPECT_TRUE(item.succeeded);
    EXPECT_EQ(item.trashedTo, std::nullopt);
    const auto parent = std::filesystem::path(item.originalPath).parent_path().string();
    EXPECT_EQ(item.stashedTo, parent + "/.QuarnTrash");
    const auto stashed = namesIn(parent + "/.QuarnTrash");
    ASSERT_EQ(stashed.size(), 1u);
    EXPECT_TRUE(
        stashed[0].starts_with(std::filesystem::path(item.originalPath).filename().string() + "-uninstall-"));
  }
}

TEST(UninstallRunner, tellsWhereAnItemIsThatTheTrashTookAtTheSecondAttempt) {
  makeFoo();
  int attempts = 0;
  const auto refusesOnce = [&](const std::string& operation) -> Result<void> {
    if (operation == "trash " + caches && ++attempts == 1)
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, "once");
    return {};
  };
  GatedPlatform gated(refusesOnce);
  const auto session = Runner().run(planned(), gated.platform());
  EXPECT_EQ(session.movedItems[2].trashedTo, inTrash("com.example.foo"));
  EXPECT_EQ(session.movedItems[2].stashedTo, library + "/Caches/.QuarnTrash");
  EXPECT_TRUE(session.movedItems[2].succeeded);
}

/// Can't tell any more whether something stands where the application was.
class BlindForWhatWent : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<FileAttributes> attributes(const Path& path) const override {
    if (path.text() == foo && !scene::exists(foo))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "an error of the disk");
    return FileSystemDecorator::attributes(path);
  }
};

TEST(UninstallRunner, knowsThatWhatItMovedAsideIsGoneWithoutALook) {
  makeFoo();
  doubles::RefusingTrash trash;
  BlindForWhatWent files(hostPlatform().files);
  const auto session = Runner().run(planned(), replacing({.files = &files, .trash = &trash}));
  EXPECT_FALSE(scene::exists(foo));
  EXPECT_TRUE(session.movedItems[0].succeeded);
}

TEST(UninstallRunner, goesOnAfterAnItemThatStays) {
  makeFoo();
  const auto keepsCaches = [](const std::string& operation) -> Result<void> {
    const bool isOfCaches = operation == "trash " + caches || operation.starts_with("rename " + caches);
    if (isOfCaches) return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, "no");
    return {};
  };
  GatedPlatform gated(keepsCaches);
  scene::write(library + "/WebKit/com.example.foo/x", "x");
  const auto session = Runner().run(planned(), gated.platform());
  ASSERT_EQ(session.movedItems.size(), 4u);
  EXPECT_FALSE(session.movedItems[2].succeeded);
  EXPECT_EQ(session.movedItems[2].trashedTo, std::nullopt);
  EXPECT_EQ(session.movedItems[2].stashedTo, library + "/Caches/.QuarnTrash");
  EXPECT_EQ(scene::read(caches + "/x"), "cache");
  EXPECT_TRUE(session.movedItems[3].succeeded);
}

TEST(UninstallRunner, tellsThatALinkIsStillThere) {
  scene::link(foo, "/nowhere/Foo.app");
  const auto keeps = [](const std::string& operation) -> Result<void> {
    if (operation.starts_with("trash") || operation.starts_with("rename"))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, "no");
    return {};
  };
  GatedPlatform gated(keeps);
  const auto session = Runner().run(planned(), gated.platform());
  EXPECT_FALSE(session.movedItems[0].succeeded) << "a dangling link is something, too";
  EXPECT_TRUE(scene::isLink(foo));
}

TEST(UninstallRunner, refusesAPartOfTheSystem) {
  scene::makeApp("/System/Applications/Foo.app");
  for (const bool dryRun : {false, true})
    EXPECT_EQ(refusalOf(planned("/System/Applications/Foo.app"), dryRun),
              "Refusing to uninstall system app: /System/Applications/Foo.app");
  EXPECT_TRUE(scene::exists("/System/Applications/Foo.app"));
  EXPECT_FALSE(scene::exists(sessions));
}

TEST(UninstallRunner, refusesALinkToAPartOfTheSystem) {
  scene::makeApp("/System/Applications/Foo.app");
  scene::link(foo, "../System/Applications/Foo.app");
  scene::write(caches + "/x", "cache");
  EXPECT_EQ(refusalOf(planned()), "Refusing to uninstall system app: " + foo);
  EXPECT_TRUE(scene::isLink(foo));
  EXPECT_TRUE(scene::exists(caches));
}

TEST(UninstallRunner, refusesAPathThatCantBeRecorded) {
  const std::string odd = "/Applications/\xFF.app";
  scene::makeApp(odd);
  EXPECT_EQ(refusalOf(planned(odd)),
            "Refusing to uninstall: “\xFF.app” can’t be recorded, since its path isn’t UTF-8.");
  EXPECT_TRUE(scene::exists(odd));
}

TEST(UninstallRunner, logsEachStepAfterItWasTaken) {
  makeFoo();
  Platform platform = hostPlatform();
  std::vector<bool> wasThere;
  AppUninstallReporter reporter;
  reporter.log = [&](const std::string& line) {
    if (line.starts_with("trash\t")) wasThere.push_back(scene::exists(line.substr(line.rfind('\t') + 1)));
  };
  AppUninstallRunner::run(platform, planned(), Selection::everything(), false, std::nullopt, reporter);
  EXPECT_EQ(wasThere, std::vector<bool>(3, false));
}

TEST(UninstallRunner, leavesTheNewPlaceOutIfTheSystemDoesntTell) {
  class Silent : public Trash {
   public:
    Result<Path> moveToTrash(const Path& item) override {
      hostPlatform().trash.moveToTrash(item).orThrow();
      return Path();
    }
  };
  scene::makeApp(foo);
  Silent trash;
  const auto session = Runner().run(planned(), replacing({.trash = &trash}));
  EXPECT_TRUE(session.movedItems[0].succeeded);
  EXPECT_EQ(session.movedItems[0].trashedTo, std::nullopt);
}

TEST(UninstallRunner, writesNothingThroughALinkInThePlaceOfItsRecord) {
  scene::makeApp(foo);
  scene::makeFolder("/Users/me/Documents");
  doubles::FakeClock clock;
  clock.moment = Moment(std::chrono::seconds(1'700'000'000));
  const auto plan = planned();
  scene::makeFolder(sessions);
  scene::link(sessions + "/" + DateText::compactLocal(clock.moment), "/Users/me/Documents");
  EXPECT_THROW(Runner().run(plan, replacing({.clock = &clock})), PlatformError);
  EXPECT_EQ(namesIn("/Users/me/Documents"), Texts{});
}

TEST(UninstallRunner, refusesWhatIsNoApplicationOrBelongsWhereItIs) {
  scene::write("/Users/me/Documents/precious", "precious");
  EXPECT_EQ(refusalOf(planned("/Users/me/Documents")),
            "Refusing to uninstall: “Documents” isn’t an application.");
  EXPECT_EQ(refusalOf(planned("/Users/me")), "Refusing to uninstall: “me” belongs where it is.");
  EXPECT_EQ(refusalOf(planned("/Applications")),
            "Refusing to uninstall: “Applications” belongs where it is.");
  EXPECT_EQ(refusalOf(planned("/Volumes/X9")), "Refusing to uninstall: “X9” belongs where it is.");
  EXPECT_EQ(refusalOf(planned("/")), "Refusing to uninstall: “/” belongs where it is.");
  EXPECT_EQ(scene::read("/Users/me/Documents/precious"), "precious");
}

/// Fails to read one file.
class Unreading : public FileSystemDecorator {
 public:
  Unreading(FileSystem& inner, std::string file) : FileSystemDecorator(inner), file_(std::move(file)) {}
  Result<std::string> read(const Path& file) const override {
    return isIt(file) ? failure(file) : FileSystemDecorator::read(file);
  }

 protected:
  bool isIt(const Path& file) const { return file.text() == file_; }
  static PlatformError failure(const Path& file) {
    return CocoaError::fromErrno(CocoaError::Operation::readFile, EIO, file);
  }

 private:
  const std::string file_;
};

/// Fails to look at it as well.
class BlindFor : public Unreading {
 public:
  using Unreading::Unreading;
  bool exists(const Path& file) const override { return !isIt(file) && Unreading::exists(file); }
  Result<FileAttributes> attributes(const Path& file) const override {
    if (isIt(file)) return failure(file);
    return Unreading::attributes(file);
  }
};

TEST(UninstallRunner, refusesAnApplicationWhoseNamesCantBeRead) {
  makeFoo();
  const std::string propertyList = foo + "/Contents/Info.plist";
  Unreading unreading(hostPlatform().files, propertyList);
  BlindFor blind(hostPlatform().files, propertyList);
  const std::string why = "The file “Info.plist” couldn’t be opened.";
  for (const bool dryRun : {false, true}) {
    EXPECT_EQ(refusalOf(planned(), dryRun, replacing({.files = &unreading})),
              "Refusing to uninstall: " + why);
    EXPECT_EQ(refusalOf(planned(), dryRun, replacing({.files = &blind})),
              "Refusing to uninstall: “Info.plist” can’t be looked at: " + why);
  }
  EXPECT_EQ(namesIn("/Users/me/.Trash"), Texts{});
  EXPECT_FALSE(scene::exists(sessions));
}

TEST(UninstallRunner, refusesALauncherThatDoesntTellWhatItOpens) {
  scene::makeApp(copyOfFoo);
  scene::makeLauncher(foo, copyOfFoo);
  const std::string target = foo + "/Contents/Resources/ExternalAppTarget.txt";
  const std::string why = "The file “ExternalAppTarget.txt” couldn’t be opened.";
  Unreading unreading(hostPlatform().files, target);
  BlindFor blind(hostPlatform().files, target);
  EXPECT_EQ(refusalOf(planned(), false, replacing({.files = &unreading})), "Refusing to uninstall: " + why);
  EXPECT_EQ(refusalOf(planned(), false, replacing({.files = &blind})),
            "Refusing to uninstall: “ExternalAppTarget.txt” can’t be looked at: " + why);
  EXPECT_TRUE(scene::exists(foo));
}

TEST(UninstallRunner, refusesAPlanThatWasMadeWithOtherNamesThanThoseOfTheApplication) {
  makeBundle(foo, key("CFBundleName", "Foo and More"));
  scene::write(support + "/x", "of another application");
  BlindFor files(hostPlatform().files, foo + "/Contents/Info.plist");
  const auto blind = replacing({.files = &files});
  const auto plan = AppUninstallPlanner::plan(blind, *InstalledAppsScanner::inspect(blind, Path(foo)),
                                              Selection::everything());
  ASSERT_EQ(pathsOf(plan.candidates), (Texts{foo, support}));
  EXPECT_EQ(refusalOf(plan), "Refusing to uninstall: “Foo.app” isn’t the application that was looked at.");
  EXPECT_EQ(scene::read(support + "/x"), "of another application");
}

TEST(UninstallRunner, takesTheDataOfAnApplicationThatHasGoneSinceThePlan) {
  makeFoo();
  const auto plan = planned();
  std::filesystem::remove_all(foo);
  Runner().run(plan);
  EXPECT_EQ(namesIn("/Users/me/.Trash"), (Texts{"Foo", "com.example.foo"}));
}

TEST(UninstallRunner, waitsForASecondOfItsOwn) {
  scene::makeApp(foo);
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
  const auto first = Runner().run(planned());
  const auto second = Runner().run(planned("/Applications/Bar.app"));
  EXPECT_NE(first.id, second.id);
  const auto listed = UninstallSessionStore::list(hostPlatform(), Path(sessions));
  ASSERT_EQ(listed.size(), 2u);
  EXPECT_EQ(listed[0].appName, "Bar") << "newest first";
  EXPECT_EQ(listed[1].appName, "Foo");
}

TEST(UninstallRunner, takesTheRecordOfItsSecondIfTimeStandsStill) {
  scene::makeApp(foo);
  doubles::FakeClock clock;
  clock.moment = Moment(std::chrono::seconds(1'700'000'000));
  const auto platform = replacing({.clock = &clock});
  const auto plan = planned();
  const auto first = Runner().run(plan, platform);
  const auto second = Runner().run(plan, platform, Paths{});
  EXPECT_EQ(first.id, DateText::compactLocal(clock.moment));
  EXPECT_EQ(second.id, first.id);
  EXPECT_EQ(clock.sleeps, 2);
  EXPECT_EQ(UninstallSessionStore::list(hostPlatform(), Path(sessions)), std::vector{second});
}

TEST(UninstallRunner, recordsBeforeEachItemWhatWentSoFar) {
  makeFoo();
  std::vector<std::size_t> recorded;
  std::vector<bool> lastSucceeded;
  const auto looks = [&](const std::string& operation) -> Result<void> {
    if (operation.starts_with("trash ")) {
      const auto listed = UninstallSessionStore::list(hostPlatform(), Path(sessions));
      recorded.push_back(listed.empty() ? 0 : listed[0].movedItems.size());
      lastSucceeded.push_back(!listed.empty() && listed[0].movedItems.back().succeeded);
    }
    return {};
  };
  GatedPlatform gated(looks);
  Runner().run(planned(), gated.platform());
  EXPECT_EQ(recorded, (std::vector<std::size_t>{1, 2, 3})) << "the item under way is in the record";
  EXPECT_EQ(lastSucceeded, (std::vector<bool>{false, false, false}));
}

TEST(UninstallRunner, throwsInTheEndIfTheRecordCantBeWritten) {
  makeFoo();
  scene::write(sessions, "a file in the place of the folder");
  const auto plan = planned();
  Runner runner;
  EXPECT_THROW(runner.run(plan), PlatformError);
  EXPECT_FALSE(scene::exists(foo));
  EXPECT_EQ(namesIn("/Users/me/.Trash"), (Texts{"Foo", "Foo.app", "com.example.foo"}));
  EXPECT_EQ(runner.steps.back(), "trash\tcaches\t" + caches) << "the last words aren't said";
  ASSERT_EQ(runner.unrecorded.size(), 1u);
  EXPECT_EQ(runner.unrecorded[0].movedItems.back().trashedTo, inTrash("com.example.foo"));
}

TEST(UninstallRunner, leavesAnItemWithAVolumeInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  makeFoo();
  scene::makeFolder(caches + "/inside");
  const auto plan = planned();
  ASSERT_EQ(std::system(("mount -t tmpfs none '" + caches + "/inside'").c_str()), 0);
  scene::write(caches + "/inside/foreign", "foreign");
  Runner runner;
  const auto session = runner.run(plan);
  EXPECT_FALSE(session.movedItems[2].succeeded);
  EXPECT_EQ(session.movedItems[2].stashedTo, std::nullopt) << "nothing was tried";
  EXPECT_EQ(runner.steps[3], "keep\tcaches\t" + caches + "\tA volume is mounted inside com.example.foo: " +
                                 caches + "/inside. Eject it first.");
  EXPECT_EQ(scene::read(caches + "/inside/foreign"), "foreign");
  EXPECT_EQ(runner.warnings, Texts{"“" + caches + "” stays. A volume is mounted inside com.example.foo: " +
                                   caches + "/inside. Eject it first."});
}

TEST(UninstallRunner, tellsInADryRunWhatWouldStay) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  makeFoo();
  scene::makeFolder(caches + "/inside");
  ASSERT_EQ(std::system(("mount -t tmpfs none '" + caches + "/inside'").c_str()), 0);
  Runner runner;
  EXPECT_FALSE(runner.run(planned(), hostPlatform(), std::nullopt, true).movedItems[2].succeeded);
  EXPECT_TRUE(runner.steps[3].starts_with("keep\tcaches\t" + caches + "\t"));
}

TEST(UninstallRunner, leavesAFolderThatHoldsTheApplicationThatStays) {
  const std::string folder = library + "/Application Support/Launcher";
  const std::string inside = folder + "/Foo.app";
  scene::makeApp(inside);
  scene::makeLauncher(foo, inside);
  const auto before = scene::tree(folder);
  const auto plan = planned();
  ASSERT_EQ(pathsOf(plan.candidates), (Texts{foo, inside, folder}));
  Runner runner;
  runner.run(plan);
  EXPECT_EQ(runner.steps[2], "keep\tapplicationSupport\t" + folder +
                                 "\t“Launcher” holds the application that stays: " + inside);
  EXPECT_EQ(scene::tree(folder), before);
  scene::makeLauncher(foo, inside);
  Runner().run(planned(), hostPlatform(), Paths{foo, inside, folder});
  EXPECT_FALSE(scene::exists(folder)) << "all of it was named";
}

TEST(UninstallRunner, leavesAFolderThatHoldsTheApplicationThatStaysIfThatCannotBeLookedAt) {
  const std::string folder = library + "/Application Support/Launcher", closed = folder + "/closed";
  scene::makeApp(closed + "/Foo.app");
  scene::makeLauncher(foo, closed + "/Foo.app");
  const auto before = scene::tree(folder);
  const auto plan = planned();
  std::filesystem::permissions(closed, std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([&] {
              Runner runner;
              runner.run(plan, hostPlatform(), Paths{foo, folder});
              EXPECT_TRUE(runner.warnings.at(0).ends_with("holds the application that stays: " + closed +
                                                          "/Foo.app"));
            }),
            "");
  std::filesystem::permissions(closed, std::filesystem::perms(0755));
  EXPECT_EQ(scene::tree(folder), before);
}

TEST(UninstallRunner, doesntTakeADriveThatIsGoneForAnApplicationThatIsGone) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  const auto plan = planned();
  scene::unplug("X9");
  Runner runner;
  const auto session = runner.run(plan, hostPlatform(), Paths{foo, copyOfFoo});
  EXPECT_TRUE(session.movedItems[0].succeeded);
  EXPECT_FALSE(session.movedItems[1].succeeded);
  EXPECT_EQ(runner.steps[2],
            "keep\texecutable\t" + copyOfFoo + "\tThe drive is no longer mounted: /Volumes/X9");
}

TEST(UninstallRunner, doesntTakeADriveThatGoesMidwayForAnApplicationThatIsGone) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  scene::makeApp(copyOfFoo);
  scene::link(foo, copyOfFoo);
  const auto pulls = [](const std::string& operation) -> Result<void> {
    if (operation == "trash " + copyOfFoo && scene::exists(copyOfFoo)) scene::unplug("X9");
    return {};
  };
  GatedPlatform gated(pulls);
  const auto session = Runner().run(planned(), gated.platform(), Paths{copyOfFoo});
  EXPECT_FALSE(session.movedItems[0].succeeded);
}

TEST(UninstallRunner, refusesAnApplicationWithAVolumeInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  makeFoo();
  scene::makeFolder(foo + "/inside");
  ASSERT_EQ(std::system(("mount -t tmpfs none '" + foo + "/inside'").c_str()), 0);
  EXPECT_EQ(refusalOf(planned()),
            "Refusing to uninstall: A volume is mounted inside Foo.app: " + foo + "/inside. Eject it first.");
  EXPECT_TRUE(scene::exists(caches));
}

AppUninstallPlan withCandidate(const std::string& path, UninstallCategory category) {
  scene::makeApp(foo);
  AppUninstallPlan plan = planned();
  plan.candidates.push_back({.path = path, .category = category, .defaultSelected = true});
  return plan;
}

TEST(UninstallRunner, leavesWhatMustStayWhateverThePlanSays) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::write("/Volumes/X9/QuarnBackups/1/precious", "precious");
  scene::write(library + "/Application Support/Quarn/health-manifest.json", "{}");
  const std::pair<std::string, UninstallCategory> rows[] = {
      {"/", UninstallCategory::caches},
      {"/Users/me", UninstallCategory::caches},
      {library, UninstallCategory::caches},
      {"/Volumes/X9", UninstallCategory::applicationSupport},
      {"/Users/me/Documents", UninstallCategory::executable},
      {"/Volumes/X9/QuarnBackups/1", UninstallCategory::caches},
      {library + "/Application Support/Quarn/health-manifest.json", UninstallCategory::caches},
      {library + "/Application Support/Quarn", UninstallCategory::installerSession},
      {"/Users/me/Documents", UninstallCategory::installerSession},
      {"relative", UninstallCategory::caches},
      {std::string("/Users/me/Documents\0", 20), UninstallCategory::caches},
  };
  for (const auto& [path, category] : rows) {
    const auto plan = withCandidate(path, category);
    Runner runner;
    const auto session = runner.run(plan, hostPlatform(), Paths{path});
    ASSERT_EQ(session.movedItems.size(), 1u) << path;
    EXPECT_FALSE(session.movedItems[0].succeeded) << path;
    EXPECT_TRUE(runner.steps[1].starts_with("keep\t")) << path;
  }
  EXPECT_EQ(namesIn("/Users/me/.Trash"), Texts{});
  EXPECT_EQ(scene::read("/Users/me/Documents/precious"), "precious");
}

TEST(UninstallRunner, takesTheRecordOfAnInstallationOnlyIfItIsNamed) {
  const std::string record = library + "/Application Support/Quarn/InstallerSessions/a";
  scene::write(record + "/session.json", "{}");
  auto plan = withCandidate(record, UninstallCategory::installerSession);
  plan.candidates.back().defaultSelected = false;
  Runner().run(plan, hostPlatform(), Paths{record});
  EXPECT_FALSE(scene::exists(record));
  EXPECT_TRUE(scene::exists(inTrash("a")));
}

AppUninstallPlan withReceipts() {
  return withCandidate("com.example.foo", UninstallCategory::receipts);
}

TEST(UninstallRunner, forgetsNamedReceipts) {
  const auto plan = withReceipts();
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil --forget com.example.foo"] = {};
  Runner runner;
  const auto session = runner.run(plan, tools.platform(), Paths{"com.example.foo"});
  EXPECT_EQ(session.forgottenReceipts, Texts{"com.example.foo"});
  EXPECT_TRUE(session.movedItems.empty());
  EXPECT_EQ(runner.steps[1], "forget-receipt\tcom.example.foo");
  EXPECT_EQ(runner.steps.back(), "uninstall-done\titems=0\treceipts=1");
}

TEST(UninstallRunner, tellsOfAReceiptThatCantBeForgotten) {
  const auto plan = withReceipts();
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil"] = {.status = 1, .error = "\n Must be root. \n"};
  Runner runner;
  EXPECT_TRUE(runner.run(plan, tools.platform(), Paths{"com.example.foo"}).forgottenReceipts.empty());
  EXPECT_EQ(runner.steps[1], "forget-receipt-fail\tcom.example.foo\tMust be root.");
}

TEST(UninstallRunner, handsNoOptionToTheToolInTheNameOfAReceipt) {
  const auto plan = withCandidate("--volume", UninstallCategory::receipts);
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil"] = {};
  Runner runner;
  EXPECT_TRUE(runner.run(plan, tools.platform(), Paths{"--volume"}).forgottenReceipts.empty());
  EXPECT_TRUE(tools.calls.empty());
  EXPECT_TRUE(runner.steps[1].starts_with("forget-receipt-fail\t--volume\t"));
}

TEST(UninstallRunner, countsReceiptsInADryRun) {
  const auto plan = withReceipts();
  Runner runner;
  const auto session = runner.run(plan, hostPlatform(), Paths{"com.example.foo"}, true);
  EXPECT_EQ(session.forgottenReceipts, Texts{"com.example.foo"});
  EXPECT_EQ(runner.steps[1], "dry-forget-receipt\tcom.example.foo");
}

TEST(UninstallSessions, areFoundListedAndLoaded) {
  AppUninstallSession session{
      .id = "20260131_090500",
      .appPath = foo,
      .appName = "Foo",
      .bundleIdentifier = std::nullopt,
      .createdAt = *DateText::fromSecondsSince2001(100.5),
      .movedItems = {{foo, UninstallCategory::executable, 5, "/t", std::nullopt, true, {}}},
      .forgottenReceipts = {"com.a"},
      .dryRun = false};
  const Path root(sessions);
  UninstallSessionStore::save(hostPlatform(), session, root);
  EXPECT_EQ(scene::read(sessions + "/20260131_090500/session.json"), R"({
  "appName" : "Foo",
  "appPath" : "\/Applications\/Foo.app",
  "createdAt" : 100.5,
  "dryRun" : false,
  "forgottenReceipts" : [
    "com.a"
  ],
  "id" : "20260131_090500",
  "movedItems" : [
    {
      "category" : "executable",
      "originalPath" : "\/Applications\/Foo.app",
      "sizeBytes" : 5,
      "succeeded" : true,
      "trashedTo" : "\/t"
    }
  ]
})");
  EXPECT_EQ(UninstallSessionStore::load(hostPlatform(), root.appending(session.id)), session);
  EXPECT_EQ(UninstallSessionStore::find(hostPlatform(), session.id, root), session);
  session.appName = "Bar";
  UninstallSessionStore::save(hostPlatform(), session, root);
  EXPECT_EQ(UninstallSessionStore::list(hostPlatform(), root), std::vector{session})
      << "the second of one identifier";
}

TEST(UninstallSessions, thatAreBrokenOrStrangersAreNone) {
  const Path root(sessions);
  EXPECT_TRUE(UninstallSessionStore::list(hostPlatform(), root).empty());
  for (const char* text : {"", "{}", "[]", "{\"id\":\"a\"}", "null", "{\"id\":\"a\",\"movedItems\":[{}]}"}) {
    scene::write(sessions + "/a/session.json", text);
    EXPECT_TRUE(UninstallSessionStore::list(hostPlatform(), root).empty()) << text;
    EXPECT_EQ(UninstallSessionStore::find(hostPlatform(), "a", root), std::nullopt) << text;
  }
  AppUninstallSession session;
  session.id = "real";
  UninstallSessionStore::save(hostPlatform(), session, root);
  scene::write(sessions + "/other/session.json", scene::read(sessions + "/real/session.json"));
  EXPECT_EQ(UninstallSessionStore::find(hostPlatform(), "other", root), std::nullopt);
  for (const char* id : {"", ".", "..", "../UninstallSessions/real", "real/"})
    EXPECT_EQ(UninstallSessionStore::find(hostPlatform(), id, root), std::nullopt) << id;
  scene::write(sessions + "/deep/session.json", std::string(100'000, '['));
  scene::link(sessions + "/zero/session.json", "/dev/zero");
  scene::makeFolder(sessions + "/pipe");
  ASSERT_EQ(std::system(("mkfifo '" + sessions + "/pipe/session.json'").c_str()), 0);
  EXPECT_EQ(UninstallSessionStore::list(hostPlatform(), root).size(), 2u);
  session.id = "../../escape";
  EXPECT_THROW(UninstallSessionStore::save(hostPlatform(), session, root), PlatformError);
  EXPECT_FALSE(scene::exists(library + "/Application Support/escape"));
}

TEST(UninstallRunner, anItemThatCannotBeLookedAtStaysAndSaysSo) {
  makeFoo();
  Unresolving files(library + "/Caches");
  Runner runner;
  runner.run(planned(), replacing({.files = &files}));
  EXPECT_TRUE(scene::exists(caches));
  EXPECT_FALSE(scene::exists(support));
  EXPECT_EQ(runner.warnings, Texts{"“" + caches + "” stays. " + Unresolving::of("com.example.foo")});
}

}  // namespace
}  // namespace quarn
