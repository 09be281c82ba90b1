#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarn {

/// The arguments behind a command's own word. Flags are matched exactly, anywhere among them; unknown
/// and repeated ones don't matter.
struct CLIArgs {
  std::vector<std::string> values;

  bool contains(std::string_view flag) const;
  /// What follows the first occurrence of `flag`; absent if there is none or it is the last.
  std::optional<std::string> value(std::string_view flag) const;
  /// The first that doesn't begin with "--". It doesn't know which flags take a value, so it has to
  /// stand before these.
  std::optional<std::string> positional() const;
};

}  // namespace quarn
