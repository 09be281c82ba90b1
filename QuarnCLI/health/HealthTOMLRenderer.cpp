#include "Platform/DateText.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCLI/report/TOMLFormatter.h"
#include "QuarnCore/health/HealthSpace.h"

namespace quarn::HealthTOMLRenderer {
namespace {

using TOMLFormatter::singleLine;

void printSummary(const HealthReport& report) {
  std::string drives;
  for (const Path& root : report.scannedDrives)
    drives += (drives.empty() ? "" : ", ") + singleLine(root.text());
  Console::print("[summary]");
  Console::print("scanned_at        = " + singleLine(DateText::iso8601(report.scannedAt)));
  Console::print("scanned_symlinks  = " + std::to_string(report.scannedSymlinks));
  Console::print("healthy           = " + std::to_string(report.healthyCount));
  Console::print("problems          = " + std::to_string(report.problems().size()));
  Console::print("scanned_drives    = [" + drives + "]");
  Console::print("");
}

void printIssue(const HealthIssue& issue) {
  Console::print("[[issue]]");
  Console::print("kind       = " + singleLine(rawValue(issue.kind)));
  Console::print("location   = " + singleLine(issue.location.text()));
  if (issue.target) Console::print("target     = " + singleLine(issue.target->text()));
  Console::print("size_bytes = " + std::to_string(issue.sizeBytes));
  Console::print("detail     = " + singleLine(issue.detail));
  Console::print("");
}

}  // namespace

void print(const HealthReport& report, bool includeAnalysis) {
  printSummary(report);
  for (const HealthIssue& issue : report.problems()) printIssue(issue);
  if (!includeAnalysis) return;
  Console::print("[totals_by_kind_bytes]");
  for (const auto& [name, bytes] : HealthSpace(report).byName())
    Console::print(name + " = " + std::to_string(bytes));
}

}  // namespace quarn::HealthTOMLRenderer
