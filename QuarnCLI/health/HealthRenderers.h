#pragma once

#include "QuarnCLI/report/InstallOutputFormat.h"
#include "QuarnCore/health/HealthReport.h"

namespace quarn {

/// The report for a person. A link into a sandbox's folder is counted as a problem but not listed.
namespace HealthHumanRenderer {
void printSummary(const HealthReport& report);
void printIssues(const HealthReport& report);
void printAnalysis(const HealthReport& report);
}  // namespace HealthHumanRenderer

/// A line for each finding, healthy ones included. Tabs are replaced in the details alone: a tab or a line
/// feed in a path passes through.
namespace HealthTSVRenderer {
void print(const HealthReport& report, bool includeAnalysis);
}  // namespace HealthTSVRenderer

/// The summary, and a table for each problem.
namespace HealthTOMLRenderer {
void print(const HealthReport& report, bool includeAnalysis);
}  // namespace HealthTOMLRenderer

namespace HealthRenderers {
/// The report in one of its forms, with or without the accounting of space.
void print(const HealthReport& report, InstallOutputFormat format, bool includeAnalysis);
}  // namespace HealthRenderers

}  // namespace quarn
