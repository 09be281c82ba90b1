#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/health/HealthSpace.h"

namespace quarn::HealthHumanRenderer {
namespace {

using Kind = HealthIssue::Kind;

/// The sections, in their order.
constexpr Kind sections[] = {Kind::dangling,
                             Kind::empty,
                             Kind::corrupted,
                             Kind::brokenLauncher,
                             Kind::signatureBroken,
                             Kind::unsafePrefsPlist,
                             Kind::reverted,
                             Kind::orphan,
                             Kind::missingTrackedFiles,
                             Kind::missingSpotlightLaunchers};

std::string inUpperCase(std::string_view ascii) {
  std::string text(ascii);
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char letter) { return letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter; });
  return text;
}

void printIssue(const HealthIssue& issue) {
  const std::string size =
      issue.sizeBytes >= 1 ? "  [" + SizeCalculator::format(issue.sizeBytes) + "]" : std::string();
  Console::print("  " + issue.location.text() + size);
  if (issue.target) Console::print("    → " + issue.target->text());
  if (!issue.detail.empty()) Console::print("    " + issue.detail);
}

/// A text of exactly ten characters. Byte counts are ASCII, so bytes are characters.
std::string inTenColumns(std::string text) {
  text.resize(10, ' ');
  return text;
}

}  // namespace

void printSummary(const HealthReport& report) {
  Console::print("Scanned " + std::to_string(report.scannedSymlinks) + " symlinked apps across " +
                 std::to_string(report.scannedDrives.size()) + " external root(s).");
  Console::print("Healthy: " + std::to_string(report.healthyCount) +
                 "   Problems: " + std::to_string(report.problems().size()));
  if (!report.scannedDrives.empty()) Console::print("External roots:");
  for (const Path& root : report.scannedDrives) Console::print("  • " + root.text());
  Console::print("");
}

void printIssues(const HealthReport& report) {
  const auto groups = report.grouped();
  for (const Kind kind : sections) {
    const auto group = groups.find(kind);
    if (group == groups.end()) continue;
    Console::print("== " + inUpperCase(rawValue(kind)) + " (" + std::to_string(group->second.size()) +
                   ") ==");
    for (const HealthIssue& issue : group->second) printIssue(issue);
    Console::print("");
  }
}

void printAnalysis(const HealthReport& report) {
  const HealthSpace space(report);
  Console::print("== ANALYSIS ==");
  Console::print("Total SSD bytes (healthy + orphan): " + SizeCalculator::format(space.total()));
  Console::print("");
  Console::print("Top 10 largest healthy symlinked apps:");
  for (const HealthIssue& app : space.largestHealthy(10))
    Console::print("  " + inTenColumns(SizeCalculator::format(app.sizeBytes)) + " " +
                   app.location.lastComponent());
  if (space.of(Kind::orphan) >= 1) {
    Console::print("");
    Console::print("Reclaimable from orphans: " + SizeCalculator::format(space.of(Kind::orphan)));
  }
  if (space.of(Kind::reverted) >= 1) {
    Console::print("Reclaimable from reverted-app stale SSD copies: " +
                   SizeCalculator::format(space.of(Kind::reverted)));
  }
}

}  // namespace quarn::HealthHumanRenderer
