#include "tests/cli/Campaign.h"

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/CampaignScene.h"

namespace campaign {

using fault::app;
using fault::moved;

Trial::Trial(const Command& command) : command_(command) {
  setScene(command);
  lookAgain();
  original_ = found_;
  if (command.way == Way::launcher) launcher_ = scene::tree(app);
  for (const std::string& path : everything()) {
    if (!isAllowed(path)) foreign_[path] = facts(path);
  }
}

void Trial::lookAgain() {
  for (const Item& item : command_.items)
    found_[item.source] = scene::tree(isHomecoming(command_.way) ? item.destination : item.source);
}

std::string Trial::problems(const Outcome& outcome) {
  wasBlind_ = wasBlind_ || outcome.wasBlind;
  return itemProblems() + launcherProblems() + foreignProblems() + wordProblems(outcome) +
         statusProblems(outcome) + manifestProblems() + ledgerProblems();
}

std::string Trial::problemsOfNextRun() {
  lookAgain();
  const std::string expected = expectedOfNextRun();
  const auto run = scene::quarn(command_.arguments);
  const std::string all = problems({run.status, run.out + run.err});
  std::string missing;
  for (const std::string& line : linesOf(expected)) {
    if (!says(run.out + run.err, line)) missing += "the next run doesn't say: " + line + "\n";
  }
  return all.empty() && missing.empty() ? "" : all + missing + "it said:\n" + run.out + run.err;
}

bool Trial::isDone(const Item& item) const {
  if (isHomecoming(command_.way)) return isWhole(item, item.source);
  if (scene::target(item.source) != item.destination) return false;
  return isWhole(item, item.destination) || scene::tree(item.destination) == found_.at(item.source);
}

std::string Trial::expectedOfNextRun() const {
  const Item& first = command_.items[0];
  if (command_.way == Way::path) {
    if (scene::isLink(first.source)) return "already symlink: " + first.source + " -> " + first.destination;
    return scene::exists(first.source) ? "linked: " + first.source : "Source path does not exist: ";
  }
  if (isHomecoming(command_.way)) {
    const bool canCome =
        scene::isLink(app) || (command_.way == Way::launcher && scene::tree(app) == launcher_);
    if (!canCome || !scene::exists(moved)) return "error\t";
    return (command_.name == "back" ? "moved back: " : "restored: ") + app;
  }
  std::string lines;
  for (const Item& item : command_.items) {
    // The data of an application is found through it.
    const bool isFound = item.source != data || scene::isLink(app) || isWhole(command_.items[0], app);
    if (!isFound || scene::isLink(item.source) || !scene::exists(item.source)) continue;
    lines += scene::exists(item.destination) ? "    FAIL: Destination already exists.\n"
                                             : "s -> " + item.destination + "\n";
  }
  return lines;
}

}  // namespace campaign
