#include "QuarnCLI/dedupe/DedupeRenderer.h"

#include <algorithm>

#include "Platform/DateText.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCLI/report/TOMLFormatter.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn::DedupeRenderer {
namespace {

using ReportText::tabSeparated;
using TOMLFormatter::singleLine;

void printHuman(const AppDedupeGroup& group) {
  Console::print("");
  Console::print("== " + group.displayName + " ==");
  Console::print("keep:   " + group.keep.path);
  for (const AppDedupeItem& item : group.remove) {
    Console::print("remove: " + item.path);
    if (item.targetPath) Console::print("        target: " + *item.targetPath);
  }
  Console::print("reason: " + group.reason);
}

void printHuman(const AppDedupePlan& plan) {
  Console::print("Duplicate launcher groups: " + std::to_string(plan.groups.size()));
  Console::print("Removable: " + std::to_string(plan.removableItems().size()) + " item(s), " +
                 SizeCalculator::format(plan.removableBytes()));
  for (const AppDedupeGroup& group : plan.groups) printHuman(group);
}

void printHuman(const AppDedupeRunResult& result) {
  const auto went = std::count_if(result.movedItems.begin(), result.movedItems.end(),
                                  [](const auto& item) { return item.succeeded; });
  printHuman(result.plan);
  Console::print(result.dryRun ? "dry-run: no files trashed"
                               : "run: trashed " + std::to_string(went) + " item(s)");
  for (const auto& item : result.movedItems) {
    if (!item.succeeded) Console::print(tabSeparated({"FAIL", item.originalPath, item.error.value_or("")}));
  }
}

void printRow(const AppDedupeGroup& group, const std::string& action, const AppDedupeItem& item) {
  Console::print(
      tabSeparated({group.bundleIdentifier, group.displayName, action, std::string(rawValue(item.kind)),
                    item.path, item.targetPath.value_or(""), std::to_string(item.sizeBytes), group.reason}));
}

void printTSV(const AppDedupePlan& plan) {
  Console::print(tabSeparated(
      {"bundle_id", "display_name", "action", "kind", "path", "target", "size_bytes", "reason"}));
  for (const AppDedupeGroup& group : plan.groups) {
    printRow(group, "keep", group.keep);
    for (const AppDedupeItem& item : group.remove) printRow(group, "remove", item);
  }
}

void printTSV(const AppDedupeRunResult& result) {
  printTSV(result.plan);
  Console::print("");
  Console::print(tabSeparated({"action", "path", "succeeded", "trashed_to", "error"}));
  for (const auto& item : result.movedItems) {
    Console::print(tabSeparated({"trash", item.originalPath, ReportText::word(item.succeeded),
                                 item.trashedTo.value_or(""), item.error.value_or("")}));
  }
}

void printTOML(const AppDedupeGroup& group) {
  std::string paths;
  for (const AppDedupeItem& item : group.remove) paths += (paths.empty() ? "" : ", ") + singleLine(item.path);
  Console::print("");
  Console::print("[[group]]");
  Console::print("bundleId = " + singleLine(group.bundleIdentifier));
  Console::print("displayName = " + singleLine(group.displayName));
  Console::print("keep = " + singleLine(group.keep.path));
  Console::print("reason = " + singleLine(group.reason));
  Console::print("remove = [" + paths + "]");
}

void printTOML(const AppDedupePlan& plan) {
  Console::print("[summary]");
  Console::print("scannedAt = " + singleLine(DateText::iso8601(plan.scannedAt)));
  Console::print("groups = " + std::to_string(plan.groups.size()));
  Console::print("removableItems = " + std::to_string(plan.removableItems().size()));
  Console::print("removableBytes = " + std::to_string(plan.removableBytes()));
  for (const AppDedupeGroup& group : plan.groups) printTOML(group);
}

void printTOML(const AppDedupeRunResult& result) {
  printTOML(result.plan);
  Console::print("[run]");
  Console::print(TOMLFormatter::keyed("dryRun", result.dryRun));
  Console::print("movedItems = " + std::to_string(result.movedItems.size()));
}

template <class Report>
void printAs(const Report& report, InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return printHuman(report);
    case InstallOutputFormat::tsv:
      return printTSV(report);
    case InstallOutputFormat::toml:
      return printTOML(report);
  }
}

}  // namespace

void print(const AppDedupePlan& plan, InstallOutputFormat format) {
  printAs(plan, format);
}

void print(const AppDedupeRunResult& result, InstallOutputFormat format) {
  printAs(result, format);
}

}  // namespace quarn::DedupeRenderer
