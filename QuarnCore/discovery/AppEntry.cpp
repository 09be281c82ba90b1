#include "QuarnCore/discovery/AppEntry.h"

#include <algorithm>
#include <map>

namespace quarn {

RiskLevel AppEntry::riskLevel() const {
  if (hasSystemExtension) return RiskLevel::high;
  return isMacAppStore || hasLoginItems ? RiskLevel::medium : RiskLevel::low;
}

std::vector<std::string> AppEntry::warnings() const {
  std::vector<std::string> sentences;
  if (isMacAppStore) sentences.emplace_back("Mac App Store app — moving may break the receipt");
  if (hasSystemExtension) sentences.emplace_back("Has a system extension — do not move");
  if (hasLoginItems) sentences.emplace_back("Registers a login item / helper");
  if (isAlreadySymlinked) sentences.emplace_back("Already a symlink (previously moved)");
  return sentences;
}

std::optional<std::int64_t> AppEntry::sizeOfDataPath(std::size_t number) const {
  // The entry may have been changed since it was measured.
  if (number >= dataPathSizes.size() || dataPathSizes[number].url != dataPaths[number]) return std::nullopt;
  return dataPathSizes[number].size;
}

std::optional<DataPathSize> AppEntry::dominantDataPath() const {
  const auto largest = std::max_element(dataPathSizes.begin(), dataPathSizes.end(),
                                        [](const auto& a, const auto& b) { return a.size < b.size; });
  if (largest == dataPathSizes.end()) return std::nullopt;
  return *largest;
}

std::vector<CategorizedPaths> AppEntry::categorizedPaths() const {
  std::map<int, CategorizedPaths> groups;
  for (const DataPathSize& item : dataPathSizes) {
    const DataPathCategory category = DataPathCategories::classify(item.url);
    CategorizedPaths& group = groups[DataPathCategories::displayOrder(category)];
    group.category = category;
    group.items.push_back(item);
  }
  std::vector<CategorizedPaths> sorted;
  for (auto& [order, group] : groups) {
    std::stable_sort(group.items.begin(), group.items.end(),
                     [](const auto& a, const auto& b) { return a.size > b.size; });
    sorted.push_back(std::move(group));
  }
  return sorted;
}

AppEntry AppEntry::withDisplayName(std::string displayName) const {
  AppEntry copy = *this;
  copy.name = std::move(displayName);
  return copy;
}

}  // namespace quarn
