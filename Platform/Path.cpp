#include "Platform/Path.h"

#include <vector>

namespace quarn {

namespace {

// Characters that can't occur in an extension: the space, and the controls that change the direction of text
// (Unicode Standard Annex 9). An ending that contains one is treated as part of the name.
constexpr std::string_view foreignToExtensions[] = {
    " ",      "\u061C", "\u200E", "\u200F", "\u202A", "\u202B", "\u202C",
    "\u202D", "\u202E", "\u2066", "\u2067", "\u2068", "\u2069",
};

bool canBeExtension(std::string_view ending) {
  if (ending.empty()) return false;
  for (const auto foreign : foreignToExtensions) {
    if (ending.find(foreign) != std::string_view::npos) return false;
  }
  return true;
}

/// Returns the position of the dot before the extension, or npos if the name has no extension.
std::size_t extensionDot(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || !canBeExtension(name.substr(dot + 1))) return std::string_view::npos;
  // In ".hidden" and "..rc" the dots mark a hidden name, not an extension.
  const bool onlyDotsBefore = name.find_first_not_of('.') > dot;
  return onlyDotsBefore ? std::string_view::npos : dot;
}

std::vector<std::string_view> components(std::string_view text) {
  std::vector<std::string_view> found;
  while (!text.empty()) {
    const auto slash = text.find('/');
    const auto component = text.substr(0, slash);
    if (!component.empty()) found.push_back(component);
    text = slash == std::string_view::npos ? std::string_view() : text.substr(slash + 1);
  }
  return found;
}

}  // namespace

Path::Path(std::string_view text) {
  while (text.size() > 1 && text.back() == '/') text.remove_suffix(1);
  text_ = text;
}

std::string Path::lastComponent() const {
  return text_ == "/" ? text_ : text_.substr(text_.rfind('/') + 1);
}

Path Path::parent() const {
  const auto slash = text_.rfind('/');
  if (slash == std::string::npos) return {};
  return Path(std::string_view(text_).substr(0, slash == 0 ? 1 : slash));
}

std::string Path::extension() const {
  const auto name = lastComponent();
  const auto dot = extensionDot(name);
  return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string Path::nameWithoutExtension() const {
  const auto name = lastComponent();
  return name.substr(0, extensionDot(name));
}

Path Path::appending(std::string_view components) const {
  const std::size_t least = text_.empty() ? 1 : 0;  // "/" appended to an empty path is the root
  while (components.size() > least && components.back() == '/') components.remove_suffix(1);
  if (text_ == "/" && components.starts_with('/')) components.remove_prefix(1);
  Path whole;
  whole.text_.reserve(text_.size() + 1 + components.size());
  whole.text_ = text_;
  whole.add(components);
  return whole;
}

Path Path::simplified() const {
  std::vector<std::string_view> kept;
  for (const auto component : components(text_)) {
    if (component == ".") continue;
    const bool climbs = component == "..";
    // A relative path keeps leading ".." components. In an absolute one they vanish at the root.
    if (climbs && !kept.empty() && kept.back() != "..") {
      kept.pop_back();
    } else if (!climbs || !isAbsolute()) {
      kept.push_back(component);
    }
  }
  Path result;
  result.text_.reserve(text_.size());
  if (isAbsolute()) result.text_ = "/";
  for (const auto component : kept) result.add(component);
  return result;
}

void Path::add(std::string_view components) {
  const bool needsSlash = !text_.empty() && text_.back() != '/' && !components.starts_with('/');
  if (needsSlash && !components.empty()) text_ += '/';
  text_ += components;
}

}  // namespace quarn
