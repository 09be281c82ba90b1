#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include "Platform/DateText.h"
#include "QuarnCore/backup/BackupService.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using Texts = std::vector<std::string>;

const std::string source = "/Users/me/src";
const std::string app = "/Applications/Quarn.app";
const std::string drive = "/Volumes/X9";
const std::string backups = drive + "/QuarnBackups";

/// Backups that are made when a test says, with a Trash that may refuse.
class Backups : public testing::Test {
 protected:
  Backups() {
    clock.moment = *DateText::parsingISO8601("2026-01-31T09:05:07Z") + std::chrono::milliseconds(500);
  }

  BackupRecord create(const Texts& sources, Platform platform) {
    std::vector<Path> paths;
    for (const std::string& each : sources) paths.emplace_back(each);
    const BackupService::Warn warn = [this](const std::string& sentence) { warnings.push_back(sentence); };
    return BackupService::create(platform, paths, Path(drive), warn);
  }
  BackupRecord create(const Texts& sources) { return create(sources, replacing({.clock = &clock})); }
  BackupRecord createWithoutTrash(const Texts& sources) {
    return create(sources, replacing({.trash = &refusing, .clock = &clock}));
  }
  std::string refusal(const Texts& sources) {
    return thrown([&] { create(sources); });
  }
  std::string id() const { return DateText::compactLocal(clock.moment); }
  std::string root() const { return backups + "/" + id(); }

  doubles::FakeClock clock;
  doubles::RefusingTrash refusing;
  Texts warnings;
};

std::string madeRoom(const std::string& place, const std::string& now) {
  return "“" + place + "” had to make room for an item of the same name, and is in " + now + " now.";
}

/// The same tree, whatever the times of its folders are.
void expectSame(const std::string& copy, const std::string& original) {
  EXPECT_EQ(scene::tree(copy), scene::tree(original)) << copy;
}

TEST_F(Backups, copyEachSourceUnderItsNeutralName) {
  scene::write(source + "/notes", "notes");
  scene::write(source + "/.git/config", "hidden");
  scene::makeApp(app);
  const BackupRecord record = create({source, app});
  expectSame(root() + "/src", source);
  expectSame(root() + "/InstalledApp.app", app);
  EXPECT_EQ(record, (BackupRecord{.id = id(),
                                  .rootPath = root(),
                                  .createdAt = clock.moment,
                                  .sourceFileCount = 5,
                                  .backupFileCount = 5}));
  EXPECT_EQ(warnings, Texts{});
}

TEST_F(Backups, recordThemselvesOnOneLineInTheOrderOfTheFields) {
  scene::write(source + "/notes", "notes");
  create({source});
  EXPECT_EQ(scene::read(root() + "/backup.json"),
            "{\"id\":\"" + id() + "\",\"rootPath\":\"\\/Volumes\\/X9\\/QuarnBackups\\/" + id() +
                "\",\"createdAt\":791543107.5,\"sourceFileCount\":1,\"backupFileCount\":1}");
}

TEST_F(Backups, passOverWhatDoesNotExist) {
  scene::link("/Users/me/dangling", "nowhere");
  const BackupRecord record = create({source, "/Users/me/dangling", app});
  EXPECT_EQ(record.sourceFileCount, 0);
  EXPECT_EQ(record.backupFileCount, 0);
  EXPECT_EQ(scene::tree(root()).size(), 2U) << "the record alone";
  EXPECT_EQ(BackupService::list(hostPlatform(), Path(drive)), std::vector{record});
}

TEST_F(Backups, countFilesAndWhatLinksLeadToButNoFolders) {
  scene::write(source + "/a", "a");
  scene::write(source + "/folder/.b", "b");
  scene::makeFolder(source + "/empty");
  scene::link(source + "/to a", "a");
  scene::link(source + "/to folder", "folder");
  scene::link(source + "/dangling", "nowhere");
  scene::link(source + "/folder/loop", "..");
  const BackupRecord record = create({source});
  EXPECT_EQ(record.sourceFileCount, 3);
  EXPECT_EQ(record.backupFileCount, 3);
  expectSame(root() + "/src", source);
}

