#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/dedupe/DedupeCommands.h"
#include "QuarnCLI/dedupe/DedupeRenderer.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCore/dedupe/AppDedupeService.h"
#include "QuarnCore/foundation/Turn.h"

namespace quarn::DedupeCommands {
namespace {

constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "changes nothing, also with --yes",
};
constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "removes; without it nothing is changed",
};

/// That it changes nothing is proved by the platform that it is given.
AppDedupeRunResult rehearse(const ReadOnlyPlatform& platform) {
  return AppDedupeService::rehearse(platform);
}

AppDedupeRunResult carryOut(Platform& platform) {
  // Taken before the plan is made, so that no other run changes what it says.
  const Turn turn(platform, Console::tellOfWaiting);
  return AppDedupeService::run(platform);
}

ExitStatus remove(const Invocation& invocation) {
  const bool isAllowed = invocation.args.contains(yes);
  const bool isRehearsal = invocation.args.contains(dryRun) || !isAllowed;
  const auto format = ReportFlags::chosen(invocation.args, InstallOutputFormat::human);
  const auto result = isRehearsal ? rehearse(invocation.platform) : carryOut(invocation.platform);
  DedupeRenderer::print(result, format);
  const bool haveAllGone = std::all_of(result.movedItems.begin(), result.movedItems.end(),
                                       [](const auto& item) { return item.succeeded; });
  return haveAllGone ? ExitStatus::success : ExitStatus::failure;
}

constexpr Flag flags[] = {dryRun, yes, ReportFlags::format};
constexpr TellingLine tellingLines[] = {
    {"dry-run: no files trashed", "nothing was removed: it needs `--yes`, and no `--dry-run`"},
};

}  // namespace

constinit const Command run{
    .words = "dedupe run",
    .purpose = "takes these launchers to the Trash",
    .flags = flags,
    .outcomes = {.success = "removed, nothing to remove, or only shown",
                 .failure = "an item could not be removed"},
    .tellingLines = tellingLines,
    .handler = remove,
    .usageLine = "quarn dedupe run       [--dry-run] [--yes] [--format human|tsv|toml]",
};

}  // namespace quarn::DedupeCommands
