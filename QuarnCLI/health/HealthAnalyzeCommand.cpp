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
  HealthRenderers::print(report, format, true);
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
