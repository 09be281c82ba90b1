#include "QuarnCore/health/HealthRepairTrash.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/health/HealthRepairGuard.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {
HealthRepairTrash::HealthRepairTrash(Platform& platform, const HealthReport& report,
                                     std::function<void(const std::string& line)> say)
    : platform_(platform), say_(std::move(say)) {
  for (const HealthIssue& issue : report.problems()) {
    for (const Path& item : {issue.location, issue.target.value_or(issue.location)}) {
      if (const auto attributes = platform.files.attributes(item))
        found_.emplace(item.text(), attributes->identity);
    }
  }
}

void HealthRepairTrash::requireFound(const Path& item) const {
  const auto attributes = platform_.files.attributes(item);
  // The Trash tells what is missing.
  if (!attributes && !CocoaError::saysMissing(attributes.error())) throw attributes.error();
  const auto known = found_.find(item.text());
  if (attributes && (known == found_.end() || known->second != attributes->identity))
    throw MoveRefused("“" + item.lastComponent() + "” isn’t the item that was found.");
}

bool HealthRepairTrash::trash(const Path& item) const {
  try {
    HealthRepairGuard::requireTrashable(platform_, item);
    requireFound(item);
    platform_.trash.moveToTrash(item).orThrow();
    return true;
  } catch (const LocalizedError& error) {
    say_("  WARN: could not trash " + item.text() + ": " + error.localizedDescription());
    return false;
  }
}

}  // namespace quarn
