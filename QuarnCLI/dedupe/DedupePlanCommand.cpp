#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/dedupe/DedupeCommands.h"
#include "QuarnCLI/dedupe/DedupeRenderer.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/dedupe/AppDedupeService.h"

namespace quarn::DedupeCommands {
namespace {

ExitStatus look(const ReadOnlyInvocation& invocation) {
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::human);
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto plan = AppDedupeService::plan(platform, AppDedupeService::applicationRoots(platform));
  DedupeRenderer::print(plan, format);
  return plan.groups.empty() ? ExitStatus::success : ExitStatus::attention;
}

constexpr Flag flags[] = {ReportFlags::format};
constexpr Outcomes outcomes{.success = "no duplicates", .failure = "", .attention = "duplicates were found"};

}  // namespace

constinit const Command scan{
    .words = "dedupe scan",
    .purpose = "lists the launchers that duplicate a real application",
    .flags = flags,
    .outcomes = outcomes,
    .handler = look,
    .usageLine = "quarn dedupe scan      [--format human|tsv|toml]",
};

constinit const Command plan{
    .words = "dedupe plan",
    .purpose = "the same as `dedupe scan`",
    .flags = flags,
    .outcomes = outcomes,
    .handler = look,
};

}  // namespace quarn::DedupeCommands