TEST_F(Backups, ofASingleFileCountNothing) {
  scene::write(source, "a file");
  const BackupRecord record = create({source});
  EXPECT_EQ(scene::read(root() + "/src"), "a file");
  EXPECT_EQ(record.sourceFileCount, 0);
}

TEST_F(Backups, takeTheWordOutOfEveryNameFromTheInnermostOut) {
  scene::write("/Users/me/quarn/Quarn.d/quarn/Quarn.txt", "deep");
  scene::write("/Users/me/quarn/Quarn.d/quarn/plain", "plain");
  scene::write("/Users/me/quarn/.quarnrc", "hidden");
  scene::link("/Users/me/quarn/quarn-link", "quarn");
  const auto before = scene::tree("/Users/me/quarn");
  create({"/Users/me/quarn"});
  EXPECT_EQ(scene::read(root() + "/SourceApp/App.d/app/App.txt"), "deep");
  EXPECT_EQ(scene::read(root() + "/SourceApp/App.d/app/plain"), "plain");
  EXPECT_EQ(scene::target(root() + "/SourceApp/app-link"), "quarn") << "a link leads where it led";
  EXPECT_EQ(scene::tree("/Users/me/quarn"), before);
  EXPECT_EQ(scene::read(root() + "/SourceApp/.apprc"), "hidden");
  EXPECT_EQ(scene::tree(root() + "/SourceApp").size(), 7U);
}

TEST_F(Backups, keepWhatHasTheNewNameAlready) {
  scene::write(source + "/quarn-notes.txt", "with the word");
  scene::write(source + "/app-notes.txt", "without it");
  const BackupRecord record = createWithoutTrash({source});
  const std::string aside = root() + "/src/.QuarnTrash/app-notes.txt-backup-name-conflict-2026-01-31T090507Z";
  EXPECT_EQ(scene::read(root() + "/src/app-notes.txt"), "with the word");
  EXPECT_EQ(scene::read(aside), "without it");
  EXPECT_EQ(record.sourceFileCount, 2);
  EXPECT_EQ(record.backupFileCount, 2) << "the one that was set aside is counted where it is";
  EXPECT_EQ(warnings, Texts{madeRoom(root() + "/src/app-notes.txt", aside)});
}

TEST_F(Backups, sayWhereWhatMadeRoomIsInTheEnd) {
  scene::write(source + "/quarn.d/quarn-notes.txt", "with the word");
  scene::write(source + "/quarn.d/app-notes.txt", "without it");
  createWithoutTrash({source});
  const std::string place = root() + "/src/app.d/app-notes.txt";
  const std::string aside =
      root() + "/src/app.d/.QuarnTrash/app-notes.txt-backup-name-conflict-2026-01-31T090507Z";
  EXPECT_EQ(warnings, Texts{madeRoom(place, aside)});
  EXPECT_EQ(scene::read(place), "with the word");
  EXPECT_EQ(scene::read(aside), "without it");
}

TEST_F(Backups, sayWhereWhatMadeRoomInAFolderThatMadeRoomIs) {
  scene::write(source + "/app.d/quarn-notes.txt", "with the word");
  scene::write(source + "/app.d/app-notes.txt", "without it");
  scene::write(source + "/quarn.d/a", "a");
  const std::string end = "-backup-name-conflict-2026-01-31T090507Z";
  createWithoutTrash({source});
  const std::string folder = root() + "/src/.QuarnTrash/app.d" + end;
  EXPECT_EQ(warnings, (Texts{madeRoom(folder + "/app-notes.txt", folder + "/.QuarnTrash/app-notes.txt" + end),
                             madeRoom(root() + "/src/app.d", folder)}));
  EXPECT_EQ(scene::read(folder + "/app-notes.txt"), "with the word");
  EXPECT_EQ(scene::read(folder + "/.QuarnTrash/app-notes.txt" + end), "without it");
}

