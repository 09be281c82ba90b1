#include "tests/cli/UninstallTrees.h"

#include <array>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "Platform/Json.h"

namespace trees {
namespace {

namespace fs = std::filesystem;

const std::string link = "link to ";

std::string attributes(const std::string& path) {
  std::array<char, 1024> names{};
  const ssize_t size = ::llistxattr(path.c_str(), names.data(), names.size());
  std::string text;
  for (ssize_t at = 0; at < size;) {
    const std::string name = names.data() + at;
    std::array<char, 1024> value{};
    const ssize_t length = ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
    text += " " + name + "=" + std::string(value.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    at += static_cast<ssize_t>(name.size()) + 1;
  }
  return text;
}

std::string facts(const std::string& path) {
  struct stat found {};
  if (::lstat(path.c_str(), &found) != 0) scene::fail("can't look at " + path);
  if (S_ISLNK(found.st_mode)) return link + fs::read_symlink(path).string();
  const std::string mode = std::to_string(found.st_mode) + " ";
  return mode + (S_ISREG(found.st_mode) ? scene::read(path) : "") + attributes(path);
}

bool isAtOrBelow(const std::string& path, const std::string& item) {
  return path.compare(0, item.size(), item) == 0 && (path.size() == item.size() || path[item.size()] == '/');
}

/// A folder of a Trash, an empty one beside an item, or the record of a run.
bool isOwn(const std::string& path) {
  if (path == fs::path(sessionRoot).parent_path() || isAtOrBelow(path, sessionRoot)) return true;
  const bool isTrash = path.ends_with("/.Trash") || path.ends_with("/.Trashes") ||
                       path.ends_with("/.QuarnTrash") ||
                       fs::path(path).parent_path().filename() == ".Trashes";
  return isTrash && fs::is_directory(fs::symlink_status(path));
}

std::string shown(const std::string& text) {
  return text.substr(0, 200);
}

std::string textOf(const quarn::Json& json, const char* key) {
  const auto* member = json.member(key);
  return member && member->text() ? *member->text() : std::string();
}

std::optional<std::string> maybeTextOf(const quarn::Json& json, const char* key) {
  return json.member(key) ? std::optional(textOf(json, key)) : std::nullopt;
}

}  // namespace

Tree all() {
  Tree tree;
  for (const std::string root : {"/.Trashes", "/Applications", "/Library", "/System/Applications", "/Users",
                                 "/Volumes", "/var/db/quarn-room-receipts"}) {
    if (!fs::exists(root)) continue;
    for (const auto& item : fs::recursive_directory_iterator(root)) tree[item.path()] = facts(item.path());
  }
  return tree;
}

bool isLink(const std::string& facts) {
  return facts.starts_with(link);
}

void move(Tree& tree, const std::string& from, const std::string& to) {
  Tree moved;
  for (auto at = tree.lower_bound(from); at != tree.end() && at->first.compare(0, from.size(), from) == 0;) {
    if (!isAtOrBelow(at->first, from)) {
      ++at;
      continue;
    }
    moved[to + at->first.substr(from.size())] = at->second;
    at = tree.erase(at);
  }
  tree.merge(moved);
}

std::string differences(const Tree& expected, const Tree& found) {
  std::string result;
  for (const auto& [path, facts] : expected) {
    const auto now = found.find(path);
    if (now == found.end())
      result += "gone: " + shown(path) + "\n";
    else if (now->second != facts)
      result += "changed: " + shown(path) + "\n";
  }
  for (const auto& [path, facts] : found)
    if (!expected.contains(path) && !isOwn(path)) result += "new: " + shown(path) + "\n";
  return result;
}

std::set<std::string> sessionNames() {
  std::set<std::string> names;
  if (!fs::exists(sessionRoot)) return names;
  for (const auto& item : fs::directory_iterator(sessionRoot)) names.insert(item.path().filename());
  return names;
}

std::optional<Session> session(const std::string& name) {
  const auto json = quarn::Json::parse(scene::read(sessionRoot + "/" + name + "/session.json"));
  if (!json || !json->member("movedItems") || !json->member("movedItems")->array()) return std::nullopt;
  Session session{textOf(*json, "id"), textOf(*json, "appPath"), {}, {}};
  for (const quarn::Json& item : *json->member("movedItems")->array()) {
    const quarn::Json* succeeded = item.member("succeeded");
    session.items.push_back({textOf(item, "originalPath"), textOf(item, "category"),
                             maybeTextOf(item, "trashedTo"), maybeTextOf(item, "stashedTo"),
                             succeeded && succeeded->flag() && *succeeded->flag()});
  }
  const quarn::Json* receipts = json->member("forgottenReceipts");
  if (receipts && receipts->array())
    for (const quarn::Json& receipt : *receipts->array()) session.receipts.push_back(*receipt.text());
  return session;
}

std::string placeNow(const Session::Item& item, const Tree& before) {
  if (item.trashedTo) return *item.trashedTo;
  if (!item.stashedTo || !fs::is_directory(*item.stashedTo)) return "";
  const std::string name = fs::path(item.place).filename().string();
  std::string place;
  for (const auto& found : fs::directory_iterator(fs::canonical(*item.stashedTo))) {
    const std::string stashed = found.path().filename().string();
    const auto end = stashed.rfind("-uninstall-");
    if (end == std::string::npos || before.contains(found.path())) continue;
    // A name that would be too long is shortened.
    const std::string beginning = stashed.substr(0, end);
    if (beginning == name || (stashed.size() > 251 && name.starts_with(beginning))) place = found.path();
  }
  return place;
}

}  // namespace trees
