#include "tests/cli/Campaign.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <sys/stat.h>

#include "Platform/Json.h"
#include "tests/cli/Faults.h"

namespace campaign {
namespace {

namespace fs = std::filesystem;
using fault::app;
using fault::moved;

const std::string data = scene::home + "/Library/Application Support/Foo";
const std::string movedData = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/Foo";
const std::string baz = "/Applications/Baz.app";
const std::string movedBaz = fault::apps + "/Baz.app";
const std::string movies = scene::home + "/Movies";
const std::string movedMovies = "/Volumes/X9/deep/Movies";
const std::string recordFolder = fs::path(scene::manifest).parent_path();
const std::string hiddenLauncher = "/Applications/.quarn-launcher-";

// --- The scene

void emptyFolder(const std::string& folder) {
  for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
}

void clear() {
  for (const std::string folder : {"/Applications", "/Users/me", "/Users/you", "/Volumes/X9"}) {
    scene::makeFolder(folder);
    emptyFolder(folder);
  }
  for (const std::string folder : {"Documents", "Library/Application Support", "Library/Caches"})
    scene::makeFolder(scene::home + "/" + folder);
}

void makeForeign() {
  scene::write("/Users/you/Documents/report", "somebody else's");
  ::chmod("/Users/you/Documents/report", 0600);
  scene::write("/Users/me/Documents/letter", "a letter");
  scene::write("/Users/me/.Trash/Foo.app/old", "thrown away at home");
  scene::write(scene::driveTrash() + "/Foo.app/old", "thrown away on the drive");
  scene::write("/Volumes/X9/Other/film", "a film");
  scene::write("/Applications/notes.txt", "notes");
  scene::write(fault::apps + "/Bar.app/Contents/old", "moved long ago");
}

/// A folder with what a copy can get wrong.
void makeOddThings(const std::string& folder) {
  scene::write(folder + "/.hidden/note", "hidden in " + folder);
  scene::write(folder + "/-rf", "a dash in " + folder);
  scene::write(folder + "/two\nlines \xc3\xa4 a\xcc\x88", "an odd name in " + folder);
  scene::write(folder + "/locked", "read-only in " + folder);
  ::chmod((folder + "/locked").c_str(), 0444);
  scene::makeFolder(folder + "/empty");
  ::chmod((folder + "/empty").c_str(), 0700);
  scene::link(folder + "/to a person", "/Users/you/Documents");
  scene::link(folder + "/dangling", "nowhere");
  scene::link(folder + "/up", "..");
}

void makeAppAt(const std::string& place) {
  scene::makeApp(place, {}, 4000);
  makeOddThings(place + "/Contents");
}

void makeRecords(const Command& command) {
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs VALUES ('1', 'Bar.app', NULL, NULL, NULL, NULL, 'app_move', 'high', 'x', "
      "'2026-01-01T00:00:00Z', NULL, 'of Bar')");
  std::string entries =
      R"({"destinationPath":"/Volumes/X9/ExternalQuarn/Apps/Bar.app",)"
      R"("movedAt":"2026-01-01T00:00:00Z","sizeBytes":7,"sourcePath":"/Applications/Bar.app"})";
  if (command.way == Way::home || command.way == Way::launcher) {
    entries += R"(,{"destinationPath":")" + moved + R"(","movedAt":"2026-01-02T00:00:00Z","sizeBytes":7,)" +
               R"("sourcePath":")" + app + R"("})";
    scene::sql(
        "INSERT INTO installs VALUES ('2', 'Foo.app', NULL, NULL, NULL, NULL, 'app_move', 'high', 'x', "
        "'2026-01-02T00:00:00Z', NULL, 'of Foo')");
  }
  scene::write(scene::manifest, "[" + entries + "]");
}

void makeItems(const Command& command) {
  if (command.way == Way::path) {
    scene::writeBytes(movies + "/a.mov", 9000);
    scene::writeBytes(movies + "/Sub/b.mov", 5000);
    return makeOddThings(movies + "/Sub");
  }
  makeAppAt(command.way == Way::out ? app : moved);
  if (command.way == Way::home) scene::link(app, moved);
  if (command.way == Way::launcher) scene::makeLauncher(app, moved);
  if (command.way != Way::out) return;
  scene::writeBytes(data + "/state", 3000);
  makeOddThings(data);
  if (command.name == "all")
    scene::makeApp(baz, {.identifier = "com.example.baz", .executable = "Baz"}, 9000);
}

// --- Looking

bool isAtOrBelow(const std::string& path, const std::string& root) {
  return path == root || path.starts_with(root + "/");
}

Lines everything() {
  Lines paths;
  for (const std::string root : {"/Applications", "/Library", "/Users", "/Volumes"}) {
    for (const auto& item : fs::recursive_directory_iterator(root)) paths.push_back(item.path().string());
  }
  return paths;
}

/// Kind, mode and content; of a folder, what doesn't depend on what it holds.
std::string facts(const std::string& path) {
  const auto status = fs::symlink_status(path);
  const std::string kind = std::to_string(static_cast<int>(status.type())) + " ";
  if (fs::is_symlink(status)) return kind + scene::target(path);
  const std::string mode = std::to_string(static_cast<unsigned>(status.permissions()));
  return kind + mode + (fs::is_regular_file(status) ? " " + scene::read(path) : "");
}

/// Under its hidden name, or, where that couldn't be removed, set aside under it.
bool isLaunchersPlace(const std::string& path) {
  return path.starts_with(hiddenLauncher) || path.starts_with(scene::home + "/.Trash/.quarn-launcher-") ||
         isAtOrBelow(path, "/Applications/.QuarnTrash");
}

Lines named(const std::string& folder, const std::string& beginning) {
  Lines places;
  for (const std::string& name : fault::names(folder)) {
    if (name.starts_with(beginning)) places.push_back(folder + "/" + name);
  }
  return places;
}

Lines linesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

long count(const std::string& said, const std::string& beginning) {
  const Lines lines = linesOf(said);
  return std::count_if(lines.begin(), lines.end(),
                       [&](const auto& line) { return line.starts_with(beginning); });
}

bool says(const std::string& said, const std::string& text) {
  return said.find(text) != std::string::npos;
}

bool isHomecoming(Way way) {
  return way == Way::home || way == Way::launcher;
}

}  // namespace

const std::vector<Command>& commands() {
  static const std::vector<Item> appAndData = {{app, moved}, {data, movedData}};
  static const std::vector<Command> all = {
      {"one", Way::out, {"move", "one", app, "--yes"}, appAndData},
      {"next", Way::out, {"move", "next", "--yes"}, appAndData},
      {"all", Way::out, {"move", "all", "--yes"}, {{baz, movedBaz}, {app, moved}, {data, movedData}}},
      {"path",
       Way::path,
       {"move", "path", "--source", movies, "--destination", movedMovies, "--yes"},
       {{movies, movedMovies}}},
      {"back", Way::home, {"move", "back", "Foo"}, {{app, moved}}},
      {"restore", Way::home, {"move", "restore", app}, {{app, moved}}},
      {"launcher", Way::launcher, {"move", "restore", app}, {{app, moved}}},
  };
  return all;
}

std::ostream& operator<<(std::ostream& out, const Command& command) {
  return out << command.name;
}

Lines Command::words() const {
  Lines words = {"quarn"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

Trial::Trial(const Command& command) : command_(command) {
  clear();
  makeForeign();
  makeItems(command);
  makeRecords(command);
  lookAgain();
  original_ = found_;
  if (command.way == Way::launcher) launcher_ = scene::tree(app);
  for (const std::string& path : everything()) {
    if (!isAllowed(path)) foreign_[path] = facts(path);
  }
}

void Trial::lookAgain() {
  for (const Item& item : command_.items)
    found_[item.source] = scene::tree(isHomecoming(command_.way) ? item.destination : item.source);
}

std::string Trial::problems(const Outcome& outcome) {
  wasBlind_ = wasBlind_ || outcome.wasBlind;
  return itemProblems() + launcherProblems() + foreignProblems() + wordProblems(outcome) +
         statusProblems(outcome) + manifestProblems() + ledgerProblems();
}

std::string Trial::problemsOfNextRun() {
  lookAgain();
  const std::string expected = expectedOfNextRun();
  const auto run = scene::quarn(command_.arguments);
  const std::string all = problems({run.status, run.out + run.err});
  std::string missing;
  for (const std::string& line : linesOf(expected)) {
    if (!says(run.out + run.err, line)) missing += "the next run doesn't say: " + line + "\n";
  }
  return all.empty() && missing.empty() ? "" : all + missing + "it said:\n" + run.out + run.err;
}

// --- Where the bytes are

Lines Trial::placesOf(const Item& item) const {
  Lines places = {item.source, item.destination};
  const fs::path destination = item.destination;
  const std::string stem = destination.stem();
  const std::string beside = destination.parent_path() / ".QuarnTrash";
  for (const std::string& folder : {scene::driveTrash(), scene::home + "/.Trash", beside}) {
    for (const std::string& place : named(folder, stem)) places.push_back(place);
  }
  return places;
}

bool Trial::isWhole(const Item& item, const std::string& place) const {
  const Lines &wanted = original_.at(item.source), found = scene::tree(place);
  // Into the destination of a path move more may have been merged.
  if (command_.way == Way::path)
    return std::includes(found.begin(), found.end(), wanted.begin(), wanted.end());
  return found == wanted;
}

std::string Trial::itemProblems() const {
  std::string problems;
  for (const Item& item : command_.items) {
    const Lines places = placesOf(item);
    if (std::none_of(places.begin(), places.end(), [&](const auto& place) { return isWhole(item, place); }))
      problems += "LOST: " + item.source + " stands whole nowhere\n";
  }
  return problems;
}

std::string Trial::launcherProblems() const {
  if (command_.way != Way::launcher || isDone(command_.items[0])) return "";
  if (scene::tree(app) == launcher_) return "";
  for (const std::string& place : named("/Applications", ".quarn-launcher-")) {
    if (scene::tree(place) == launcher_) return "";
  }
  return "LOST: the launcher\n";
}

/// What a run may make or change: judged by itself, or an item of its own.
bool Trial::isAllowed(const std::string& path) const {
  if (isAtOrBelow(path, scene::installsDB) || path == scene::installsDB + "-journal") return true;
  if (path == recordFolder || path == scene::manifest || path.starts_with(recordFolder + "/.quarn.nosync"))
    return true;
  if (command_.way == Way::launcher && isLaunchersPlace(path)) return true;
  return std::any_of(command_.items.begin(), command_.items.end(), [&](const Item& item) {
    const std::string beside = fs::path(item.destination).parent_path() / ".QuarnTrash";
    return isAtOrBelow(path, item.source) || isAtOrBelow(path, item.destination) || isAtOrBelow(path, beside);
  });
}

std::string Trial::foreignProblems() const {
  std::string problems;
  for (const auto& [path, before] : foreign_) {
    if (!scene::exists(path))
      problems += "FOREIGN gone: " + path + "\n";
    else if (facts(path) != before)
      problems += "FOREIGN changed: " + path + "\n";
  }
  for (const std::string& path : everything()) {
    if (foreign_.contains(path) || isAllowed(path)) continue;
    const bool isOnTheWay = std::any_of(command_.items.begin(), command_.items.end(), [&](const Item& item) {
      const Lines places = placesOf(item);
      return isAtOrBelow(item.destination, path) ||
             std::any_of(places.begin(), places.end(),
                         [&](const auto& place) { return isAtOrBelow(path, place); });
    });
    if (!isOnTheWay) problems += "FOREIGN new: " + path + "\n";
  }
  return problems;
}

// --- What was said

bool Trial::isDone(const Item& item) const {
  if (isHomecoming(command_.way)) return isWhole(item, item.source);
  if (scene::target(item.source) != item.destination) return false;
  return isWhole(item, item.destination) || scene::tree(item.destination) == found_.at(item.source);
}

std::string Trial::wordProblems(const Outcome& outcome) const {
  std::string problems;
  for (const Item& item : command_.items) {
    const bool wasClaimed = says(outcome.said, "s -> " + item.destination + "\n") ||
                            says(outcome.said, "linked: " + item.source + " -> ") ||
                            says(outcome.said, "moved back: " + item.source) ||
                            says(outcome.said, "restored: " + item.source);
    if (wasClaimed && !isDone(item)) problems += "UNTRUE: " + item.source + " is not done\n";
  }
  const auto done = count(outcome.said, "    ok in "), failed = count(outcome.said, "    FAIL: ");
  if (says(outcome.said, "moved:  ") && !says(outcome.said, "moved:  " + std::to_string(done) + " / "))
    problems += "UNTRUE: the number of what was moved\n";
  if (count(outcome.said, "failed: ") > 0 &&
      !says(outcome.said, "\nfailed: " + std::to_string(failed) + "\n"))
    problems += "UNTRUE: the number of what failed\n";
  return problems;
}

std::string Trial::statusProblems(const Outcome& outcome) const {
  if (outcome.wasEnded) return "";
  const std::string& said = outcome.said;
  const bool hasError = count(said, "error\t") > 0;
  int expected = hasError ? 1 : 0;
  if (command_.name == "next" && says(said, "    FAIL: ")) expected = 1;
  if (command_.name == "next" && says(said, "nothing eligible to move.")) expected = 2;
  std::string problems;
  if (outcome.status != expected)
    problems += "STATUS " + std::to_string(outcome.status) + ", not " + std::to_string(expected) + "\n";
  const bool isDoneOrRefused = hasError || says(said, "linked: ") || says(said, "already symlink: ") ||
                               says(said, "moved back: ") || says(said, "restored: ");
  if (command_.way != Way::out && !isDoneOrRefused) problems += "SAID neither that it was done nor why not\n";
  return problems;
}

// --- Records

std::string Trial::manifestProblems() const {
  if (!scene::exists(scene::manifest)) return "RECORD gone\n";
  const auto json = quarn::Json::parse(scene::read(scene::manifest));
  if (!json || !json->array()) return "RECORD doesn't parse\n";
  const auto names = [&](const std::string& source) {
    return std::any_of(json->array()->begin(), json->array()->end(), [&](const quarn::Json& entry) {
      const quarn::Json* path = entry.member("sourcePath");
      return path && path->text() && *path->text() == source;
    });
  };
  std::string problems;
  if (!wasBlind_ && !names("/Applications/Bar.app")) problems += "RECORD of Bar is gone\n";
  for (const Item& item : command_.items) {
    const bool isNamed = names(item.source);
    if (command_.way == Way::out && isNamed && scene::target(item.source) != item.destination)
      problems += "RECORD of what isn't: " + item.source + "\n";
    if (!wasBlind_ && isHomecoming(command_.way) && !isNamed && !isDone(item))
      problems += "RECORD lacks what is: " + item.source + "\n";
  }
  return problems;
}

std::string Trial::ledgerProblems() const {
  if (scene::sql("PRAGMA integrity_check") != Lines{"ok"}) return "LEDGER is corrupt\n";
  if (scene::sql("SELECT notes FROM installs WHERE app_name='Bar.app' AND uninstalled_at IS NULL") !=
      Lines{"of Bar"})
    return "LEDGER: the row of Bar changed\n";
  std::string problems;
  for (const Item& item : command_.items) {
    const std::string name = fs::path(item.source).filename();
    const bool isOpen =
        !scene::sql("SELECT 1 FROM installs WHERE app_name='" + name + "' AND uninstalled_at IS NULL")
             .empty();
    if (command_.way == Way::out && isOpen && scene::target(item.source) != item.destination)
      problems += "LEDGER has a row of what isn't: " + item.source + "\n";
    if (isHomecoming(command_.way) && !isOpen && !isDone(item))
      problems += "LEDGER closed the row of what isn't home: " + item.source + "\n";
  }
  return problems;
}

// --- The next run

std::string Trial::expectedOfNextRun() const {
  const Item& first = command_.items[0];
  if (command_.way == Way::path) {
    if (scene::isLink(first.source)) return "already symlink: " + first.source + " -> " + first.destination;
    return scene::exists(first.source) ? "linked: " + first.source : "Source path does not exist: ";
  }
  if (isHomecoming(command_.way)) {
    const bool canCome =
        scene::isLink(app) || (command_.way == Way::launcher && scene::tree(app) == launcher_);
    if (!canCome || !scene::exists(moved)) return "error\t";
    return (command_.name == "back" ? "moved back: " : "restored: ") + app;
  }
  std::string lines;
  for (const Item& item : command_.items) {
    // The data of an application is found through it.
    const bool isFound = item.source != data || scene::isLink(app) || isWhole(command_.items[0], app);
    if (!isFound || scene::isLink(item.source) || !scene::exists(item.source)) continue;
    lines += scene::exists(item.destination) ? "    FAIL: Destination already exists.\n"
                                             : "s -> " + item.destination + "\n";
  }
  return lines;
}

}  // namespace campaign
