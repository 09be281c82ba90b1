#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/Scene.h"

/// Everything that an uninstall could touch, before and after it, and what its record says.
namespace trees {

/// Kind, mode, content, link text and attributes of every item, by its path.
using Tree = std::map<std::string, std::string>;

Tree all();
/// Whether these are the facts of a link.
bool isLink(const std::string& facts);
/// Takes an item with all that is in it to another place.
void move(Tree& tree, const std::string& from, const std::string& to);
/// What is gone, what has changed, and what is new and is neither a folder of a Trash nor quarn's own; a line
/// each.
std::string differences(const Tree& expected, const Tree& found);

/// A session as anybody may read it.
struct Session {
  struct Item {
    std::string place;  ///< where it was
    std::string category;
    std::optional<std::string> trashedTo, stashedTo;
    bool succeeded = false;
  };
  std::string id;
  std::string app;
  std::vector<Item> items;
  std::vector<std::string> receipts;
};

inline const std::string sessionRoot = scene::home + "/Library/Application Support/Quarn/UninstallSessions";
/// The names of the sessions there are.
std::set<std::string> sessionNames();
/// Absent if it can't be read.
std::optional<Session> session(const std::string& name);
/// Where an item lies now: in the Trash, or in the folder beside it, in which `before` didn't lie. Empty if
/// it lies at neither.
std::string placeNow(const Session::Item& item, const Tree& before);

}  // namespace trees
