#include "tests/cli/UninstallRules.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/Scene.h"

namespace rules {
namespace {

namespace fs = std::filesystem;
using homes::Home;
using homes::Lines;

struct Row {
  const char* path;
  const char* category;
  bool isSelected;
};

// "<name>", "<id>" and "<slug>" stand for what the application is called; "*" for any ending.
const Row names[] = {
    {"/Users/me/Library/Application Support/<name>", "applicationSupport", true},
    {"/Users/me/Library/Application Support/<id>", "applicationSupport", true},
};
const Row table[] = {
    {"/Users/me/Library/Caches/<name>", "caches", true},
    {"/Users/me/Library/Caches/<id>", "caches", true},
    {"/Users/me/Library/Logs/<name>", "logs", true},
    {"/Users/me/Library/Logs/<id>", "logs", true},
    {"/Users/me/Library/Preferences/<id>.plist", "preferences", true},
    {"/Users/me/Library/Preferences/ByHost/<id>*", "preferences", true},
    {"/Users/me/Library/Containers/<id>", "containers", true},
    {"/Users/me/Library/Group Containers/<id>", "groupContainers", true},
    {"/Users/me/Library/HTTPStorages/<id>", "httpStorages", true},
    {"/Users/me/Library/WebKit/<id>", "webKit", true},
    {"/Users/me/Library/Saved Application State/<name>.savedState", "savedAppState", true},
    {"/Users/me/Library/LaunchAgents/<id>.plist", "launchAgents", true},
};
const Row bySlug[] = {
    {"/Users/me/.<slug>", "applicationSupport", false},
    {"/Users/me/.<slug>.json", "applicationSupport", false},
    {"/Users/me/.<slug>.json.backup", "applicationSupport", false},
    {"/Users/me/.<slug>rc", "applicationSupport", false},
    {"/Users/me/.<slug>.log", "applicationSupport", false},
    {"/Users/me/Library/Caches/<slug>-cli-nodejs", "caches", true},
    {"/Users/me/Library/Caches/<slug>-cli", "caches", true},
    {"/Users/me/Library/Caches/<slug>-nodejs", "caches", true},
};
const Row ofTheSystem[] = {
    {"/Library/LaunchDaemons/<id>.plist", "launchDaemons", false},
    {"/Library/LaunchAgents/<id>.plist", "launchAgents", false},
    {"/Library/Application Support/<id>", "applicationSupport", true},
    {"/Library/PrivilegedHelperTools/<id>", "launchDaemons", false},
};

// What it is called.

std::string trimmed(const std::string& text) {
  const char* space = " \t\n\r";
  const auto from = text.find_first_not_of(space);
  return from == std::string::npos ? "" : text.substr(from, text.find_last_not_of(space) - from + 1);
}

/// How many characters people see: none for a mark above another one.
std::size_t length(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool isContinued = (byte & 0xC0) == 0x80;
    const bool isMark = byte == 0xCC || byte == 0xCD;
    if (!isContinued && !isMark) ++count;
  }
  return count;
}

std::string lowered(std::string text) {
  for (char& letter : text)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 32);
  // É, the only other letter of the generator that has a small one.
  for (auto at = text.find("\xC3\x89"); at != std::string::npos; at = text.find("\xC3\x89"))
    text.replace(at, 2, "\xC3\xA9");
  return text;
}

/// With the letters of the generator that have two forms in one of them.
std::string composed(std::string text) {
  for (auto at = text.find("e\xCC\x81"); at != std::string::npos; at = text.find("e\xCC\x81"))
    text.replace(at, 3, "\xC3\xA9");
  return text;
}

std::string folderName(const Home& home) {
  const std::string last = fs::path(home.bundle).filename();
  return last.substr(0, last.size() - 4);
}

bool isSupplemental(const Home& home) {
  return home.bundle.starts_with(scene::home + "/Library/Application Support/");
}

std::string slugOf(const Home& home) {
  if (home.executable && !home.executable->empty()) return lowered(*home.executable);
  return lowered(folderName(home));
}

std::string nameOf(const Home& home) {
  if (isSupplemental(home)) return slugOf(home);
  if (!home.listedName) return folderName(home);
  const std::string folder = trimmed(folderName(home)), listed = trimmed(*home.listedName);
  return length(folder) >= length(listed) ? folder : listed;
}

/// A name of an entry of a folder.
bool isEntry(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
         name.find('\0') == std::string::npos;
}

bool hasNamesInTheHome(const Home& home) {
  if (!home.identifier || home.identifier->empty()) return true;
  const std::string low = lowered(*home.identifier);
  return low != "com.anthropic.claudefordesktop" && low != "com.anthropic.claude-code-url-handler" &&
         low.find("url-handler") == std::string::npos && low.find("urlhandler") == std::string::npos;
}

