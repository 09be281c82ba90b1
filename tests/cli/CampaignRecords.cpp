#include <algorithm>
#include <filesystem>

#include "Platform/Json.h"
#include "tests/cli/CampaignScene.h"

// Whether the records tell what is.

namespace campaign {

namespace fs = std::filesystem;

std::string Trial::manifestProblems() const {
  if (!scene::exists(scene::manifest)) return "RECORD gone\n";
  const auto json = quarn::Json::parse(scene::read(scene::manifest));
  if (!json || !json->array()) return "RECORD doesn't parse\n";
  const auto names = [&](const std::string& source) {
    return std::any_of(json->array()->begin(), json->array()->end(), [&](const quarn::Json& entry) {
      const quarn::Json* path = entry.member("sourcePath");
      return path && path->text() && *path->text() == source;
    });
  };
  std::string problems;
  if (!wasBlind_ && !names("/Applications/Bar.app")) problems += "RECORD of Bar is gone\n";
  for (const Item& item : command_.items) {
    const bool isNamed = names(item.source);
    if (command_.way == Way::out && isNamed && scene::target(item.source) != item.destination)
      problems += "RECORD of what isn't: " + item.source + "\n";
    if (!wasBlind_ && isHomecoming(command_.way) && !isNamed && !isDone(item))
      problems += "RECORD lacks what is: " + item.source + "\n";
  }
  return problems;
}

std::string Trial::ledgerProblems() const {
  if (scene::sql("PRAGMA integrity_check") != Lines{"ok"}) return "LEDGER is corrupt\n";
  if (scene::sql("SELECT notes FROM installs WHERE app_name='Bar.app' AND uninstalled_at IS NULL") !=
      Lines{"of Bar"})
    return "LEDGER: the row of Bar changed\n";
  std::string problems;
  for (const Item& item : command_.items) {
    const std::string name = fs::path(item.source).filename();
    const bool isOpen =
        !scene::sql("SELECT 1 FROM installs WHERE app_name='" + name + "' AND uninstalled_at IS NULL")
             .empty();
    if (command_.way == Way::out && isOpen && scene::target(item.source) != item.destination)
      problems += "LEDGER has a row of what isn't: " + item.source + "\n";
    if (isHomecoming(command_.way) && !isOpen && !isDone(item))
      problems += "LEDGER closed the row of what isn't home: " + item.source + "\n";
  }
  return problems;
}

}  // namespace campaign
