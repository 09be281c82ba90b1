#include "QuarnCLI/report/ReportText.h"
#include "QuarnCLI/report/TOMLFormatter.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"

namespace quarn::UninstallTOMLFormatter {
namespace {

using Lines = std::vector<std::string>;
using TOMLFormatter::array;
using TOMLFormatter::keyed;

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

/// `key = "word"` for a case of an enumeration.
template <HasRawValues Enum>
std::string named(std::string_view key, Enum value) {
  return keyed(key, std::string(rawValue(value)));
}

/// `key = "text"`; what is absent is empty.
std::string optional(std::string_view key, const std::optional<std::string>& text) {
  return keyed(key, text.value_or(""));
}

}  // namespace

std::string apps(const std::vector<AppRecord>& apps) {
  Lines lines;
  for (const AppRecord& app : apps) {
    append(lines, {"[[apps]]", keyed("name", app.displayName), keyed("path", app.bundlePath),
                   named("kind", app.kind), optional("bundleId", app.bundleIdentifier)});
  }
  return ReportText::joined(lines);
}

std::string inspection(const AppRecord& app) {
  return ReportText::joined({
      keyed("name", app.displayName),
      keyed("path", app.bundlePath),
      named("kind", app.kind),
      optional("bundleId", app.bundleIdentifier),
      optional("version", app.version),
      optional("developer", app.developer),
      keyed("macAppStore", app.isMacAppStore),
      keyed("loginItems", app.hasLoginItems),
      keyed("systemExtension", app.hasSystemExtension),
      keyed("symlink", app.isSymlink),
      keyed("quarnLauncher", app.isQuarnLauncher),
      optional("externalTarget", app.externalTargetPath),
  });
}

std::string plan(const AppUninstallPlan& plan) {
  Lines lines = {keyed("appPath", plan.app.bundlePath), keyed("totalBytes", plan.totalBytes),
                 keyed("selectedBytes", plan.selectedBytes), array("warnings", plan.warnings)};
  for (const UninstallCandidate& candidate : plan.candidates) {
    append(lines, {"[[candidates]]", keyed("path", candidate.path), named("category", candidate.category),
                   named("confidence", candidate.confidence), keyed("sizeBytes", candidate.sizeBytes),
                   keyed("defaultSelected", candidate.defaultSelected), keyed("reason", candidate.reason),
                   keyed("privileged", candidate.isPrivileged)});
  }
  return ReportText::joined(lines);
}

std::string session(const AppUninstallSession& session) {
  Lines lines = {keyed("id", session.id),           keyed("appPath", session.appPath),
                 keyed("appName", session.appName), optional("bundleId", session.bundleIdentifier),
                 keyed("dryRun", session.dryRun),   array("forgottenReceipts", session.forgottenReceipts)};
  for (const AppUninstallSession::MovedItem& item : session.movedItems) {
    append(lines, {"[[items]]", keyed("originalPath", item.originalPath), named("category", item.category),
                   keyed("sizeBytes", item.sizeBytes), keyed("succeeded", item.succeeded)});
    if (item.trashedTo) lines.push_back(keyed("trashedTo", *item.trashedTo));
    if (item.stashedTo) lines.push_back(keyed("stashedTo", *item.stashedTo));
  }
  return ReportText::joined(lines);
}

}  // namespace quarn::UninstallTOMLFormatter
