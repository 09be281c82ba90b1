#include "QuarnCore/uninstall/AppGrouper.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string_view>

#include "Platform/Text.h"

namespace quarn::AppGrouper {
namespace {

/// Second words of bundle identifiers that tell nothing of a maker, or the maker of the system.
constexpr auto suppressedVendors = std::to_array<std::string_view>({"apple", "com", "org", "io", "net"});

struct VendorName {
  std::string_view word;  ///< in lower case
  std::string_view name;
};

constexpr auto vendorNames = std::to_array<VendorName>({
    {"openai", "OpenAI"},
    {"github", "GitHub"},
    {"googlecode", "Google"},
    {"google", "Google"},
    {"microsoft", "Microsoft"},
    {"apple", "Apple"},
    {"ai", "AI"},
    {"todesktop", "ToDesktop"},
});

/// Returns what is between the dots, without empty pieces.
std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> found;
  while (!text.empty()) {
    const auto end = std::min(text.find('.'), text.size());
    if (end > 0) found.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return found;
}

std::string vendorKey(const AppRecord& record) {
  if (!record.bundleIdentifier) return "path:" + record.bundlePath;
  const auto parts = words(*record.bundleIdentifier);
  return parts.size() < 2 ? *record.bundleIdentifier : parts[0] + "." + parts[1];
}

bool takesPart(const AppRecord& record, const std::string& key) {
  const auto parts = words(key);
  if (record.kind == AppRecordKind::systemRisky || parts.size() < 2) return false;
  const std::string vendor = Text::lowercased(parts[1]);
  return std::find(suppressedVendors.begin(), suppressedVendors.end(), vendor) == suppressedVendors.end();
}

std::string withFirstInUpperCase(const std::string& word) {
  const std::string first = Text::prefix(word, 1);
  return Text::uppercased(first) + word.substr(first.size());
}

std::optional<std::string> vendorName(const std::string& key) {
  const auto parts = words(key);
  if (parts.size() < 2) return std::nullopt;
  const std::string vendor = Text::lowercased(parts[1]);
  for (const auto& [word, name] : vendorNames) {
    if (word == vendor) return std::string(name);
  }
  return withFirstInUpperCase(parts[1]);
}

std::optional<std::string> firstDeveloper(const std::vector<AppRecord>& apps) {
  const auto found =
      std::find_if(apps.begin(), apps.end(), [](const AppRecord& app) { return app.developer.has_value(); });
  return found == apps.end() ? std::nullopt : found->developer;
}

/// Returns the records by their keys, in the order in which each key occurs first.
std::vector<UninstallGroup> gathered(const std::vector<AppRecord>& records) {
  std::vector<UninstallGroup> groups;
  std::map<std::string, std::size_t> numbers;
  for (const AppRecord& record : records) {
    const std::string key = vendorKey(record);
    if (!takesPart(record, key)) continue;
    const auto [at, isNew] = numbers.emplace(Text::canonical(key), groups.size());
    if (isNew) groups.push_back({.key = key, .label = {}, .developer = {}, .apps = {}});
    groups[at->second].apps.push_back(record);
  }
  return groups;
}

}  // namespace

std::string label(const std::string& key, const std::optional<std::string>& developer) {
  const std::string otherwise = developer && !developer->empty() ? *developer : key;
  return vendorName(key).value_or(otherwise) + " Group";
}

std::vector<UninstallGroup> group(const std::vector<AppRecord>& records) {
  auto groups = gathered(records);
  std::erase_if(groups, [](const UninstallGroup& each) { return each.apps.size() < 2; });
  for (UninstallGroup& each : groups) {
    each.developer = firstDeveloper(each.apps);
    each.label = label(each.key, each.developer);
  }
  std::stable_sort(groups.begin(), groups.end(), [](const UninstallGroup& a, const UninstallGroup& b) {
    return Text::localizedCaseInsensitiveCompare(a.label, b.label) < 0;
  });
  return groups;
}

std::vector<AppRecord> ungrouped(const std::vector<AppRecord>& records) {
  std::set<std::string> grouped;
  for (const UninstallGroup& each : group(records)) {
    for (const AppRecord& app : each.apps) grouped.insert(Text::canonical(app.id));
  }
  std::vector<AppRecord> others = records;
  std::erase_if(others,
                [&grouped](const AppRecord& app) { return grouped.contains(Text::canonical(app.id)); });
  return others;
}

}  // namespace quarn::AppGrouper
