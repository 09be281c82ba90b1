#include "tests/cli/CampaignScene.h"

#include <filesystem>
#include <ostream>
#include <sys/stat.h>

namespace campaign {
namespace {

namespace fs = std::filesystem;
using fault::app;
using fault::moved;

const std::string movedData = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/Foo";
const std::string baz = "/Applications/Baz.app";
const std::string movedBaz = fault::apps + "/Baz.app";
const std::string movies = scene::home + "/Movies";
const std::string movedMovies = "/Volumes/X9/deep/Movies";

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
  if (isHomecoming(command.way)) {
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

}  // namespace

void setScene(const Command& command) {
  clear();
  makeForeign();
  makeItems(command);
  makeRecords(command);
}

bool isHomecoming(Way way) {
  return way == Way::home || way == Way::launcher;
}

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

}  // namespace campaign
