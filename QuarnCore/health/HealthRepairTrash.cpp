#include "QuarnCore/health/HealthRepairTrash.h"

#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {
namespace {

Result<void> refused(const std::string& sentence) {
  return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileWriteUnknown, sentence);
}

}  // namespace

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

Result<void> HealthRepairTrash::refusal(const Path& item) const {
  if (ProtectedPlaces(platform_).isOneOrAroundOne(sight(platform_.files, item)))
    return refused("“" + item.lastComponent() + "” belongs where it is.");
  const auto attributes = platform_.files.attributes(item);
  const auto known = found_.find(item.text());
  if (attributes && (known == found_.end() || known->second != attributes->identity))
    return refused("“" + item.lastComponent() + "” isn’t the item that was found.");
  return {};
}

void HealthRepairTrash::trash(const Path& item) const {
  if (const auto allowed = refusal(item); !allowed) {
    say_("  WARN: could not trash " + item.text() + ": " + allowed.error().description);
    return;
  }
  if (const auto moved = platform_.trash.moveToTrash(item); !moved)
    say_("  WARN: could not trash " + item.text() + ": " + moved.error().description);
}

}  // namespace quarn