TEST_F(Backups, sayWhereWhatMadeRoomInACopyThatMadeRoomIs) {
  const std::string other = "/Users/me/other/src";
  scene::write(source + "/quarn-notes.txt", "with the word");
  scene::write(source + "/app-notes.txt", "without it");
  scene::write(other + "/a", "a");
  create({source, other});
  const std::string trash = scene::driveTrash();
  EXPECT_EQ(warnings, (Texts{madeRoom(trash + "/src/app-notes.txt", trash + "/app-notes.txt"),
                             madeRoom(root() + "/src", trash + "/src")}));
  EXPECT_EQ(scene::read(trash + "/src/app-notes.txt"), "with the word");
}

TEST_F(Backups, sayWhatMadeRoomBeforeTheyFail) {
  scene::write(source + "/quarn.d/quarn-notes.txt", "with the word");
  scene::write(source + "/quarn.d/app-notes.txt", "without it");
  const std::string folder = root() + "/src/quarn.d";
  GatedPlatform gated(
      [&](const std::string& operation) -> Result<void> {
        if (!operation.starts_with("rename " + folder + " -> ")) return {};
        return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, "no rename");
      },
      replacing({.trash = &refusing, .clock = &clock}));
  EXPECT_EQ(thrown([&] { create({source}, gated.platform()); }), "no rename");
  const std::string aside = folder + "/.QuarnTrash/app-notes.txt-backup-name-conflict-2026-01-31T090507Z";
  EXPECT_EQ(warnings, Texts{madeRoom(folder + "/app-notes.txt", aside)});
  EXPECT_EQ(scene::read(aside), "without it");
}

TEST_F(Backups, sayThatWhatMadeRoomIsInTheTrashIfTheSystemDoesNotSayWhere) {
  /// Takes everything, and doesn't tell where to.
  class Silent : public Trash {
   public:
    Result<Path> moveToTrash(const Path& item) override {
      const auto place = hostPlatform().trash.moveToTrash(item);
      return place ? Result<Path>(Path()) : place;
    }
  };
  scene::write(source + "/quarn.d/quarn-notes.txt", "with the word");
  scene::write(source + "/quarn.d/app-notes.txt", "without it");
  Silent silent;
  create({source}, replacing({.trash = &silent, .clock = &clock}));
  EXPECT_EQ(warnings, Texts{madeRoom(root() + "/src/app.d/app-notes.txt", "the Trash")});
}

TEST_F(Backups, keepEachOfManyThatGetOneName) {
  const Texts names{"quarn-quarn", "quarn-app", "app-quarn", "app-app"};
  for (const std::string& name : names) scene::write(source + "/" + name, name);
  const BackupRecord record = createWithoutTrash({source});
  EXPECT_EQ(record.backupFileCount, 4);
  EXPECT_EQ(warnings.size(), 3U);
  Texts kept;
  for (const auto& each : std::filesystem::recursive_directory_iterator(root() + "/src"))
    if (each.is_regular_file()) kept.push_back(scene::read(each.path()));
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(kept, (Texts{"app-app", "app-quarn", "quarn-app", "quarn-quarn"}));
}

TEST_F(Backups, keepWhatHasANameThatIsTooLongBesideItsPlace) {
  const std::string rest(245, 'x');
  scene::write(source + "/quarn" + rest, "with the word");
  scene::write(source + "/app" + rest, "without it");
  EXPECT_EQ(createWithoutTrash({source}).backupFileCount, 2);
}

TEST_F(Backups, countLessWhereTheTrashTakesWhatIsSetAside) {
  scene::write(source + "/quarn-notes.txt", "with the word");
  scene::write(source + "/app-notes.txt", "without it");
  const BackupRecord record = create({source});
  EXPECT_EQ(record.sourceFileCount, 2);
  EXPECT_EQ(record.backupFileCount, 1);
  EXPECT_EQ(scene::read(scene::driveTrash() + "/app-notes.txt"), "without it");
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_NE(warnings[0].find(scene::driveTrash() + "/app-notes.txt now."), std::string::npos) << warnings[0];
}

TEST_F(Backups, passOverWhatWentWithAFolderThatMadeRoom) {
  scene::write(source + "/quarnquarnquarnquarn/a", "the longer path");
  scene::write(source + "/appappappapp/quarn/b", "in the way");
  createWithoutTrash({source});
  const std::string copy = root() + "/src";
  EXPECT_EQ(scene::read(copy + "/appappappapp/a"), "the longer path");
  EXPECT_EQ(scene::read(copy + "/.QuarnTrash/appappappapp-backup-name-conflict-2026-01-31T090507Z/quarn/b"),
            "in the way");
}

