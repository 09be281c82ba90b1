#include "Platform/posix/ResolvedPath.h"

#include <cstdlib>
#include <memory>
#include <string>

namespace quarn {
namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

}  // namespace

std::optional<Path> resolved(const Path& path) {
  if (path.holdsNul()) return std::nullopt;
  const std::unique_ptr<char, Free> text(::realpath(path.text().c_str(), nullptr));
  if (!text) return std::nullopt;
  return Path(text.get());
}

bool goesUp(const Path& path) {
  return ("/" + path.text() + "/").find("/../") != std::string::npos;
}

Path withParentResolved(const Path& path) {
  const auto parent = resolved(path.parent());
  return parent && *parent != path ? parent->appending(path.lastComponent()) : path;
}

}  // namespace quarn
