#include "QuarnCore/installer/ChangesMerger.h"

#include <algorithm>

#include "QuarnCore/installer/InstallAction.h"

namespace quarn::ChangesMerger {
namespace {

using Texts = std::vector<std::string>;

void append(Texts& texts, Texts more) {
  for (std::string& text : more) texts.push_back(std::move(text));
}

}  // namespace

Texts merge(const FileSnapshot& before, const FileSnapshot& after, const Texts& actions,
            const Texts& livePaths) {
  Texts paths;
  for (const std::string& action : actions) append(paths, InstallAction::installedPaths(action));
  if (std::any_of(actions.begin(), actions.end(), InstallAction::isInstalledPackage)) {
    append(paths, Snapshotter::added(before, after));
    append(paths, livePaths);
  }
  std::sort(paths.begin(), paths.end());
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  return paths;
}

}  // namespace quarn::ChangesMerger
