#include "QuarnCLI/report/ReportText.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"

namespace quarn::UninstallHumanFormatter {
namespace {

using Lines = std::vector<std::string>;
using ReportText::joinedOrNothing;
using ReportText::tabSeparated;

std::string dry(const AppUninstallSession& session) {
  return "dry=" + ReportText::word(session.dryRun);
}

std::string line(const UninstallCandidate& candidate) {
  return std::string("  ") + (candidate.defaultSelected ? "*" : "-") + " " + candidate.path + " (" +
         std::to_string(candidate.sizeBytes) + " bytes, " + std::string(rawValue(candidate.confidence)) + ")";
}

}  // namespace

std::string apps(const std::vector<AppRecord>& apps) {
  Lines lines;
  for (const AppRecord& app : apps)
    lines.push_back(tabSeparated({std::string(rawValue(app.kind)), app.displayName, app.bundlePath}));
  return joinedOrNothing(lines);
}

std::string inspection(const AppRecord& app) {
  Lines lines = {app.displayName + " (" + app.bundleIdentifier.value_or("-") + ")",
                 "kind: " + std::string(rawValue(app.kind)), "path: " + app.bundlePath};
  if (app.externalTargetPath) lines.push_back("target: " + *app.externalTargetPath);
  return joinedOrNothing(lines);
}

std::string plan(const AppUninstallPlan& plan) {
  Lines lines;
  for (const std::string& warning : plan.warnings) lines.push_back("warning: " + warning);
  for (const auto& [category, candidates] : plan.grouped()) {
    lines.push_back("[" + std::string(rowOf(category).label) + "]");
    for (const UninstallCandidate& candidate : candidates) lines.push_back(line(candidate));
  }
  return joinedOrNothing(lines);
}

std::string session(const AppUninstallSession& session) {
  Lines lines = {"Uninstalled " + session.appName + " — " + std::to_string(session.movedItems.size()) +
                 " items, " + dry(session)};
  if (!session.forgottenReceipts.empty())
    lines.push_back("receipts: " + ReportText::join(session.forgottenReceipts, ", "));
  return joinedOrNothing(lines);
}

std::string sessions(const std::vector<AppUninstallSession>& sessions) {
  Lines lines;
  for (const AppUninstallSession& session : sessions) {
    lines.push_back(tabSeparated(
        {session.id, session.appPath, dry(session), "items=" + std::to_string(session.movedItems.size())}));
  }
  return joinedOrNothing(lines);
}

}  // namespace quarn::UninstallHumanFormatter
