#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaignLooks.h"
#include "tests/support/Packages.h"

namespace installs {
namespace {

namespace fs = std::filesystem;

const std::string stock = "/tmp/stock";
const std::string downloads = scene::home + "/Downloads";
const std::string agent = "/Library/LaunchAgents/com.example.setup.plist";

/// Every file of it has a content of its own.
void makeApp(const std::string& bundle, const std::string& version = "1.0") {
  const std::string name = fs::path(bundle).stem();
  scene::makeApp(bundle, {.identifier = "com.example." + name, .version = version}, 0);
  scene::write(bundle + "/Contents/MacOS/Foo", "#!/bin/sh\n# " + name + version + "\n");
  scene::write(bundle + "/Contents/Info.plist",
               scene::read(bundle + "/Contents/Info.plist") + "<!-- " + name + version + " -->");
  scene::write(bundle + "/Contents/Resources/data.bin", "resource of " + name + version);
  scene::link(bundle + "/Contents/Current", "MacOS");
}

void copyTree(const std::string& from, const std::string& to) {
  fs::create_directories(fs::path(to).parent_path());
  if (scene::run({"/bin/cp", "-a", from, to}).status != 0) scene::fail("can't copy " + from);
}

void pack(const std::string& file, const std::string& identifier, const Lines& apps,
          const std::string& info = {}) {
  const std::string payload = stock + "/payload of " + identifier;
  for (const std::string& app : apps) copyTree(stockOf(app), payload + "/Applications/" + app);
  if (identifier == "com.example.setup") scene::write(payload + agent, "an agent");
  packages::component(file, {.identifier = identifier, .payload = payload, .packageInfoExtra = info});
  packages::sign(file);
}

void archive(const std::string& format, const std::string& file, const std::string& folder) {
  if (scene::run({"/usr/bin/bsdtar", "--format", format, "-cf", file, "-C", folder, "."}).status != 0)
    scene::fail("can't make " + file);
}

void makeStock() {
  for (const std::string app : {"Foo.app", "One.app", "Two.app", "Bar.app"}) makeApp(stockOf(app));
  pack(stock + "/Setup.pkg", "com.example.setup", {"One.app", "Two.app"});
  pack(stock + "/Foo.pkg", "com.example.foo", {"Foo.app"},
       "    <bundle path=\"./Applications/Foo.app\" id=\"com.example.Foo\"/>");
  copyTree(stockOf("Foo.app"), stock + "/in image/Foo.app");
  pack(stock + "/in image/Bar.pkg", "com.example.bar", {"Bar.app"});
  copyTree(stockOf("Foo.app"), stock + "/in archive/Foo.app");
  archive("pax", stock + "/Foo.dmg", stock + "/in image");
  archive("zip", stock + "/Foo.zip", stock + "/in archive");
}

void download(const std::string& name) {
  copyTree(stock + "/" + name, downloads + "/" + name);
}

void appAlone() {
  copyTree(stockOf("Foo.app"), downloads + "/Foo.app");
}
void appOverOthers() {
  appAlone();
  makeApp(drivesApps + "/Foo.app", "0.1 of old");
  makeApp("/Applications/Foo.app", "0.2 of old");
}
void appInPlace() {
  copyTree(stockOf("Foo.app"), "/Applications/Foo.app");
}
void zip() {
  download("Foo.zip");
}
void image() {
  download("Foo.dmg");
}
void package() {
  download("Setup.pkg");
}
void namedPackage() {
  download("Foo.pkg");
  makeApp(drivesApps + "/Foo.app", "0.1 of old");
  scene::link("/Applications/Foo.app", drivesApps + "/Foo.app");
}
void pendingSession() {
  for (const std::string app : {"One.app", "Two.app"}) copyTree(stockOf(app), "/Applications/" + app);
  scene::write(sessionRoot + "/" + sceneSession + "/session.json",
               R"({"id":")" + sceneSession +
                   R"(","sourcePath":"\/Users\/me\/Downloads\/Setup.pkg","optionID":"trusted-external",)"
                   R"("createdAt":789000000,"actions":["installed-pkg\t\/Users\/me\/Downloads\/Setup.pkg"],)"
                   R"("changedPaths":[],"newReceipts":["com.example.setup"],"status":"pendingExternalize",)"
                   R"("targetDrivePath":"\/Volumes\/X9",)"
                   R"("pendingExternalizeApps":["\/Applications\/One.app","\/Applications\/Two.app"]})");
}

