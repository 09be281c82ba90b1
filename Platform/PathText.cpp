#include "Platform/PathText.h"

namespace quarn::PathText {

std::string expandingTilde(const Places& places, const std::string& text) {
  if (!text.starts_with('~')) return text;
  const auto slash = text.find('/');
  const auto user = text.substr(1, slash == std::string::npos ? slash : slash - 1);
  const auto home = user.empty() ? places.home() : places.home(user);
  if (!home) return text;
  // A text after the path, even only "/", follows the home folder. The root as home folder must not double
  // the slash.
  const auto rest = slash == std::string::npos ? std::string() : text.substr(slash);
  if (rest.empty() || rest == "/") return home->text();
  return (*home == Path("/") ? std::string() : home->text()) + rest;
}

Path fileURL(const Places& places, std::string_view text) {
  const Path path(text);
  return path.isAbsolute() ? path : places.currentFolder().appending(text);
}

Path linkTarget(const Path& link, std::string_view text) {
  return text.starts_with('/') ? Path(text) : link.parent().appending(text);
}

}  // namespace quarn::PathText
