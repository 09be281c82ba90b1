#include "Platform/posix/SortedNames.h"

#include <algorithm>
#include <cstring>

namespace quarn {

void SortedNames::beginLevel() {
  levels_.push_back({names_.size(), items_.size()});
}

void SortedNames::add(const FolderReader::Entry& entry) {
  items_.push_back({names_.size(), entry.kind});
  names_.append(entry.name).push_back('\0');
}

void SortedNames::sortLevel() {
  const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(levels_.back().items);
  // strcmp(3) compares bytes as unsigned ones, whatever the locale.
  std::sort(begin, items_.end(),
            [this](const Item& a, const Item& b) { return std::strcmp(nameOf(a), nameOf(b)) > 0; });
  const auto isSame = [this](const Item& a, const Item& b) { return std::strcmp(nameOf(a), nameOf(b)) == 0; };
  items_.erase(std::unique(begin, items_.end(), isSame), items_.end());
}

std::optional<FolderReader::Entry> SortedNames::take() {
  const Level level = levels_.back();
  if (items_.size() == level.items) {
    names_.resize(level.names);
    levels_.pop_back();
    return std::nullopt;
  }
  const Item item = items_.back();
  items_.pop_back();
  return FolderReader::Entry{nameOf(item), item.kind};
}

}  // namespace quarn
