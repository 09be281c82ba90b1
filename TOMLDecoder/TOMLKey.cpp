#include "TOMLDecoder/TOMLKey.h"

namespace toml {

std::string TOMLKey::text() const {
  if (const std::string* const key = string()) return *key;
  if (const std::size_t* const index = integer()) return std::to_string(*index);
  return "super";
}

std::string pathText(const std::vector<TOMLKey>& path) {
  std::string text;
  for (const TOMLKey& key : path) {
    if (key.integer()) {
      text += "[" + key.text() + "]";
    } else {
      text += (text.empty() ? "" : ".") + key.text();
    }
  }
  return text;
}

}  // namespace toml
