#include "tests/cli/UninstallHomes.h"

#include <algorithm>
#include <filesystem>
#include <sys/mount.h>
#include <sys/stat.h>

#include "tests/cli/UninstallBundles.h"
#include "tests/support/ItemFacts.h"
#include "tests/support/Scene.h"

namespace homes {
namespace {

namespace fs = std::filesystem;

const std::string library = scene::home + "/Library";
const std::string installSessions = library + "/Application Support/Quarn/InstallerSessions";

bool isFree(const std::string& path) {
  return !fs::exists(fs::symlink_status(path));
}

class Maker {
 public:
  explicit Maker(std::uint64_t seed) : dice_(seed) { home_.seed = seed; }

  Home make() {
    clear();
    makeOthers();
    moveAFolderAway();
    application_ = makeApplication(dice_, home_);
    for (const std::string& word : wordsOf(application_))
      for (const std::string& folder : folders()) makeNamesLike(word, folder);
    makeInstallSessions();
    makeVolumes();
    hinder();
    chooseFlags();
    return home_;
  }

 private:
  static void clear() {
    for (const std::string folder :
         {"/Applications", "/Library", "/Users", "/Volumes/X9", "/System/Applications"}) {
      scene::makeFolder(folder);
      for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
    }
    for (const std::string& folder : folders()) scene::makeFolder(folder);
  }

  static void makeOthers() {
    scene::write("/Users/you/report", "somebody else's");
    scene::write("/Users/you/Library/Caches/com.example.foo/x", "somebody else's cache");
    scene::write(scene::home + "/Documents/letter", "a letter");
    scene::write(library + "/Application Support/Other/state", "a state");
    scene::write(library + "/Application Support/Foo Vendor/Foo/state", "of a vendor");
    scene::write(scene::home + "/.Trash/Foo.app/old", "thrown away at home");
    scene::write(scene::home + "/.Trash/Foo", "thrown away, too");
    scene::write("/Volumes/X9/film", "a film");
    scene::write("/Volumes/X9/ExternalQuarn/Data/precious", "moved data");
    scene::write("/Volumes/X9/QuarnBackups/precious", "a backup");
    scene::makeApp(otherApplication, {.identifier = "com.example.other"}, 100);
    scene::write(library + "/Application Support/Quarn/UninstallSessions/20200101_000000/session.json",
                 R"({"id":"20200101_000000","appPath":"x","appName":"x","createdAt":1,"movedItems":[],)"
                 R"("forgottenReceipts":[],"dryRun":false})");
  }

  /// As when a whole folder of the library was moved to the drive.
  void moveAFolderAway() {
    if (!dice_.isOneIn(8)) return;
    const std::string folder = library + (dice_.isOneIn(2) ? "/Caches" : "/Logs");
    const std::string copy = "/Volumes/X9/ExternalQuarn/Data/Library/moved";
    scene::makeFolder(copy);
    fs::remove(folder);
    scene::link(folder, copy);
  }

  // What is there beside it.

  void makeNamesLike(const std::string& word, const std::string& folder) {
    for (const std::string& name : exactNames(word))
      if (dice_.hasPercent(name.starts_with(word) ? 70 : 10)) makeItem(folder, name);
    for (const std::string& name : lookAlikes(word))
      if (dice_.hasPercent(3)) makeItem(folder, name);
    // Where a program is led that joins texts.
    const bool hasParts = word.find('/') != std::string::npos && word.find("..") == std::string::npos;
    if (hasParts && word.find('\0') == std::string::npos && word.size() > 2 && isFree(folder + "/" + word))
      scene::write(folder + "/" + word + "/precious", "below two folders");
  }

  void makeItem(const std::string& folder, const std::string& name) {
    const std::string path = folder + "/" + name;
    if (!isName(name) || !isFree(path)) return;
    static const Lines targets = {"/Users/you",       "/Users/you/report", "/Users/me/Documents",
                                  "/Volumes/X9/film", "/nowhere/at/all",   "."};
    switch (dice_.below(8)) {
      case 0:
        return scene::link(path, dice_.pick(targets));
      case 1:
        scene::makeFolder(path);
        return;
      case 2:
      case 3:
      case 4:
        scene::write(path + "/Sub/" + name, "deep in " + path);
        scene::write(path + "/.hidden", "hidden in " + path);
        scene::link(path + "/out", dice_.pick(targets));
        if (dice_.isOneIn(10)) ::chmod(path.c_str(), dice_.isOneIn(2) ? 0700 : 0555);
        return;
      default:
        scene::write(path, "content of " + path);
        if (dice_.isOneIn(4)) setAttribute(path, "note of " + path);
        ::chmod(path.c_str(), dice_.pick(std::vector<mode_t>{0644, 0600, 0444, 0, 04755}));
    }
  }

