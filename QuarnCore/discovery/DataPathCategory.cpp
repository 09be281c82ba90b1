#include "QuarnCore/discovery/DataPathCategory.h"

#include <array>

#include "Platform/Text.h"

namespace quarn {
namespace DataPathCategories {
namespace {

struct Mark {
  std::string_view part;
  DataPathCategory category;
};

/// The first of these that occurs anywhere in the path decides.
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

}  // namespace

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
