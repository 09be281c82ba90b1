#include "QuarnCLI/report/TOMLFormatter.h"

namespace quarn::TOMLFormatter {

std::string q(std::string_view text) {
  std::string quoted = "\"";
  for (const char byte : text) {
    if (byte == '\\' || byte == '"') quoted += '\\';
    quoted += byte;
  }
  return quoted + "\"";
}

std::string singleLine(std::string_view text) {
  std::string quoted;
  for (const char byte : q(text)) {
    if (byte == '\n') {
      quoted += "\\n";
    } else {
      quoted += byte;
    }
  }
  return quoted;
}

std::string keyed(std::string_view key, const std::string& text) {
  return std::string(key) + " = " + q(text);
}

std::string keyed(std::string_view key, std::int64_t number) {
  return std::string(key) + " = " + std::to_string(number);
}

std::string array(std::string_view key, const std::vector<std::string>& values) {
  std::string line = std::string(key) + " = [";
  for (std::size_t i = 0; i < values.size(); ++i) line += (i > 0 ? ", " : "") + q(values[i]);
  return line + "]";
}

}  // namespace quarn::TOMLFormatter