  /// One of them tells of the application, and one has an identifier of a stranger.
  void makeInstallSessions() {
    const bool isPlain = home_.bundle.find_first_of("\"\\\n\t") == std::string::npos;
    if (!dice_.isOneIn(3) || !isPlain) return;
    for (const std::string id : {"20260101_000000", "../../../../Documents"}) {
      const std::string folder = id.starts_with(".") ? "stranger" : id;
      scene::write(installSessions + "/" + folder + "/session.json",
                   R"({"id":")" + id +
                       R"(","sourcePath":"x","optionID":"x","createdAt":1,"actions":[],"changedPaths":[")" +
                       home_.bundle + R"("],"newReceipts":[],"status":"done"})");
    }
  }

  // What is in the way.

  void makeVolumes() {
    if (!scene::hasMounts()) return;
    for (auto count = dice_.below(4); count > 1; --count) {
      const std::string folder = dice_.pick(folders());
      Lines places;
      for (const auto& item : fs::directory_iterator(folder))
        if (item.is_directory() && !item.is_symlink()) places.push_back(item.path());
      std::erase_if(places, [](const std::string& place) { return place.ends_with("/Quarn"); });
      std::sort(places.begin(), places.end());
      if (places.empty() || folder == scene::home) continue;
      std::string place = dice_.pick(places);
      // What lies below a mount point is out of sight.
      if (dice_.isOneIn(2) || home_.bundle.starts_with(place)) place += "/volume";
      scene::makeFolder(place);
      mount(place);
    }
  }

  void mount(const std::string& place) {
    if (::mount("tmpfs", place.c_str(), "tmpfs", 0, "size=1m,mode=0755") != 0)
      scene::fail("can't mount " + place);
    home_.mounts.push_back(place);
    scene::write(place + "/precious", "on another volume");
  }

  void hinder() {
    if (dice_.isOneIn(6)) ::chmod(dice_.pick(folders()).c_str(), 0555);
    if (!dice_.isOneIn(10)) return;
    const std::string trash = scene::home + "/.Trash";
    if (dice_.isOneIn(2)) {
      ::chmod(trash.c_str(), 0500);
    } else {
      fs::remove_all(trash);
      scene::write(trash, "no folder");
    }
  }

  void chooseFlags() {
    static const Lines all = {"--include-data",          "--include-caches",        "--include-logs",
                              "--include-prefs",         "--include-containers",    "--include-receipts",
                              "--include-launch-agents", "--include-launch-daemons"};
    const auto way = dice_.below(10);
    if (way == 0) home_.flags.push_back(dice_.isOneIn(2) ? "--minimal" : "--executable-only");
    if (way >= 5) {
      for (const std::string& flag : all)
        if (dice_.hasPercent(60)) home_.flags.push_back(flag);
    }
    if (dice_.isOneIn(3)) home_.flags.push_back("--include-external-target");
  }

  Dice dice_;
  Home home_;
  Application application_;
};

}  // namespace

const Lines& folders() {
  static const Lines all = {scene::home,
                            library + "/Application Support",
                            library + "/Caches",
                            library + "/Logs",
                            library + "/Preferences",
                            library + "/Preferences/ByHost",
                            library + "/Containers",
                            library + "/Group Containers",
                            library + "/HTTPStorages",
                            library + "/WebKit",
                            library + "/Saved Application State",
                            library + "/LaunchAgents",
                            library + "/Cookies",
                            library + "/Application Scripts",
                            "/Library/LaunchDaemons",
                            "/Library/LaunchAgents",
                            "/Library/Application Support",
                            "/Library/PrivilegedHelperTools",
                            "/Library/Caches"};
  return all;
}

Home make(std::uint64_t seed) {
  return Maker(seed).make();
}

void unmount(const Home& home) {
  for (auto mount = home.mounts.rbegin(); mount != home.mounts.rend(); ++mount)
    if (::umount2(mount->c_str(), MNT_DETACH) != 0) scene::fail("can't unmount " + *mount);
}

}  // namespace homes
