#include <filesystem>
#include <ostream>

#include "tests/cli/UninstallCampaign.h"

namespace uninstalls {
namespace {

namespace fs = std::filesystem;

const std::string library = scene::home + "/Library";

void clear() {
  for (const std::string& folder : {std::string("/Applications"), std::string("/Library"),
                                    std::string("/Users/you"), scene::home, scene::drive}) {
    scene::makeFolder(folder);
    for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
  }
  fs::remove_all("/.Trashes");
  for (const std::string folder : {"/Preferences/ByHost", "/Application Support", "/Containers"})
    scene::makeFolder(library + folder);
}

void makeForeign() {
  scene::write("/Users/you/report", "somebody else's");
  scene::write(scene::home + "/Documents/letter", "a letter");
  scene::write(scene::home + "/.foo/settings", "which a person may want");
  scene::write(library + "/Caches/com.example.foo2/x", "of another application");
  scene::write(library + "/Preferences/com.example.foo.old.plist", "of another application, too");
  scene::write("/Library/LaunchDaemons/com.example.foo.plist", "a daemon");
  scene::write("/Volumes/X9/Other/film", "a film");
  scene::write(scene::home + "/.Trash/Foo.app/old", "thrown away at home");
  scene::write(scene::home + "/.Trash/com.example.foo", "thrown away, too");
  scene::makeApp("/Applications/Other.app", {.identifier = "com.example.other"}, 100);
  scene::write(library + "/Application Support/Quarn/UninstallSessions/" + formerSession + "/session.json",
               R"({"id":")" + formerSession +
                   R"(","appPath":"x","appName":"x","createdAt":1,"movedItems":[],"forgottenReceipts":[],)"
                   R"("dryRun":false})");
}

/// Every file of it has a content of its own.
void makeApp(const std::string& bundle) {
  scene::makeApp(bundle, {}, 0);
  scene::write(bundle + "/Contents/Resources/data.bin", "resource of " + bundle);
  scene::link(bundle + "/Contents/Current", "MacOS");
}

void makeData(const std::string& path) {
  scene::write(path + "/Sub/file", "in " + path);
  scene::link(path + "/out", "/Users/you");
}

const Lines& folders() {
  static const Lines all = {library + "/Application Support/Foo",
                            library + "/Application Support/com.example.foo",
                            library + "/Caches/com.example.foo",
                            library + "/Logs/Foo",
                            library + "/Containers/com.example.foo",
                            library + "/Group Containers/com.example.foo",
                            library + "/HTTPStorages/com.example.foo",
                            library + "/WebKit/com.example.foo",
                            library + "/Saved Application State/Foo.savedState",
                            library + "/Caches/foo-cli",
                            "/Library/Application Support/com.example.foo"};
  return all;
}

const Lines& files() {
  static const Lines all = {library + "/Preferences/com.example.foo.plist",
                            library + "/Preferences/ByHost/com.example.foo.1A.plist",
                            library + "/LaunchAgents/com.example.foo.plist"};
  return all;
}

Lines allOfTheApplication() {
  Lines all = {application, library + "/Caches/Foo"};
  all.insert(all.end(), folders().begin(), folders().end());
  all.insert(all.end(), files().begin(), files().end());
  return all;
}

void data() {
  makeApp(application);
  for (const std::string& folder : folders()) makeData(folder);
  for (const std::string& file : files()) scene::write(file, "content of " + file);
  scene::link(library + "/Caches/Foo", "/Users/you");
}

void linked() {
  makeApp(driveCopy);
  scene::link(application, driveCopy);
  makeData(library + "/Caches/com.example.foo");
  scene::write(scene::driveTrash() + "/Foo.app/old", "thrown away on the drive");
}

void launcher() {
  makeApp(driveCopy);
  scene::makeLauncher(application, driveCopy);
  makeData(library + "/Application Support/Launcher");
  makeData(library + "/Caches/com.example.foo.externallauncher");
  // Of the application on the drive, which stays.
  makeData(library + "/Application Support/Foo");
}

void refused() {
  makeApp(driveCopy);
  scene::link(application, driveCopy);
  makeData(library + "/Caches/com.example.foo");
  scene::write("/Volumes/X9/.Trashes", "a file in the way");
}

Lines run(const Lines& flags) {
  Lines words = {"uninstall", "run", application, "--progress"};
  words.insert(words.end(), flags.begin(), flags.end());
  return words;
}

}  // namespace

const std::vector<Job>& jobs() {
  static const std::string cache = library + "/Caches/com.example.foo";
  static const Lines withCopy = {"--include-external-target", "--include-caches"};
  static const std::vector<Job> all = {
      {"application", run({}), allOfTheApplication(), data},
      {"link", run(withCopy), {application, driveCopy, cache}, linked},
      {"launcher",
       run({}),
       {application, library + "/Application Support/Launcher", cache + ".externallauncher"},
       launcher},
      {"refused", run(withCopy), {application, driveCopy, cache}, refused},
  };
  return all;
}

const Job& jobOf(const std::string& name) {
  for (const Job& job : jobs())
    if (job.name == name) return job;
  scene::fail("no job " + name);
}

std::ostream& operator<<(std::ostream& out, const Job& job) {
  return out << job.name;
}

Lines Job::words() const {
  Lines words = {"quarn"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

std::string Job::line() const {
  std::string text;
  for (const std::string& word : words()) text += "'" + word + "' ";
  return text;
}

void quickenTools() {
  scene::replaceTool("/usr/bin/mdutil", "#!/bin/sh\nexit 0\n");
  scene::replaceTool("/usr/sbin/pkgutil", "#!/bin/sh\nexit 1\n");
}

void slowTools() {
  scene::replaceTool("/usr/bin/mdutil", "#!/bin/sh\nexec /usr/libexec/quarn-room/mdutil \"$@\"\n");
  scene::replaceTool("/usr/sbin/pkgutil", "#!/bin/sh\nexec /usr/libexec/quarn-room/pkgutil \"$@\"\n");
}

void ageSessions() {
  static int count = 0;
  const std::string root = trees::sessionRoot + "/";
  for (const std::string& name : trees::sessionNames()) {
    if (name == formerSession || name.starts_with("20210101")) continue;
    const std::string aged = "20210101_" + std::to_string(100'000 + ++count);
    fs::rename(root + name, root + aged);
    std::string text = scene::read(root + aged + "/session.json");
    for (auto at = text.find(name); at != std::string::npos; at = text.find(name))
      text.replace(at, name.size(), aged);
    if (!text.empty()) scene::write(root + aged + "/session.json", text);
  }
}

Trial::Trial(const Job& job, Lines outOfSight) : job_(job), outOfSight_(std::move(outOfSight)) {
  clear();
  makeForeign();
  job.setScene();
  before_ = trees::all();
}

}  // namespace uninstalls
