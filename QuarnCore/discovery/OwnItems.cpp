#include "QuarnCore/discovery/OwnItems.h"

namespace quarn {
namespace {

bool namesOneItem(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

}  // namespace

void OwnItems::add(const Path& folder, std::string_view name) {
  if (namesOneItem(name)) paths.push_back(folder.appending(name));
}

}  // namespace quarn
