#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/health/HealthSpace.h"

namespace quarn::HealthTSVRenderer {
namespace {

std::string withoutTabs(std::string text) {
  std::replace(text.begin(), text.end(), '\t', ' ');
  return text;
}

}  // namespace

void print(const HealthReport& report, bool includeAnalysis) {
  using ReportText::tabSeparated;
  Console::print(tabSeparated({"kind", "location", "target", "size_bytes", "detail"}));
  for (const HealthIssue& issue : report.issues) {
    Console::print(tabSeparated({std::string(rawValue(issue.kind)), issue.location.text(),
                                 issue.target ? issue.target->text() : "", std::to_string(issue.sizeBytes),
                                 withoutTabs(issue.detail)}));
  }
  if (!includeAnalysis) return;
  Console::print("");
  Console::print(tabSeparated({"metric", "bytes"}));
  for (const auto& [name, bytes] : HealthSpace(report).byName())
    Console::print(tabSeparated({name, std::to_string(bytes)}));
}

}  // namespace quarn::HealthTSVRenderer
