#include <cstdlib>

#include "Platform/posix/PosixPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

Path PosixPlaces::currentFolder() const {
  return quarn::currentFolder();
}

std::optional<std::string> PosixPlaces::environment(const std::string& name) const {
  const char* value = std::getenv(name.c_str());
  if (!value) return std::nullopt;
  return value;
}

}  // namespace quarn
