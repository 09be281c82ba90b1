#include "QuarnCore/dedupe/AppDedupeTrash.h"

#include "Platform/LocalizedError.h"
#include "QuarnCore/dedupe/AppDedupeGuard.h"

namespace quarn {

AppDedupeTrash::AppDedupeTrash(Platform& platform, const AppDedupePlan& plan) : platform_(platform) {
  for (const AppDedupeItem& item : plan.removableItems()) unseen_.push_back(item.path);
  look();
}

void AppDedupeTrash::look() {
  std::erase_if(unseen_, [this](const std::string& path) {
    const auto identity = identityAt(path);
    return identity && found_.emplace(path, *identity).second;
  });
}

std::optional<AppDedupeTrash::Identity> AppDedupeTrash::identityAt(const std::string& path) const {
  const auto attributes = platform_.files.attributes(Path(path));
  if (!attributes) return std::nullopt;
  return Identity{attributes->identity.device, attributes->identity.inode};
}

const AppUninstallSession::MovedItem* AppDedupeTrash::outcomeByAnotherPath(const std::string& path) const {
  const auto found = found_.find(path);
  if (found == found_.end()) return nullptr;
  const auto outcome = outcomes_.find(found->second);
  if (outcome == outcomes_.end()) return nullptr;
  // A mount can show the bundle under a second name, too, and there it can stay when the first one went.
  const bool isLeft = identityAt(path).has_value();
  return outcome->second.succeeded == isLeft ? nullptr : &outcome->second;
}

void AppDedupeTrash::moveToTrash(const AppDedupeItem& item, const AppDedupeItem& keep,
                                 MovedItem& outcome) const {
  try {
    AppDedupeGuard::requireRemovable(platform_, item, keep);
    const Path inTrash = platform_.trash.moveToTrash(Path(item.path)).orThrow();
    // The system needn't say where.
    if (!inTrash.text().empty()) outcome.trashedTo = inTrash.text();
    outcome.succeeded = true;
  } catch (const LocalizedError& error) {
    outcome.error = error.localizedDescription();
  }
}

AppUninstallSession::MovedItem AppDedupeTrash::take(const AppDedupeItem& item, const AppDedupeItem& keep) {
  look();
  MovedItem outcome = item.removal();
  if (const MovedItem* earlier = outcomeByAnotherPath(item.path)) {
    outcome.trashedTo = earlier->trashedTo;
    outcome.succeeded = earlier->succeeded;
    outcome.error = earlier->error;
    return outcome;
  }
  moveToTrash(item, keep, outcome);
  if (const auto found = found_.find(item.path); found != found_.end())
    outcomes_.insert_or_assign(found->second, outcome);
  return outcome;
}

}  // namespace quarn