/// Installs, and gives the session the name that the commands know.
void installed(const std::string& source) {
  const auto run = scene::quarn({"install", "run", downloads + "/" + source, "--option", "trusted-external",
                                 "--target-drive", "/Volumes/X9"});
  if (run.status != 0) scene::fail("can't install: " + run.err);
  std::string made;
  for (const std::string& name : fault::names(sessionRoot))
    if (name != foreignSession) made = name;
  const std::string folder = sessionRoot + "/" + sceneSession;
  fs::rename(sessionRoot + "/" + made, folder);
  std::string text = scene::read(folder + "/session.json");
  text.replace(text.find(made), made.size(), sceneSession);
  scene::write(folder + "/session.json", text);
}
void appInstalled() {
  appAlone();
  installed("Foo.app");
}
void packageInstalled() {
  package();
  installed("Setup.pkg");
}

Lines run(const std::string& source) {
  return {"install", "run", source, "--option", "trusted-external", "--target-drive", "/Volumes/X9"};
}

void serveImages() {
  // A request is a file with the words, a line each, renamed into place when it is complete.
  const char* script =
      "cd /tmp/images; while :; do for ask in *.ask; do [ -e \"$ask\" ] || continue; id=${ask%.ask}\n"
      "set --; while IFS= read -r word; do set -- \"$@\" \"$word\"; done <$ask; rm $ask\n"
      "/usr/libexec/quarn-room/hdiutil \"$@\" >$id.out 2>$id.err </dev/null; echo $? >$id.tmp\n"
      "mv $id.tmp $id.status; done; sleep 0.01; done";
  ::setpgid(0, 0);
  ::execl("/bin/sh", "sh", "-c", script, nullptr);
  ::_exit(127);
}

}  // namespace

std::string stockOf(const std::string& app) {
  return stock + "/apps/" + app;
}

std::string whyNoStock() {
  if (!packages::canBeMade()) return "there is no bsdtar";
  if (!scene::exists(stock + "/Foo.zip")) makeStock();
  return "";
}

ImageServer::ImageServer() : pid_(0) {
  scene::makeFolder("/tmp/images");
  scene::replaceTool("/usr/bin/hdiutil",
                     "#!/bin/sh\nid=/tmp/images/$$\nprintf '%s\\n' \"$@\" >$id.new; mv $id.new $id.ask\n"
                     "until [ -e $id.status ]; do sleep 0.01; done\n"
                     "cat $id.out; cat $id.err >&2; status=$(cat $id.status); rm $id.*; exit $status\n");
  pid_ = ::fork();
  if (pid_ == 0) serveImages();
}

ImageServer::~ImageServer() {
  ::kill(-pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

const std::vector<Job>& jobs() {
  static const Lines foo = {"Foo.app"}, both = {"One.app", "Two.app"};
  static const std::vector<Job> all = {
      {"app", Way::bundle, run(downloads + "/Foo.app"), foo, appAlone},
      {"appOverOthers", Way::bundle, run(downloads + "/Foo.app"), foo, appOverOthers},
      {"appInPlace", Way::bundle, run("/Applications/Foo.app"), foo, appInPlace},
      {"zip", Way::bundle, run(downloads + "/Foo.zip"), foo, zip},
      {"image", Way::package, run(downloads + "/Foo.dmg"), {"Foo.app", "Bar.app"}, image},
      {"package", Way::package, run(downloads + "/Setup.pkg"), both, package},
      {"namedPackage", Way::package, run(downloads + "/Foo.pkg"), foo, namedPackage},
      {"resume", Way::resume, {"install", "resume", sceneSession}, both, pendingSession},
      {"undoApp", Way::undo, {"install", "uninstall", sceneSession}, foo, appInstalled},
      {"undoPackage", Way::undo, {"install", "uninstall", sceneSession}, both, packageInstalled},
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

}  // namespace installs
