#include <functional>
#include <gtest/gtest.h>
#include <utility>

#include "QuarnCore/installer/AppInstallEngine.h"
#include "tests/installer/Installing.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;

const std::string source = "/Users/me/Foo.app";
const std::string destination = apps + "/Foo.app";
const std::string launcher = "/Applications/Foo.app";
const std::string action = "installed-app\t" + launcher + "\t" + destination;

std::string install(Request& request, const std::string& app = source, Platform& platform = hostPlatform()) {
  return AppInstallEngine::install(platform, Path(app), request.request.option, request.request.targetDrive,
                                   request.request.reporter);
}

std::string failure(Request& request, const std::string& app = source, Platform& platform = hostPlatform()) {
  return thrown([&] { install(request, app, platform); });
}

class InstallingAnApp : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(source);
    original = scene::tree(source);
  }
  Texts original;
};

TEST_F(InstallingAnApp, copiesItToTheDriveAndMakesALauncher) {
  Request request;
  EXPECT_EQ(install(request), action);
  EXPECT_EQ(withoutLauncher(request.lines),
            (Texts{"copy-app\t" + source + "\t" + destination, "verify-app\t" + destination, action}));
  EXPECT_EQ(scene::tree(destination), original);
  EXPECT_EQ(scene::tree(source), original) << "the source is left alone";
  EXPECT_EQ(launcherTarget(launcher), destination);
}

TEST_F(InstallingAnApp, usesAGoodCopyThatIsThere) {
  Request first, second;
  install(first);
  const Texts copy = scene::tree(destination);
  EXPECT_EQ(install(second), action);
  EXPECT_EQ(withoutLauncher(second.lines), (Texts{"reuse-app\t" + destination, action}));
  EXPECT_EQ(scene::tree(destination), copy);
  EXPECT_FALSE(scene::exists(scene::driveTrash()));
}

/// As a run leaves it that was killed when all of it was written.
TEST_F(InstallingAnApp, finishesACopyThatLacksOnlyItsModes) {
  scene::makeApp(destination);
  ::chmod((destination + "/Contents/MacOS/Foo").c_str(), 0600);
  ::chmod((destination + "/Contents").c_str(), 0700);
  ::chmod(destination.c_str(), 0700);
  Request request;
  install(request);
  EXPECT_EQ(withoutLauncher(request.lines), (Texts{"reuse-app\t" + destination, action}));
  EXPECT_EQ(scene::tree(destination), original);
}

TEST_F(InstallingAnApp, writesACopyOutThatWasThereBeforeItsSourceGoesToTheTrash) {
  scene::makeApp(destination);
  scene::makeApp(launcher);
  Texts operations;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation == "flush " + destination || operation == "trash " + launcher)
      operations.push_back(operation);
    return {};
  });
  Request request;
  install(request, launcher, gated.platform());
  EXPECT_EQ(operations, (Texts{"flush " + destination, "trash " + launcher}));
}

TEST_F(InstallingAnApp, makesANewCopyInPlaceOfOneThatCannotBeFinished) {
  scene::makeApp(destination);
  const Texts old = scene::tree(destination);
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation.starts_with("copyAttributes ")) return PlatformError(cocoaErrorDomain, 513, "Not allowed.");
    return {};
  });
  Request request;
  install(request, source, gated.platform());
  EXPECT_EQ(request.lines.at(0), "stash-existing-app\t" + destination + "\tNot allowed.");
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), old);
  EXPECT_EQ(scene::tree(destination), original);
}

TEST_F(InstallingAnApp, setsAnotherItemInItsPlaceAside) {
  scene::write(destination + "/Contents/old", "precious");
  Request request;
  install(request);
  ASSERT_GE(request.lines.size(), 1u);
  EXPECT_TRUE(request.lines[0].starts_with("stash-existing-app\t" + destination + "\t")) << request.lines[0];
  EXPECT_NE(request.lines[0], "stash-existing-app\t" + destination + "\t") << "it tells the difference";
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Foo.app/Contents/old"), "precious");
  EXPECT_EQ(scene::tree(destination), original);
}

