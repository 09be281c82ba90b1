#include "tests/cli/CampaignLooks.h"

// Whether a run said what is so.

namespace campaign {

std::string Trial::wordProblems(const Outcome& outcome) const {
  std::string problems;
  for (const Item& item : command_.items) {
    const bool wasClaimed = says(outcome.said, "s -> " + item.destination + "\n") ||
                            says(outcome.said, "linked: " + item.source + " -> ") ||
                            says(outcome.said, "moved back: " + item.source) ||
                            says(outcome.said, "restored: " + item.source);
    if (wasClaimed && !isDone(item)) problems += "UNTRUE: " + item.source + " is not done\n";
  }
  const auto done = count(outcome.said, "    ok in "), failed = count(outcome.said, "    FAIL: ");
  if (says(outcome.said, "moved:  ") && !says(outcome.said, "moved:  " + std::to_string(done) + " / "))
    problems += "UNTRUE: the number of what was moved\n";
  if (count(outcome.said, "failed: ") > 0 &&
      !says(outcome.said, "\nfailed: " + std::to_string(failed) + "\n"))
    problems += "UNTRUE: the number of what failed\n";
  return problems;
}

std::string Trial::statusProblems(const Outcome& outcome) const {
  if (outcome.wasEnded) return "";
  const std::string& said = outcome.said;
  const bool hasError = count(said, "error\t") > 0;
  int expected = hasError ? 1 : 0;
  if (command_.name == "next" && says(said, "    FAIL: ")) expected = 1;
  if (command_.name == "next" && says(said, "nothing eligible to move.")) expected = 2;
  std::string problems;
  if (outcome.status != expected)
    problems += "STATUS " + std::to_string(outcome.status) + ", not " + std::to_string(expected) + "\n";
  const bool isDoneOrRefused = hasError || says(said, "linked: ") || says(said, "already symlink: ") ||
                               says(said, "moved back: ") || says(said, "restored: ");
  if (command_.way != Way::out && !isDoneOrRefused) problems += "SAID neither that it was done nor why not\n";
  return problems;
}

}  // namespace campaign
