#include "QuarnCore/dedupe/AppDedupePlan.h"

namespace quarn {

AppUninstallSession::MovedItem AppDedupeItem::removal() const {
  AppUninstallSession::MovedItem removal;
  removal.originalPath = path;
  removal.category = UninstallCategory::executable;
  removal.sizeBytes = sizeBytes;
  return removal;
}

std::vector<AppDedupeItem> AppDedupePlan::removableItems() const {
  std::vector<AppDedupeItem> items;
  for (const AppDedupeGroup& group : groups)
    items.insert(items.end(), group.remove.begin(), group.remove.end());
  return items;
}

std::int64_t AppDedupePlan::removableBytes() const {
  std::int64_t bytes = 0;
  for (const AppDedupeItem& item : removableItems()) bytes += item.sizeBytes;
  return bytes;
}

}  // namespace quarn
