#include "QuarnCLI/health/HealthRepairPrompt.h"

#include "Platform/Text.h"
#include "QuarnCLI/Console.h"

namespace quarn {

void HealthRepairPrompt::describe(const HealthIssue& issue, const std::string& action) const {
  Console::print("• [" + std::string(rawValue(issue.kind)) + "] " + issue.location.lastComponent() + " — " +
                 action);
  if (!issue.detail.empty()) Console::print("    " + issue.detail);
}

bool HealthRepairPrompt::shouldProceed() const {
  if (args.dryRun) {
    Console::print("  (dry-run, skipping)");
    return false;
  }
  return args.yes || Text::lowercased(Console::answer("  Proceed? [y/N] ")).starts_with("y");
}

HealthRepairDialog HealthRepairPrompt::dialog() const {
  return {
      .describe = [this](const HealthIssue& issue, const std::string& action) { describe(issue, action); },
      .shouldProceed = [this] { return shouldProceed(); },
      .say = [](const std::string& line) { Console::printNow(line); }};
}

}  // namespace quarn
