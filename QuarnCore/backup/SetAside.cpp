#include "QuarnCore/backup/SetAside.h"

namespace quarn {
namespace {

bool isBelow(const Path& item, const Path& folder) {
  return item.text().starts_with(folder.text() + "/");
}

Path follow(const Path& item, const Path& from, const Path& to) {
  return isBelow(item, from) ? to.appending(item.text().substr(from.text().size() + 1)) : item;
}

}  // namespace

void SetAside::add(const Path& place, const Path& now) {
  for (Item& item : items_) {
    // Where in the Trash the folder around it is, nobody knows.
    if (now.text().empty() && isBelow(item.now, place)) item.now = now;
  }
  if (!now.text().empty()) moved(place, now);
  items_.push_back({place, now});
}

void SetAside::moved(const Path& from, const Path& to) {
  for (Item& item : items_) item = {follow(item.place, from, to), follow(item.now, from, to)};
}

std::vector<std::string> SetAside::sentences() const {
  std::vector<std::string> sentences;
  for (const Item& item : items_) {
    const std::string where = item.now.text().empty() ? "the Trash" : item.now.text();
    sentences.push_back("“" + item.place.text() +
                        "” had to make room for an item of the same name, and is in " + where + " now.");
  }
  return sentences;
}

}  // namespace quarn