// What stands there.

bool stands(const std::string& path) {
  return fs::path(path).filename().string().size() <= 255 && fs::exists(fs::symlink_status(path));
}

/// Whether moving the item, or what it leads to, could move a folder that has to stay, or what is around it.
bool isOrHoldsAPlace(const std::string& path) {
  const Lines places = {scene::home,
                        "/Applications",
                        "/Volumes/X9",
                        "/System/Applications",
                        scene::home + "/Library/Application Support/Quarn",
                        "/Volumes/X9/ExternalQuarn/Apps",
                        "/Volumes/X9/QuarnBackups"};
  return path == "/" || std::any_of(places.begin(), places.end(), [&path](const std::string& place) {
           return place == path || place.starts_with(path + "/");
         });
}

class Finder {
 public:
  explicit Finder(const Home& home)
      : home_(home),
        words_({{"<name>", nameOf(home)}, {"<slug>", slugOf(home)}, {"<id>", home.identifier.value_or("")}}) {
  }

  std::map<std::string, Candidate> find() {
    found_[home_.bundle] = {"executable", true, true};
    addTarget();
    if (!isSupplemental(home_)) addAll(names);
    addAll(table);
    if (hasNamesInTheHome(home_)) addAll(bySlug);
    addAll(ofTheSystem);
    addInstallSession();
    return std::move(found_);
  }

 private:
  static bool hasTwin(const std::string& path) {
    for (const auto& item : fs::directory_iterator(fs::path(path).parent_path()))
      if (item.path() != path && composed(item.path()) == composed(path)) return true;
    return false;
  }

  /// An application behind a link or a launcher. Nothing else is one.
  void addTarget() {
    const std::string target = targetPath(home_);
    if (target == home_.bundle || !target.ends_with(".app") || !fs::exists(target) || isOrHoldsAPlace(target))
      return;
    // Launchers are made with whole paths, so what another one means isn't clear.
    const bool isClear = home_.isLink || home_.target->starts_with("/");
    found_.insert({target, {"executable", false, isClear && !home_.mayBeRefused}});
  }

  void addInstallSession() {
    const std::string folder =
        scene::home + "/Library/Application Support/Quarn/InstallerSessions/20260101_000000";
    if (stands(folder)) found_.insert({folder, {"installerSession", false, true}});
  }

  template <class Rows>
  void addAll(const Rows& rows) {
    for (const Row& row : rows) add(row);
  }

  void add(const Row& row) {
    std::string path = row.path;
    for (const auto& [word, meaning] : words_) {
      const auto at = path.find(word);
      if (at == std::string::npos) continue;
      if (!isEntry(meaning)) return;
      path.replace(at, std::string(word).size(), meaning);
    }
    // Not the one that may stand in the name itself.
    if (std::string(row.path).ends_with("*")) return addEndings(path.substr(0, path.size() - 1), row);
    // What is the name and what the extension isn't clear of some.
    addFound(path, row, !home_.mayBeRefused || std::string(row.path).find("<id>") != std::string::npos);
  }

  void addEndings(const std::string& beginning, const Row& row) {
    for (const auto& item : fs::directory_iterator(fs::path(beginning).parent_path())) {
      const std::string path = item.path();
      // A mark right behind it makes another letter of the last one. A person sees no difference between the
      // two forms of a letter, and a Mac's disk takes them for one.
      const bool isOtherLetter = path.substr(std::min(beginning.size(), path.size()), 1) == "\xCC";
      if (composed(path).starts_with(composed(beginning)))
        addFound(path, row, path.starts_with(beginning) && !isOtherLetter && !hasTwin(path));
    }
  }

  void addFound(const std::string& path, const Row& row, bool isCertain = true) {
    if (!stands(path) || isOrHoldsAPlace(path)) return;
    const bool isDangling = !fs::exists(path);
    // Whoever is called like quarn may be taken for it.
    const bool isOfQuarn = lowered(path).find("/quarn") != std::string::npos;
    found_.insert({path, {row.category, row.isSelected, isCertain && !isDangling && !isOfQuarn}});
  }

 public:
  static std::string targetPath(const Home& home) {
    if (!home.target || home.target->empty()) return "";
    const std::string parent = fs::path(home.bundle).parent_path();
    return (fs::path(parent) / *home.target).lexically_normal();
  }

 private:
  const Home& home_;
  const std::map<std::string, std::string> words_;
  std::map<std::string, Candidate> found_;
};

}  // namespace

std::map<std::string, Candidate> candidates(const Home& home) {
  return Finder(home).find();
}

}  // namespace rules
