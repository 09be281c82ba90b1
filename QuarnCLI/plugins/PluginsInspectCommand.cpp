#include <algorithm>
#include <array>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/plugins/PluginCLIShared.h"
#include "QuarnCLI/plugins/PluginCommands.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/plugins/PluginSourceScanner.h"

namespace quarn::PluginCommands {
namespace {

constexpr std::string_view tsv = "tsv";
constexpr std::array<std::string_view, 2> forms = {"human", tsv};
constexpr Flag format{
    .name = FlagNames::format,
    .kind = ValueKind::choice,
    .choices = forms,
    .meaning = "the form of the list",
};

/// In tab-separated lines nothing is escaped: a tab or a line feed in a name passes through.
void printTSV(const PluginSourceScanner::ScanResult& found) {
  Console::print(ReportText::tabSeparated({"format", "name", "size", "path"}));
  for (const PluginBundle& bundle : found.bundles) {
    Console::print(ReportText::tabSeparated({std::string(rowOf(bundle.format).label), bundle.name,
                                             std::to_string(bundle.sizeBytes), bundle.sourcePath}));
  }
}

void printHuman(const PluginSourceScanner::ScanResult& found) {
  Console::print("Scanned: " + found.rootPath);
  if (found.bundles.empty()) return Console::print("No plugin bundles found.");
  Console::print("Found " + std::to_string(found.bundles.size()) + " plugin bundle(s):");
  for (const PluginBundle& bundle : found.bundles) {
    std::string label(rowOf(bundle.format).label);
    label.resize(std::max<std::size_t>(label.size(), 4), ' ');
    Console::print("  [" + label + "] " + bundle.name + "  (" + SizeCalculator::format(bundle.sizeBytes) +
                   ")");
  }
}

ExitStatus look(const ReadOnlyInvocation& invocation) {
  const CLIArgs& args = invocation.args;
  const auto source = PluginCLIShared::sourceOf(args);
  const auto words = args.value(PluginCLIShared::formats);
  const bool isTSV = args.value(format) == tsv;
  if (!source)
    throw CLIError("Usage: install plugins inspect <source> [--formats au,vst3,...] [--format human|tsv]");
  const auto formats = PluginCLIShared::parseFormats(words);
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto found =
      PluginSourceScanner::scan(platform, PluginCLIShared::pathOf(platform.places, *source), formats);
  if (isTSV)
    printTSV(found);
  else
    printHuman(found);
  return ExitStatus::success;
}

constexpr Flag flags[] = {PluginCLIShared::formats, format};
constexpr TellingLine tellingLines[] = {{"No plugin bundles found.", ""}};

}  // namespace

constinit const Command inspect{
    .words = "install plugins inspect",
    .purpose = "lists the audio plug-ins of a source",
    .operand = PluginCLIShared::source,
    .flags = flags,
    .outcomes = {.success = "listed",
                 .failure = "no source, an unknown kind of plug-in, or an image that can't be attached"},
    .tellingLines = tellingLines,
    .handler = look,
    .usageLine =
        "quarn install plugins inspect <source> [--formats au,vst3,vst,clap,aax] [--format human|tsv]",
};

}  // namespace quarn::PluginCommands
