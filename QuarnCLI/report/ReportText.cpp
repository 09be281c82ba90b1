#include "QuarnCLI/report/ReportText.h"

namespace quarn::ReportText {

std::string join(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string text;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) text += separator;
    text += pieces[i];
  }
  return text;
}

std::string word(bool flag) {
  return flag ? "true" : "false";
}

std::string joined(const std::vector<std::string>& lines) {
  return join(lines, "\n") + "\n";
}

std::string joinedOrNothing(const std::vector<std::string>& lines) {
  return lines.empty() ? "" : joined(lines);
}

std::string tabSeparated(const std::vector<std::string>& fields) {
  return join(fields, "\t");
}

}  // namespace quarn::ReportText
