#include "QuarnCore/discovery/DataPathCategory.h"

#include <array>

#include "Platform/Text.h"

namespace quarn {
namespace DataPathCategories {
namespace {

struct Row {
  DataPathCategory category;
  std::string_view label;
  int displayOrder;
};

constexpr std::array rows = {
    Row{DataPathCategory::applicationSupport, "Application Support", 0},
    Row{DataPathCategory::caches, "Caches", 3},
    Row{DataPathCategory::preferences, "Preferences", 7},
    Row{DataPathCategory::logs, "Logs", 8},
    Row{DataPathCategory::httpStorages, "HTTPStorages", 4},
    Row{DataPathCategory::savedState, "Saved State", 6},
    Row{DataPathCategory::containers, "Containers", 1},
    Row{DataPathCategory::groupContainers, "Group Containers", 2},
    Row{DataPathCategory::applicationScripts, "Application Scripts", 10},
    Row{DataPathCategory::launchAgents, "Launch Agents", 11},
    Row{DataPathCategory::launchDaemons, "Launch Daemons", 12},
    Row{DataPathCategory::webKit, "WebKit", 5},
    Row{DataPathCategory::cookies, "Cookies", 9},
    Row{DataPathCategory::dockIcon, "Dock Icon", 13},
    Row{DataPathCategory::other, "Other", 99},
};

struct Mark {
  std::string_view part;
  DataPathCategory category;
};

/// The first of the list that occurs anywhere in the path decides.
constexpr std::array marks = {
    Mark{"/Library/Application Support", DataPathCategory::applicationSupport},
    Mark{"/Library/Group Containers", DataPathCategory::groupContainers},
    Mark{"/Library/Containers", DataPathCategory::containers},
    Mark{"/Library/Application Scripts", DataPathCategory::applicationScripts},
    Mark{"/Library/HTTPStorages", DataPathCategory::httpStorages},
    Mark{"/Library/WebKit", DataPathCategory::webKit},
    Mark{"/Library/Saved Application State", DataPathCategory::savedState},
    Mark{"/Library/Caches", DataPathCategory::caches},
    Mark{"/Library/Logs", DataPathCategory::logs},
    Mark{"/Library/Cookies", DataPathCategory::cookies},
    Mark{"/Library/Preferences", DataPathCategory::preferences},
    Mark{"/Library/LaunchAgents", DataPathCategory::launchAgents},
    Mark{"/Library/LaunchDaemons", DataPathCategory::launchDaemons},
};

const Row& rowOf(DataPathCategory category) {
  for (const Row& row : rows) {
    if (row.category == category) return row;
  }
  return rows.back();
}

}  // namespace

const std::vector<DataPathCategory>& allCases() {
  static const std::vector<DataPathCategory> cases = [] {
    std::vector<DataPathCategory> all;
    for (const Row& row : rows) all.push_back(row.category);
    return all;
  }();
  return cases;
}

std::string_view label(DataPathCategory category) {
  return rowOf(category).label;
}

int displayOrder(DataPathCategory category) {
  return rowOf(category).displayOrder;
}

DataPathCategory classify(const Path& path) {
  for (const Mark& mark : marks) {
    if (path.text().find(mark.part) != std::string::npos) return mark.category;
  }
  return Text::hasSuffix(path.text(), ".app") ? DataPathCategory::dockIcon : DataPathCategory::other;
}

}  // namespace DataPathCategories

std::int64_t CategorizedPaths::total() const {
  std::int64_t sum = 0;
  for (const DataPathSize& item : items) sum += item.size;
  return sum;
}

std::string CategorizedPaths::fileFolderSummary() const {
  return std::to_string(items.size()) + (items.size() == 1 ? " item" : " items");
}

}  // namespace quarn
