#pragma once

#include <string>
#include <string_view>

namespace quarn::ShellText {

/// Returns a value as a shell's double-quoted string, with the quotes: whatever it holds stands for itself,
/// and nothing in it is expanded or run.
std::string quoted(std::string_view value);

}  // namespace quarn::ShellText
