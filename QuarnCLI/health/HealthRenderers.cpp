#include "QuarnCLI/health/HealthRenderers.h"

namespace quarn::HealthRenderers {

void print(const HealthReport& report, InstallOutputFormat format, bool includeAnalysis) {
  switch (format) {
    case InstallOutputFormat::human:
      HealthHumanRenderer::printSummary(report);
      HealthHumanRenderer::printIssues(report);
      if (includeAnalysis) HealthHumanRenderer::printAnalysis(report);
      return;
    case InstallOutputFormat::tsv:
      HealthTSVRenderer::print(report, includeAnalysis);
      return;
    case InstallOutputFormat::toml:
      HealthTOMLRenderer::print(report, includeAnalysis);
      return;
  }
}

}  // namespace quarn::HealthRenderers