TEST_F(InstallingAnApp, setsALinkInItsPlaceAsideEvenIfItLeadsToAGoodCopy) {
  scene::makeFolder(apps);
  std::filesystem::copy(source, "/Volumes/X9/Elsewhere.app", std::filesystem::copy_options::recursive);
  for (const char* target : {"/Volumes/X9/Elsewhere.app", "/nowhere"}) {
    std::filesystem::remove_all(destination);
    scene::link(destination, target);
    Request request;
    install(request);
    EXPECT_EQ(request.lines[0], "stash-existing-app\t" + destination + "\tsymlink destination") << target;
    EXPECT_FALSE(scene::isLink(destination));
    EXPECT_EQ(scene::tree(destination), original);
  }
  EXPECT_TRUE(scene::exists("/Volumes/X9/Elsewhere.app/Contents/Info.plist"));
}

TEST_F(InstallingAnApp, takesThePlaceOfItsSourceOnceTheCopyIsGood) {
  std::filesystem::rename(source, launcher);
  Request request;
  EXPECT_EQ(install(request, launcher), action);
  EXPECT_EQ(scene::tree(destination), original);
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Foo.app"), original);
  EXPECT_EQ(launcherTarget(launcher), destination);
}

TEST_F(InstallingAnApp, writesTheCopyOutAndComparesItBeforeAnythingTakesThePlaceOfTheSource) {
  std::filesystem::rename(source, launcher);
  Texts operations;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    operations.push_back(operation.substr(0, operation.find(' ')));
    return {};
  });
  Request request;
  install(request, launcher, gated.platform());
  const auto at = [&](const std::string& word) {
    return std::find(operations.begin(), operations.end(), word) - operations.begin();
  };
  EXPECT_LT(at("copy"), at("flush"));
  EXPECT_LT(at("flush"), at("trash"));
}

TEST_F(InstallingAnApp, aSourceThatIsMissingIsTheErrorOfTheCopy) {
  Request request;
  EXPECT_EQ(failure(request, "/Users/me/None.app"), "The file “None.app” doesn’t exist.");
  EXPECT_FALSE(scene::exists(apps + "/None.app"));
  EXPECT_FALSE(scene::exists("/Applications/None.app"));
}

TEST_F(InstallingAnApp, aSourceThatIsMissingSetsNothingAside) {
  scene::makeApp(apps + "/None.app");
  scene::makeApp("/Applications/None.app");
  const Texts copy = scene::tree(apps + "/None.app");
  Request request;
  EXPECT_EQ(failure(request, "/Users/me/None.app"), "The file “None.app” doesn’t exist.");
  EXPECT_EQ(scene::tree(apps + "/None.app"), copy);
  EXPECT_EQ(request.lines, Texts{});
}

TEST_F(InstallingAnApp, aCopyThatFailsLeavesNothingInTheWay) {
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("copy "))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteOutOfSpace, "It is full.");
    return {};
  });
  Request request;
  EXPECT_EQ(failure(request, source, gated.platform()), "It is full.");
  EXPECT_FALSE(scene::exists(destination));
  EXPECT_FALSE(scene::exists(launcher));
}

/// Changes the source while its copy is written out.
class GrowingMeanwhile : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  Result<void> flush(const Path& item) override {
    scene::write(source + "/Contents/late", "new");
    return FileSystemDecorator::flush(item);
  }
};

TEST_F(InstallingAnApp, aCopyThatIsNotLikeItsSourceIsSetAside) {
  GrowingMeanwhile files(hostPlatform().files);
  Platform platform = replacing({.files = &files});
  Request request;
  try {
    install(request, source, platform);
    FAIL() << "it was installed";
  } catch (const PlatformError& error) {
    EXPECT_EQ(error.domain, "install-app");
    EXPECT_EQ(error.code, 2);
    EXPECT_NE(error.localizedDescription(), "");
  }
  EXPECT_FALSE(scene::exists(destination));
  EXPECT_FALSE(scene::exists(launcher));
  EXPECT_TRUE(scene::exists(scene::driveTrash() + "/Foo.app/Contents/Info.plist"));
}

TEST_F(InstallingAnApp, aCopyThatCannotBeWrittenOutIsNoCopy) {
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("flush "))
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, "The drive failed.");
    return {};
  });
  std::filesystem::rename(source, launcher);
  Request request;
  EXPECT_EQ(failure(request, launcher, gated.platform()), "The drive failed.");
  EXPECT_EQ(scene::tree(launcher), original);
  EXPECT_FALSE(scene::exists(destination));
}

