#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn {

/// The applications of one maker.
struct UninstallGroup {
  std::string key;    ///< the first two words of the bundle identifiers
  std::string label;  ///< for people
  std::optional<std::string> developer;
  std::vector<AppRecord> apps;  ///< two or more

  const std::string& id() const { return key; }
  std::size_t totalApps() const { return apps.size(); }
  bool operator==(const UninstallGroup&) const = default;
};

/// Gathers the applications of one maker, so that they can be shown and chosen together. Who made an
/// application is told by its bundle identifier alone, and never by its name or its path. All functions are
/// pure.
namespace AppGrouper {

/// Returns the groups, sorted by their labels as people sort. What belongs to the system, and what has an
/// identifier of a single word, is in none.
std::vector<UninstallGroup> group(const std::vector<AppRecord>& records);

/// Returns the records that are in no group, in their order.
std::vector<AppRecord> ungrouped(const std::vector<AppRecord>& records);

/// Returns the label of the group with this key: the name of the maker, which is the second word of the key
/// with its first character in upper case, or as it is spelled if that is known. A character is what people
/// count as one, of whatever script, since nothing holds an identifier to the letters that it should have.
/// For a key of a single word the developer takes the maker's place, or the key.
std::string label(const std::string& key, const std::optional<std::string>& developer);

}  // namespace AppGrouper

}  // namespace quarn
