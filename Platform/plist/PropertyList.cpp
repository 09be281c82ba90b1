#include "Platform/PropertyList.h"

#include "Platform/plist/Formats.h"
#include "Platform/plist/XMLEncoding.h"

namespace quarn::PropertyList {

std::optional<Value> parse(std::string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  if (bytes.starts_with(BinaryPropertyList::signature)) return BinaryPropertyList::parse(bytes);
  const auto text = XMLEncoding::decoded(bytes);
  if (!text) return std::nullopt;
  // A file of white space only is an empty dictionary to a Mac.
  if (text->find_first_not_of(" \t\n\v\f\r") == std::string::npos) return Value{Dictionary()};
  return XMLPropertyList::parse(*text);
}

std::optional<std::map<std::string, std::string>> texts(std::string_view bytes) {
  auto root = parse(bytes);
  auto* dictionary = root ? std::get_if<Dictionary>(&root->content) : nullptr;
  if (!dictionary) return std::nullopt;
  std::map<std::string, std::string> found;
  for (auto& [key, value] : *dictionary) {
    if (auto* text = std::get_if<std::string>(&value.content)) found.emplace(key, std::move(*text));
  }
  return found;
}

}  // namespace quarn::PropertyList
