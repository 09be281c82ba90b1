#include "tests/cli/InstallCampaignLooks.h"

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/SessionStore.h"
#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"

namespace installs {
namespace {

namespace fs = std::filesystem;

const std::string receiptFolder = "/var/db/quarn-room-receipts";

void emptyFolder(const std::string& folder) {
  scene::makeFolder(folder);
  for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
}

void detachImage() {
  if (!scene::exists(attachedImage)) return;
  // With the rights of the test, which `scene::run` gives up.
  if (std::system(("/usr/libexec/quarn-room/hdiutil detach " + attachedImage + " -quiet").c_str()) != 0)
    scene::fail("can't detach the image");
}

void clear() {
  detachImage();
  for (const std::string& folder : {std::string("/Applications"), scene::home, std::string("/Users/you"),
                                    scene::drive, std::string("/Library/LaunchAgents"), receiptFolder})
    emptyFolder(folder);
  for (const std::string& name : temporaryFolders()) fs::remove_all("/tmp/" + name);
  fs::remove_all("/.Trashes");
  for (const std::string folder : {"Documents", "Library/Application Support", "Library/LaunchAgents"})
    scene::makeFolder(scene::home + "/" + folder);
}

void makeForeign() {
  scene::write("/Users/you/report", "somebody else's");
  ::chmod("/Users/you/report", 0600);
  scene::write(scene::home + "/Documents/letter", "a letter");
  scene::write(scene::home + "/Library/Application Support/Other/state", "a state");
  scene::write(scene::home + "/.Trash/Foo.app/old", "thrown away at home");
  scene::write(scene::driveTrash() + "/Foo.app/old", "thrown away on the drive");
  scene::write("/Volumes/X9/Other/film", "a film");
  scene::write("/Library/LaunchAgents/com.example.other.plist", "another agent");
  scene::makeApp("/Applications/Other.app", {.identifier = "com.example.other"}, 100);
  scene::makeApp(drivesApps + "/Old.app", {.identifier = "com.example.old"}, 100);
  scene::makeLauncher("/Applications/Old.app", drivesApps + "/Old.app");
  scene::write(sessionRoot + "/" + foreignSession + "/session.json",
               R"({"id":"20200101_000000","sourcePath":"x","optionID":"x","createdAt":1,"actions":[],)"
               R"("changedPaths":["\/Applications\/Other.app"],"newReceipts":[]})");
}

bool isRecord(const std::string& path) {
  return campaign::isAtOrBelow(path, sessionRoot);
}

}  // namespace

void clearScene() {
  clear();
  makeForeign();
}

std::set<std::string> contents() {
  std::set<std::string> found;
  // Where the home can't be looked at, its Trash isn't found, and that of the startup volume takes an item.
  for (const std::string top : {"/Applications", "/Library", "/Users", "/Volumes/X9", "/.Trashes"}) {
    if (!fs::exists(top)) continue;
    for (const auto& item : fs::recursive_directory_iterator(top))
      if (item.is_regular_file() && !item.is_symlink() && !isRecord(item.path()))
        found.insert(scene::read(item.path()));
  }
  return found;
}

Lines receipts() {
  return fault::names(receiptFolder);
}

Lines temporaryFolders() {
  Lines found;
  for (const std::string& name : fault::names("/tmp"))
    if (name.starts_with("Quarn")) found.push_back(name);
  return found;
}

std::optional<quarn::InstallerSession> loadSession(const std::string& name) {
  return quarn::SessionStore::load(quarn::hostPlatform(), quarn::Path(sessionRoot + "/" + name));
}

std::string launcherTarget(const std::string& bundle) {
  const std::string file = bundle + "/Contents/Resources/ExternalAppTarget.txt";
  return scene::exists(file) ? scene::read(file) : "";
}

}  // namespace installs
