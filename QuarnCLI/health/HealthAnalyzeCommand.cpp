#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/health/HealthCommands.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/health/HealthCheck.h"

namespace quarn::HealthCommands {
namespace {

void print(const HealthReport& report, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      HealthHumanRenderer::printSummary(report);
      HealthHumanRenderer::printIssues(report);
      HealthHumanRenderer::printAnalysis(report);
      return;
    case InstallOutputFormat::tsv:
      HealthTSVRenderer::print(report, true);
      return;
    case InstallOutputFormat::toml:
      HealthTOMLRenderer::print(report, true);
      return;
  }
}

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::human);
  print(HealthCheck::run(invocation.platform, {Path("/Applications")}), format);
  return ExitStatus::success;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command analyze{
    .words = "health analyze",
    .purpose = "does the same, and counts the space",
    .flags = flags,
    .outcomes = {.success = "shown, whatever was found", .failure = ""},
    .handler = run,
    .usageLine = "quarn health analyze   [--format human|tsv|toml]",
};

}  // namespace quarn::HealthCommands
