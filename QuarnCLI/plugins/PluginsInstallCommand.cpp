#include <optional>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/plugins/PluginCLIShared.h"
#include "QuarnCLI/plugins/PluginCommands.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/plugins/PluginInstaller.h"
#include "QuarnCore/plugins/PluginSourceScanner.h"

namespace quarn::PluginCommands {
namespace {

using Outcome = PluginInstallReport::Outcome;

constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the drive to install onto",
};
constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "shows the plan and writes nothing, also with --yes",
};
constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "installs; without it nothing is written",
};
constexpr Flag noOverwrite{
    .name = "--no-overwrite",
    .meaning = "passes over what is there already",
};

/// What was asked for.
struct Order {
  Path source;
  Path drive;
  std::set<PluginFormat> formats;
  bool isRehearsal = false;
  bool isAllowed = false;
  bool overwrites = false;
};

/// All flags are asked for before anything is found missing.
Order orderOf(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto source = PluginCLIShared::sourceOf(args);
  const auto drive = args.path(targetDrive);
  const auto words = args.value(PluginCLIShared::formats);
  Order order{.source = {},
              .drive = {},
              .formats = {},
              .isRehearsal = args.contains(dryRun),
              .isAllowed = args.contains(yes),
              .overwrites = !args.contains(noOverwrite)};
  if (!source)
    throw CLIError(
        "Usage: install plugins install <source> --target-drive <path> [--formats au,vst3,vst,clap,aax] "
        "[--dry-run] [--yes] [--no-overwrite]");
  if (!drive) throw CLIError("--target-drive <path> is required.");
  order.formats = PluginCLIShared::parseFormats(words);
  order.source = PluginCLIShared::pathOf(platform.places, *source);
  order.drive = PluginCLIShared::pathOf(platform.places, *drive);
  if (!platform.files.exists(order.drive)) throw CLIError("Target drive not found: " + order.drive.text());
  return order;
}

void printPlan(const std::vector<PluginBundle>& bundles, const Path& drive) {
  Console::print("Plan: install " + std::to_string(bundles.size()) + " plugin bundle(s) to " + drive.text() +
                 ":");
  for (const PluginBundle& bundle : bundles) {
    Console::print("  [" + std::string(rowOf(bundle.format).label) + "] " + bundle.name + "  (" +
                   SizeCalculator::format(bundle.sizeBytes) + ")");
    Console::print("    -> " + bundle.externalizedPath(drive).text());
    Console::print("    -> symlink " + bundle.systemSymlinkPath().text());
  }
}

void printOutcome(const PluginInstallBatch& batch) {
  Console::print("");
  Console::print("Installed: " + std::to_string(batch.installed()) + "   Skipped: " +
                 std::to_string(batch.skipped()) + "   Failed: " + std::to_string(batch.failed()));
  for (const PluginInstallReport& report : batch.reports) {
    if (report.outcome == Outcome::installed) continue;
    Console::print("  [" + std::string(rawValue(report.outcome)) + "] " + report.bundle.name + ": " +
                   report.message);
  }
}

void carryOut(Platform& platform, const std::vector<PluginBundle>& bundles, const Order& order) {
  const PluginInstaller::Options options{
      .dryRun = false, .overwrite = order.overwrites, .stripQuarantine = true, .adhocCodesign = true};
  const auto batch = PluginInstaller::install(platform, bundles, order.drive, options,
                                              [](const auto& line) { Console::printNow("  " + line); });
  printOutcome(batch);
  if (batch.failed() > 0)
    throw CLIError("Some plugin installs failed (" + std::to_string(batch.failed()) + ").");
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const Order order = orderOf(platform, invocation.args);
  const bool installs = order.isAllowed && !order.isRehearsal;
  // Taken before the source is searched, so that no other run changes what the plan says.
  std::optional<Turn> turn;
  if (installs) turn.emplace(platform, Console::tellOfWaiting);
  const auto found = PluginSourceScanner::scan(platform, order.source, order.formats);
  if (found.bundles.empty()) {
    Console::print("No plugin bundles found at " + order.source.text() + ".");
    return ExitStatus::success;
  }
  printPlan(found.bundles, order.drive);
  if (installs)
    carryOut(platform, found.bundles, order);
  else
    Console::print(order.isRehearsal ? "--dry-run: nothing written."
                                     : "Proceed? Re-run with --yes to install.");
  return ExitStatus::success;
}

constexpr Flag flags[] = {targetDrive, PluginCLIShared::formats, dryRun, yes, noOverwrite};
constexpr TellingLine tellingLines[] = {
    {"No plugin bundles found at …", ""},
    {"--dry-run: nothing written.", ""},
    {"Proceed? Re-run with --yes to install.", "nothing was written"},
    {"  [skipped] …", "one that was passed over"},
};

}  // namespace

constinit const Command install{
    .words = "install plugins install",
    .purpose = "installs the audio plug-ins of a source onto a drive",
    .operand = PluginCLIShared::source,
    .flags = flags,
    .outcomes = {.success = "installed, nothing to install, or not asked to",
                 .failure = "no source, no drive, an unknown kind of plug-in, or one that failed"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn install plugins install <source> --target-drive <path> "
        "[--formats au,vst3,vst,clap,aax] [--dry-run] [--yes] [--no-overwrite]",
};

}  // namespace quarn::PluginCommands
