#include "QuarnCore/dedupe/AppDedupeService.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "Platform/Text.h"
#include "QuarnCore/dedupe/AppDedupeRules.h"
#include "QuarnCore/dedupe/AppDedupeTrash.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn::AppDedupeService {
namespace {

using Items = std::vector<AppDedupeItem>;
using ItemsByPath = std::map<std::string, AppDedupeItem>;

ItemsByPath discoverItems(const ReadOnlyPlatform& platform, const std::vector<Path>& roots) {
  ItemsByPath items;
  for (const Path& root : roots) {
    if (!platform.files.exists(root)) continue;
    std::vector<Path> bundles;
    AppBundleEnumerator::walk(platform, root, 0, AppBundleEnumerator::defaultMaxDepth, bundles);
    for (const Path& bundle : bundles) {
      auto item = AppDedupeRules::describe(platform, bundle);
      if (!item) continue;
      item->sizeBytes = SizeCalculator::size(platform, bundle);
      items.insert_or_assign(bundle.text(), *std::move(item));
    }
  }
  return items;
}

void sortByPath(Items& items) {
  std::stable_sort(items.begin(), items.end(), [](const AppDedupeItem& a, const AppDedupeItem& b) {
    return Text::precedes(a.path, b.path);
  });
}

/// Items of one identifier, in the order of their paths.
std::map<std::string, Items> itemsByIdentifier(const ReadOnlyPlatform& platform,
                                               const std::vector<Path>& roots) {
  std::map<std::string, Items> groups;
  for (auto& [path, item] : discoverItems(platform, roots))
    groups[Text::canonical(item.effectiveBundleIdentifier)].push_back(std::move(item));
  for (auto& [identifier, items] : groups) sortByPath(items);
  return groups;
}

std::optional<AppDedupeGroup> groupOf(const ReadOnlyPlatform& platform, const Items& items) {
  if (items.size() < 2) return std::nullopt;
  const auto lower = [](const AppDedupeItem& a, const AppDedupeItem& b) {
    return AppDedupeRules::score(a) < AppDedupeRules::score(b);
  };
  const AppDedupeItem& keep = *std::max_element(items.begin(), items.end(), lower);
  AppDedupeGroup group{
      .bundleIdentifier = keep.effectiveBundleIdentifier,
      .displayName = keep.displayName,
      .keep = keep,
      .items = items,
      .reason = "Top-level launcher duplicates a real local app with the same bundle identifier."};
  std::copy_if(items.begin(), items.end(), std::back_inserter(group.remove),
               [&](const AppDedupeItem& item) { return AppDedupeRules::isDuplicate(platform, item, keep); });
  if (group.remove.empty()) return std::nullopt;
  return group;
}

AppDedupePlan givenOrNew(const ReadOnlyPlatform& platform, const std::optional<AppDedupePlan>& given) {
  return given ? *given : plan(platform, applicationRoots(platform));
}

}  // namespace

std::vector<Path> applicationRoots(const ReadOnlyPlatform& platform) {
  return {Path("/Applications"), platform.places.home().appending("Applications")};
}

AppDedupePlan plan(const ReadOnlyPlatform& platform, const std::vector<Path>& applicationRoots) {
  AppDedupePlan plan;
  for (const auto& [identifier, items] : itemsByIdentifier(platform, applicationRoots)) {
    if (auto group = groupOf(platform, items)) plan.groups.push_back(*std::move(group));
  }
  std::stable_sort(plan.groups.begin(), plan.groups.end(),
                   [](const AppDedupeGroup& a, const AppDedupeGroup& b) {
                     return Text::precedes(a.displayName, b.displayName);
                   });
  plan.scannedAt = platform.clock.now();
  return plan;
}

AppDedupeRunResult rehearse(const ReadOnlyPlatform& platform, const std::optional<AppDedupePlan>& plan) {
  AppDedupeRunResult result{.plan = givenOrNew(platform, plan), .dryRun = true};
  for (const AppDedupeItem& item : result.plan.removableItems()) {
    result.movedItems.push_back(item.removal());
    result.movedItems.back().succeeded = true;
  }
  return result;
}

AppDedupeRunResult run(Platform& platform, const std::optional<AppDedupePlan>& plan) {
  AppDedupeRunResult result{.plan = givenOrNew(platform, plan), .dryRun = false};
  AppDedupeTrash trash(platform, result.plan);
  for (const AppDedupeGroup& group : result.plan.groups) {
    for (const AppDedupeItem& item : group.remove) result.movedItems.push_back(trash.take(item, group.keep));
  }
  return result;
}

}  // namespace quarn::AppDedupeService
