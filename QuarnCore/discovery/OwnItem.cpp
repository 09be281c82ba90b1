#include "QuarnCore/discovery/OwnItem.h"

namespace quarn::OwnItems {
namespace {

bool namesOneItem(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

}  // namespace

std::vector<Path> paths(const std::vector<OwnItem>& items) {
  std::vector<Path> usable;
  for (const OwnItem& item : items) {
    if (namesOneItem(item.name)) usable.push_back(item.folder.appending(item.name));
  }
  return usable;
}

}  // namespace quarn::OwnItems