TEST_F(InstallingAnApp, isRefusedIfNoDriveIsMountedThere) {
  scene::makeFolder("/Volumes/Left");
  scene::write("/Users/me/a file", "x");
  for (const char* drive :
       {"/Volumes/None", "/Volumes/Left", "/Volumes/None/sub", "/Users/me/none", "/Users/me/a file"}) {
    Request request;
    request.request.targetDrive = Path(drive);
    EXPECT_EQ(failure(request), "No drive is mounted there: " + std::string(drive));
  }
  EXPECT_EQ(namesIn("/Volumes/Left"), Texts{});
  EXPECT_FALSE(scene::exists("/Volumes/None"));
  Request unknown;
  unknown.request.targetDrive = Path("");
  EXPECT_EQ(failure(unknown), "It isn’t known which drive to install onto.");
  EXPECT_FALSE(scene::exists(launcher));
}

TEST_F(InstallingAnApp, isRefusedIfTheOptionLeadsOffTheDrive) {
  scene::link("/Volumes/X9/Away", "/Users/me");
  for (const char* name : {"..", "../../Users/me", "a/../..", "Away"}) {
    InstallerOption chosen = option();
    chosen.externalRootName = name;
    Request request(chosen);
    EXPECT_TRUE(failure(request).starts_with("The folder for applications isn’t on the drive: "))
        << name << ": " << failure(request);
  }
  EXPECT_FALSE(scene::exists("/Users/me/Apps"));
  EXPECT_FALSE(scene::exists("/Apps"));
  EXPECT_EQ(scene::tree(source), original);
}

TEST_F(InstallingAnApp, isRefusedIfTheFolderForLaunchersIsRelative) {
  for (const char* folder : {"", "~/Applications", "Applications"}) {
    InstallerOption chosen = option();
    chosen.applicationLinkRoot = folder;
    Request request(chosen);
    EXPECT_EQ(failure(request), "The folder for launchers isn’t an absolute path: " + std::string(folder));
  }
  EXPECT_FALSE(scene::exists(destination));
}

TEST_F(InstallingAnApp, anAbsoluteNameOfTheFolderStaysOnTheDrive) {
  InstallerOption chosen = option();
  chosen.externalRootName = "/Users/me";
  Request request(chosen);
  EXPECT_EQ(install(request), "installed-app\t" + launcher + "\t/Volumes/X9/Users/me/Apps/Foo.app");
}

TEST_F(InstallingAnApp, isRefusedIfThePathsLieInOneAnother) {
  // The launcher would take the place of the copy that it opens.
  InstallerOption chosen = option();
  chosen.applicationLinkRoot = apps;
  Request onTheDrive(chosen);
  EXPECT_EQ(failure(onTheDrive), "“" + destination + "” lies in “" + destination + "”.");
  // The copy would lie in what the launcher sets aside.
  scene::makeFolder("/Applications/Foo.app/drive");
  Request inTheLauncher;
  inTheLauncher.request.targetDrive = Path("/Applications/Foo.app/drive");
  EXPECT_NE(failure(inTheLauncher), "nothing");
  // What is set aside holds the source.
  scene::makeApp(destination + "/Contents/Foo.app");
  Request inTheCopy;
  EXPECT_NE(failure(inTheCopy, destination + "/Contents/Foo.app"), "nothing");
  EXPECT_TRUE(scene::exists(destination + "/Contents/Foo.app/Contents/Info.plist"));
  EXPECT_TRUE(scene::exists("/Applications/Foo.app/drive"));
}

TEST_F(InstallingAnApp, anApplicationThatIsOnTheDriveAlreadyGetsALauncher) {
  scene::makeApp(destination);
  Request request;
  EXPECT_EQ(install(request, destination), action);
  EXPECT_EQ(withoutLauncher(request.lines)[0], "reuse-app\t" + destination);
}

