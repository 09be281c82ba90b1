#include "QuarnCore/uninstall/HomeLibraryFiles.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "QuarnCore/discovery/SlugDataPaths.h"
#include "QuarnCore/uninstall/UsableNames.h"

namespace quarn {
namespace {

using Candidates = std::vector<UninstallCandidate>;

void append(Candidates& list, const Candidates& more) {
  list.insert(list.end(), more.begin(), more.end());
}

/// The item of a folder whose name is that of the application, with an ending.
struct NamedItem {
  const char* folder;
  const char* ending;
  UninstallCategory category;
  const char* reason;
};

/// A folder in which the items of applications have their display name or their identifier.
struct SharedFolder {
  const char* path;
  UninstallCategory category;
};

constexpr SharedFolder sharedFolders[] = {
    {"Library/Application Support", UninstallCategory::applicationSupport},
    {"Library/Caches", UninstallCategory::caches},
    {"Library/Logs", UninstallCategory::logs},
};

constexpr NamedItem preferencesFile{"Library/Preferences", ".plist", UninstallCategory::preferences,
                                    "Preferences plist"};

constexpr NamedItem identifiedItems[] = {
    {"Library/Containers", "", UninstallCategory::containers, "Matches bundle id"},
    {"Library/Group Containers", "", UninstallCategory::groupContainers, "Matches bundle id"},
    {"Library/HTTPStorages", "", UninstallCategory::httpStorages, "Matches bundle id"},
    {"Library/WebKit", "", UninstallCategory::webKit, "Matches bundle id"},
};

constexpr NamedItem savedState{"Library/Saved Application State", ".savedState",
                               UninstallCategory::savedAppState, "Saved application state"};

constexpr NamedItem launchAgent{"Library/LaunchAgents", ".plist", UninstallCategory::launchAgents,
                                "User launch agent"};

/// Finds the items of one application.
class Finder {
 public:
  Finder(const ReadOnlyPlatform& platform, const AppRecord& record)
      : platform_(platform), home_(platform.places.home()), names_(UsableNames::of(record)) {}

  Candidates hits(const SharedFolder& folder) const {
    Candidates found;
    for (const auto& name : {names_.displayName, names_.bundleIdentifier}) {
      if (name) append(found, ifExists(hit(home_.appending(folder.path).appending(*name), folder.category)));
    }
    return found;
  }

  Candidates byIdentifier(const NamedItem& rule) const {
    return byName(rule, names_.bundleIdentifier, UninstallConfidence::high);
  }

  Candidates byDisplayName(const NamedItem& rule) const {
    return byName(rule, names_.displayName, UninstallConfidence::medium);
  }

  /// The name of each goes on with the identifier of a machine.
  Candidates ofSingleMachines() const {
    if (!names_.bundleIdentifier) return {};
    const Path folder = home_.appending("Library/Preferences/ByHost");
    auto names = platform_.files.list(folder, Hidden::included).valueOr({});
    std::sort(names.begin(), names.end());
    Candidates found;
    for (const std::string& name : names) {
      if (Text::hasPrefix(name, *names_.bundleIdentifier)) {
        found.push_back(sure(folder.appending(name), UninstallCategory::preferences, "ByHost preferences"));
      }
    }
    return found;
  }

  Candidates dotfiles() const {
    Candidates found;
    if (!names_.slug) return found;
    for (const Path& path : ExistingPaths::filter(platform_, DotfileEntries::urls(home_, *names_.slug))) {
      found.push_back(sure(path, UninstallCategory::applicationSupport, "Dotfile install matching app name"));
      // What is hidden in the home folder under the name of a tool may hold what its user wants to keep.
      found.back().defaultSelected = false;
    }
    return found;
  }

  Candidates nodeCaches() const {
    Candidates found;
    if (!names_.slug) return found;
    for (const Path& path : ExistingPaths::filter(platform_, NodeCliCacheEntries::urls(home_, *names_.slug)))
      found.push_back(sure(path, UninstallCategory::caches, "Node CLI cache"));
    return found;
  }

 private:
  static UninstallCandidate sure(const Path& path, UninstallCategory category, const char* reason) {
    return {.path = path.text(),
            .category = category,
            .confidence = UninstallConfidence::high,
            .reason = reason,
            .defaultSelected = true};
  }

  /// A folder that has the name of the application may be another vendor's.
  UninstallCandidate hit(const Path& path, UninstallCategory category) const {
    const bool isIdentified =
        names_.bundleIdentifier && Text::hasSuffix(path.text(), "/" + *names_.bundleIdentifier);
    return {.path = path.text(),
            .category = category,
            .confidence = isIdentified ? UninstallConfidence::high : UninstallConfidence::medium,
            .reason = isIdentified ? "Matches bundle id" : "Matches app name",
            .defaultSelected = rowOf(category).defaultSelected};
  }

  Candidates byName(const NamedItem& rule, const std::optional<std::string>& name,
                    UninstallConfidence confidence) const {
    if (!name) return {};
    auto candidate =
        sure(home_.appending(rule.folder).appending(*name + rule.ending), rule.category, rule.reason);
    candidate.confidence = confidence;
    return ifExists(std::move(candidate));
  }

  Candidates ifExists(UninstallCandidate candidate) const {
    if (!platform_.files.exists(Path(candidate.path))) return {};
    return {std::move(candidate)};
  }

  ReadOnlyPlatform platform_;
  Path home_;
  UsableNames names_;
};

}  // namespace

std::vector<UninstallCandidate> HomeLibraryFiles::candidates(const ReadOnlyPlatform& platform,
                                                             const AppRecord& record) {
  const Finder finder(platform, record);
  // A bundle inside another program's support folder would take that folder for its own.
  const bool isSupplemental = SupplementalInstall::matches(platform.places, record);
  Candidates found;
  for (const SharedFolder& folder : sharedFolders) {
    const bool holdsOthers = isSupplemental && folder.category == UninstallCategory::applicationSupport;
    if (!holdsOthers) append(found, finder.hits(folder));
  }
  append(found, finder.byIdentifier(preferencesFile));
  append(found, finder.ofSingleMachines());
  for (const NamedItem& rule : identifiedItems) append(found, finder.byIdentifier(rule));
  append(found, finder.byDisplayName(savedState));
  append(found, finder.byIdentifier(launchAgent));
  append(found, finder.dotfiles());
  append(found, finder.nodeCaches());
  return found;
}

}  // namespace quarn
