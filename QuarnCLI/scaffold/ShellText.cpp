#include "QuarnCLI/scaffold/ShellText.h"

namespace quarn::ShellText {
namespace {

// What keeps its meaning between double quotes (bash(1), QUOTING). A backslash before anything else, such as
// an exclamation mark, would stay in the value; a script has no history to expand.
constexpr std::string_view special = "\\\"$`";

/// Where the last byte of a character begins one of two bytes, as in Shift JIS, it would take a backslash for
/// the second one. A quote never is one, so the string ends there and begins anew.
bool couldTakeTheNext(char last) {
  return static_cast<unsigned char>(last) >= 0x80;
}

}  // namespace

std::string quoted(std::string_view value) {
  std::string text = "\"";
  for (const char character : value) {
    if (special.find(character) != std::string_view::npos)
      text += couldTakeTheNext(text.back()) ? "\"\"\\" : "\\";
    text += character;
  }
  return text + "\"";
}

}  // namespace quarn::ShellText