TEST_F(InstallingAnApp, isRefusedWithAVolumeMountedInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::makeFolder(source + "/Contents/mounted");
  ASSERT_EQ(scene::run({"/bin/true"}).status, 0);
  scene::plug("Inner", "1m");
  ASSERT_EQ(::system("mount --bind /Volumes/Inner /Users/me/Foo.app/Contents/mounted"), 0);
  Request request;
  EXPECT_NE(failure(request).find("A volume is mounted inside Foo.app"), std::string::npos);
  EXPECT_FALSE(scene::exists(destination));
  EXPECT_FALSE(scene::exists(launcher));
}

TEST_F(InstallingAnApp, takesNamesOfEveryKind) {
  const std::string longest = std::string(scene::longestName() - 4, 'x') + ".app";
  for (const std::string& name :
       {std::string("a b.app"), std::string("it's \"so\" $x.app"), std::string("l\nf.app"),
        std::string("Cafe\u0301.app"), std::string("Caf\u00E9.app"), longest}) {
    scene::makeApp("/Users/me/odd/" + name);
    Request request;
    EXPECT_EQ(failure(request, "/Users/me/odd/" + name), "nothing") << name;
    EXPECT_EQ(scene::tree(apps + "/" + name), scene::tree("/Users/me/odd/" + name)) << name;
    EXPECT_EQ(launcherTarget("/Applications/" + name), apps + "/" + name);
  }
}

TEST_F(InstallingAnApp, linksThatLeaveItStayLinks) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::link(source + "/Contents/out", "/Users/me/Documents");
  Request request;
  install(request);
  EXPECT_EQ(scene::target(destination + "/Contents/out"), "/Users/me/Documents");
  EXPECT_EQ(scene::read("/Users/me/Documents/precious"), "precious");
}

/// Another run has the turn, and does something before it gives it up.
class Occupied : public Locks {
 public:
  explicit Occupied(std::function<void()> meanwhile) : meanwhile_(std::move(meanwhile)) {}
  Result<std::shared_ptr<Lock>> lock(const Path&, const std::function<void()>& waiting) override {
    waiting();
    if (meanwhile_) std::exchange(meanwhile_, nullptr)();
    return std::shared_ptr<Lock>();
  }

 private:
  std::function<void()> meanwhile_;
};

TEST_F(InstallingAnApp, isRefusedIfAnotherRunHasMovedItMeanwhile) {
  std::filesystem::rename(source, launcher);
  Occupied locks([] {
    scene::makeApp(destination);
    std::filesystem::remove_all(launcher);
    scene::link(launcher, destination);
  });
  Platform platform = replacing({.locks = &locks});
  Request request;
  EXPECT_EQ(failure(request, launcher, platform), "“Foo.app” was replaced by another run meanwhile.");
  EXPECT_EQ(scene::tree(destination), original) << "what the other run made stays";
  EXPECT_EQ(scene::target(launcher), destination);
}

TEST_F(InstallingAnApp, isInstalledIfAnotherRunLeftItAlone) {
  Occupied locks([] {});
  Platform platform = replacing({.locks = &locks});
  Request request;
  EXPECT_EQ(install(request, source, platform), action);
}

// By the rules a good copy can be set aside. It is never lost.

TEST_F(InstallingAnApp, ofALauncherSetsItsGoodCopyAside) {
  Request first, second;
  install(first);
  const Texts copy = scene::tree(destination);
  install(second, launcher);
  EXPECT_TRUE(second.lines[0].starts_with("stash-existing-app\t" + destination)) << second.lines[0];
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), copy);
}

TEST_F(InstallingAnApp, ofALinkToItsGoodCopySetsTheCopyAside) {
  scene::makeApp(destination);
  const Texts copy = scene::tree(destination);
  scene::link(launcher, destination);
  Request request;
  failure(request, launcher);
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), copy);
}

TEST_F(InstallingAnApp, refusesWhereItCannotBeSeenWhatLiesInWhat) {
  scene::makeApp(destination);
  for (const std::string& place : {source, apps, std::string("/Applications")}) {
    Unresolving files(place);
    Platform platform = replacing({.files = &files});
    Request request;
    EXPECT_EQ(failure(request, source, platform), Unresolving::of(place == apps ? "Apps" : "Foo.app"))
        << place;
  }
  EXPECT_EQ(scene::tree(destination), original);
  EXPECT_FALSE(scene::exists(launcher));
}

}  // namespace
}  // namespace quarn