TEST_F(Backups, keepBothOfTwoSourcesWithOneName) {
  scene::write("/Users/me/a/Foo.app/Contents/one", "one");
  scene::write("/Users/me/b/Bar.app/Contents/other", "other");
  const BackupRecord record = createWithoutTrash({"/Users/me/a/Foo.app", "/Users/me/b/Bar.app"});
  EXPECT_EQ(scene::read(root() + "/InstalledApp.app/Contents/other"), "other");
  EXPECT_EQ(
      scene::read(root() + "/.QuarnTrash/InstalledApp.app-backup-conflict-2026-01-31T090507Z/Contents/one"),
      "one");
  EXPECT_EQ(record.backupFileCount, 2);
  EXPECT_EQ(warnings.size(), 1U);
}

TEST_F(Backups, ofALinkHoldWhatItLeadsToAndLeaveThatAsItIs) {
  scene::write("/Volumes/X9/ExternalQuarn/Apps/Quarn.app/Contents/MacOS/quarn", "program");
  scene::link(app, "/Volumes/X9/ExternalQuarn/Apps/Quarn.app");
  const BackupRecord record = create({app});
  EXPECT_FALSE(scene::isLink(root() + "/InstalledApp.app"));
  EXPECT_EQ(scene::read(root() + "/InstalledApp.app/Contents/MacOS/app"), "program");
  EXPECT_EQ(scene::read("/Volumes/X9/ExternalQuarn/Apps/Quarn.app/Contents/MacOS/quarn"), "program");
  EXPECT_EQ(record.sourceFileCount, 1);
  EXPECT_EQ(record.backupFileCount, 1);
}

TEST_F(Backups, ofALinkThatIsCopiedAsOneLeaveTheNamesItLeadsTo) {
  class Unresolving : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    Result<Path> realPath(const Path& path) const override { return path; }
  };
  scene::write("/Users/me/real/quarn", "precious");
  scene::link(source, "/Users/me/real");
  Unresolving files(hostPlatform().files);
  EXPECT_EQ(thrown([&] { create({source}, replacing({.files = &files, .clock = &clock})); }),
            "Only a link could be copied: " + root() + "/src");
  EXPECT_EQ(scene::read("/Users/me/real/quarn"), "precious");
  EXPECT_EQ(BackupService::list(hostPlatform(), Path(drive)), std::vector<BackupRecord>{});
}

TEST_F(Backups, areNotMadeWithoutASourceThatCannotBeLookedAt) {
  class Blind : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    bool exists(const Path& path) const override {
      return path != Path(app) && FileSystemDecorator::exists(path);
    }
    Result<FileAttributes> attributes(const Path& path) const override {
      if (path == Path(app))
        return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "no look");
      return FileSystemDecorator::attributes(path);
    }
  };
  scene::makeApp(app);
  Blind files(hostPlatform().files);
  EXPECT_EQ(thrown([&] { create({app}, replacing({.files = &files, .clock = &clock})); }), "no look");
  EXPECT_FALSE(scene::exists(backups));
}

TEST_F(Backups, areNotRecordedIfTheirNamesOrTheirFilesCannotBeListed) {
  /// From some listing on, one folder can't be listed.
  class Closing : public FileSystemDecorator {
   public:
    Closing(FileSystem& inner, int first) : FileSystemDecorator(inner), left(first) {}
    void walk(const Path& item, Hidden hidden, WalkVisitor& visitor) const override {
      FileSystemDecorator::walk(item, hidden, visitor);
      if (left-- == 0)
        visitor.failed(item, PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "no list"));
    }
    mutable int left;
  };
  scene::write(source + "/quarn", "a");
  for (const int walk : {0, 1, 2}) {
    Closing files(hostPlatform().files, walk);
    EXPECT_EQ(thrown([&] { create({source}, replacing({.files = &files, .clock = &clock})); }), "no list")
        << walk;
    EXPECT_FALSE(scene::exists(root() + "/backup.json")) << walk;
    clock.moment += std::chrono::seconds(1);
  }
}

