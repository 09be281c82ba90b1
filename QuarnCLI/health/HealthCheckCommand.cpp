#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/health/HealthCommands.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/health/HealthCheck.h"

namespace quarn::HealthCommands {
namespace {

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::human);
  const HealthReport report = HealthCheck::run(invocation.platform, {Path("/Applications")});
  HealthRenderers::print(report, format, false);
  return report.problems().empty() ? ExitStatus::success : ExitStatus::attention;
}

constexpr Flag flags[] = {ReportFlags::format};

}  // namespace

constinit const Command check{
    .words = "health check",
    .purpose = "looks whether what was moved still works",
    .flags = flags,
    .outcomes = {.success = "no problems", .failure = "", .attention = "problems were found"},
    .handler = run,
    .usageLine = "quarn health check     [--format human|tsv|toml]",
};

}  // namespace quarn::HealthCommands
