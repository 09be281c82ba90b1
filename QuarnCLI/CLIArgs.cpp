#include "QuarnCLI/CLIArgs.h"

#include <algorithm>

namespace quarn {

bool CLIArgs::contains(std::string_view flag) const {
  return std::find(values.begin(), values.end(), flag) != values.end();
}

std::optional<std::string> CLIArgs::value(std::string_view flag) const {
  const auto found = std::find(values.begin(), values.end(), flag);
  if (found == values.end() || found + 1 == values.end()) return std::nullopt;
  return *(found + 1);
}

std::optional<std::string> CLIArgs::positional() const {
  const auto found = std::find_if(values.begin(), values.end(),
                                  [](const std::string& value) { return !value.starts_with("--"); });
  if (found == values.end()) return std::nullopt;
  return *found;
}

}  // namespace quarn