TEST_F(Backups, endAtADriveThatIsPulledOutBetweenTwoSources) {
  if (!scene::hasMounts()) GTEST_SKIP() << "drives can't be mounted in this room";
  scene::write(source + "/quarn", "a");
  scene::makeApp(app);
  /// The fourth walk is the one that counts the first copy.
  class Pulled : public FileSystemDecorator {
   public:
    using FileSystemDecorator::FileSystemDecorator;
    void walk(const Path& item, Hidden hidden, WalkVisitor& visitor) const override {
      FileSystemDecorator::walk(item, hidden, visitor);
      if (++walks != 4) return;
      scene::unplug("X9");
      scene::makeFolder(drive);
    }
    mutable int walks = 0;
  };
  Pulled files(hostPlatform().files);
  EXPECT_EQ(thrown([&] {
              create({source, app}, replacing({.files = &files, .clock = &clock}));
            }),
            "The drive is no longer mounted: /Volumes/X9");
  EXPECT_EQ(scene::tree(drive).size(), 1U) << "nothing is made in its place";
}

TEST_F(Backups, areNamedAfterThePathAsItIsMeant) {
  scene::write("/Users/me/quarn/sub/a", "a");
  create({"/Users/me/quarn/sub/../."});
  EXPECT_EQ(scene::read(root() + "/SourceApp/sub/a"), "a");
}

TEST_F(Backups, neverShareAFolder) {
  scene::write(source + "/a", "a");
  const auto first = create({source});
  const auto before = scene::tree(backups);
  EXPECT_THROW(create({source}), PlatformError) << "time stands still";
  EXPECT_EQ(scene::tree(backups), before);
  EXPECT_EQ(BackupService::list(hostPlatform(), Path(drive)), std::vector{first});
}

TEST_F(Backups, refuseASourceThatHoldsThem) {
  scene::write("/Volumes/X9/a", "a");
  const std::string start = "The backups would lie in what is backed up: ";
  EXPECT_EQ(refusal({drive}), start + drive);
  EXPECT_EQ(refusal({"/"}), start + "/");
  scene::link("/Users/me/drive", drive);
  EXPECT_EQ(refusal({"/Users/me/drive"}), start + drive);
  scene::makeFolder(backups);
  EXPECT_EQ(refusal({backups}), start + backups);
  EXPECT_EQ(scene::tree(backups).size(), 1U) << "before anything is made";
}

TEST_F(Backups, mayHoldEarlierOnes) {
  scene::write(source + "/a", "a");
  const std::string first = create({source}).rootPath;
  clock.moment += std::chrono::seconds(1);
  create({first});
  EXPECT_EQ(scene::read(root() + "/" + Path(first).lastComponent() + "/src/a"), "a");
}

TEST_F(Backups, refuseASourceWithAVolumeInside) {
  if (!scene::hasMounts()) GTEST_SKIP() << "drives can't be mounted in this room";
  scene::plug("Other", "1m");
  scene::makeFolder("/Users/me/src/mount");
  ASSERT_EQ(::mount("/Volumes/Other", "/Users/me/src/mount", nullptr, MS_BIND, nullptr), 0);
  EXPECT_EQ(refusal({source}), "A volume is mounted inside src: /Users/me/src/mount. Eject it first.");
  EXPECT_FALSE(scene::exists(backups));
}

TEST_F(Backups, refuseADriveThatIsNotMounted) {
  Platform& platform = hostPlatform();
  EXPECT_EQ(thrown([&] { BackupService::create(platform, {Path(source)}, Path("/Volumes/X8")); }),
            "No drive is mounted there: /Volumes/X8");
  EXPECT_FALSE(scene::exists("/Volumes/X8"));
}

TEST_F(Backups, refuseTheFolderOfMountPoints) {
  scene::write(source + "/a", "a");
  const auto before = scene::tree("/Volumes");
  EXPECT_EQ(thrown([&] { BackupService::create(hostPlatform(), {Path(source)}, Path("/Volumes")); }),
            "No drive is mounted there: /Volumes");
  EXPECT_EQ(scene::tree("/Volumes"), before);
}

TEST_F(Backups, refuseADriveWhosePathCannotBeRecorded) {
  const std::string odd = "/Users/me/dri\xffve";
  scene::write(source + "/a", "a");
  scene::makeFolder(odd);
  Platform platform = replacing({.clock = &clock});
  EXPECT_EQ(thrown([&] { BackupService::create(platform, {Path(source)}, Path(odd)); }),
            "The path of the drive isn’t UTF-8: " + odd);
  EXPECT_EQ(scene::tree(odd).size(), 1U);
}

TEST_F(Backups, endAtTheFirstThingThatCannotBeCopied) {
  scene::write(source + "/a", "a");
  scene::makeApp(app);
  GatedPlatform gated(
      [](const std::string& operation) -> Result<void> {
        if (!operation.starts_with("copy " + app)) return {};
        return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadNoPermission, "no right");
      },
      replacing({.clock = &clock}));
  EXPECT_EQ(thrown([&] { create({source, app}, gated.platform()); }), "no right");
  EXPECT_EQ(scene::read(root() + "/src/a"), "a") << "what was copied stays";
  EXPECT_FALSE(scene::exists(root() + "/backup.json")) << "without a record";
  EXPECT_EQ(BackupService::list(hostPlatform(), Path(drive)), std::vector<BackupRecord>{});
}

TEST_F(Backups, areOnTheDriveBeforeTheyAreRecordedAndAfterIt) {
  scene::write(source + "/quarn", "a");
  Texts operations;
  GatedPlatform gated(
      [&](const std::string& operation) -> Result<void> {
        operations.push_back(operation);
        return {};
      },
      replacing({.clock = &clock}));
  create({source}, gated.platform());
  EXPECT_EQ(operations,
            (Texts{"createFolder " + backups, "claim " + root(), "copy " + source + " -> " + root() + "/src",
                   "rename " + root() + "/src/quarn -> " + root() + "/src/app", "flush " + root(),
                   "writeAtomically " + root() + "/backup.json", "flush " + root()}));
}

TEST_F(Backups, areListedByIdentifierAndLeaveOutWhatIsNone) {
  const std::string record = "\"createdAt\":0,\"sourceFileCount\":1,\"backupFileCount\":1}";
  scene::write(backups + "/b/backup.json", "{\"id\":\"2\",\"rootPath\":\"/b\"," + record);
  scene::write(backups + "/a/backup.json", "{\"id\":\"10\",\"rootPath\":\"/a\"," + record);
  scene::write(backups + "/.c/backup.json", "{\"id\":\"1\",\"rootPath\":\"/c\"," + record);
  scene::write(backups + "/d/backup.json", "{\"id\":\"3\"," + record);
  scene::write(backups + "/e/backup.json", "no JSON");
  scene::write(backups + "/f/backup.json/folder", "");
  scene::write(backups + "/g", "a file");
  scene::makeFolder(backups + "/h");
  scene::write(backups + "/i/backup.json", "{\"id\":\"9\",\"rootPath\":\"/i\"," + record);
  Texts listed;
  for (const auto& each : BackupService::list(hostPlatform(), Path(drive)))
    listed.push_back(each.id + each.rootPath);
  EXPECT_EQ(listed, (Texts{"1/c", "10/a", "2/b", "9/i"}));
}

TEST_F(Backups, areNoneOnADriveWithoutAny) {
  EXPECT_EQ(BackupService::list(hostPlatform(), Path(drive)), std::vector<BackupRecord>{});
  EXPECT_EQ(BackupService::list(hostPlatform(), Path("/Volumes/X8")), std::vector<BackupRecord>{});
}

TEST_F(Backups, areNotMadeOfASourceThatMayHoldThem) {
  scene::write(source + "/x", "x");
  Unresolving files(source);
  EXPECT_EQ(thrown([&] { create({source}, replacing({.files = &files, .clock = &clock})); }),
            Unresolving::of("src"));
  EXPECT_FALSE(scene::exists(backups));
}

}  // namespace
}  // namespace quarn
