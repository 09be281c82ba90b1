#include "QuarnCLI/install/InstallReports.h"

#include "QuarnCLI/report/ReportText.h"
#include "QuarnCLI/report/TOMLFormatter.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

std::string word(InstallerKind kind) {
  return std::string(rawValue(kind));
}

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

/// A line for each text, with words before it.
Lines each(const std::vector<std::string>& texts, const std::string& before) {
  Lines lines;
  for (const std::string& text : texts) lines.push_back(before + text);
  return lines;
}

}  // namespace

std::string TOMLFormatter::options(const std::vector<InstallerOption>& options) {
  Lines lines;
  for (const InstallerOption& option : options) {
    append(lines, {"[[options]]", keyed("id", option.id), keyed("label", option.label),
                   keyed("strategy", option.strategy)});
  }
  return ReportText::joinedOrNothing(lines);
}

std::string TOMLFormatter::inspection(const InstallerInspection& inspection) {
  Lines lines = {keyed("source", inspection.sourcePath),
                 keyed("kind", word(inspection.kind)),
                 array("warnings", inspection.warnings),
                 "[trust]",
                 keyed("status", inspection.trust.status),
                 keyed("hasScripts", inspection.trust.hasScripts),
                 keyed("hasPrivilegedPayload", inspection.trust.hasPrivilegedPayload)};
  for (const InstallableItem& item : inspection.items) {
    append(lines, {"[[items]]", keyed("kind", word(item.kind)), keyed("path", item.path),
                   keyed("label", item.label), keyed("sizeBytes", item.sizeBytes)});
  }
  return ReportText::joined(lines);
}

std::string TOMLFormatter::plan(const InstallerPlan& plan) {
  return ReportText::joined({keyed("source", plan.sourcePath), keyed("option", plan.optionID),
                             keyed("targetDrive", plan.targetDrivePath),
                             keyed("neededBytes", plan.neededBytes), array("warnings", plan.warnings),
                             array("actions", plan.actions)});
}

std::string TOMLFormatter::session(const InstallerSession& session) {
  return ReportText::joined({keyed("id", session.id), keyed("source", session.sourcePath),
                             keyed("option", session.optionID), array("actions", session.actions),
                             array("changedPaths", session.changedPaths),
                             array("newReceipts", session.newReceipts)});
}

std::string TSVFormatter::options(const std::vector<InstallerOption>& options) {
  Lines lines;
  for (const InstallerOption& option : options)
    lines.push_back(ReportText::tabSeparated({"option", option.id, option.label, option.strategy}));
  return ReportText::joined(lines);
}

std::string TSVFormatter::inspection(const InstallerInspection& inspection) {
  Lines lines = {ReportText::tabSeparated({"inspection", word(inspection.kind), inspection.sourcePath})};
  append(lines, each(inspection.warnings, "warning\t"));
  for (const InstallableItem& item : inspection.items) {
    lines.push_back(
        ReportText::tabSeparated({"item", word(item.kind), std::to_string(item.sizeBytes), item.path}));
  }
  return ReportText::joined(lines);
}

std::string TSVFormatter::plan(const InstallerPlan& plan) {
  Lines lines = {
      ReportText::tabSeparated({"plan", plan.optionID, std::to_string(plan.neededBytes), plan.sourcePath})};
  append(lines, each(plan.warnings, "warning\t"));
  append(lines, each(plan.actions, "action\t"));
  return ReportText::joined(lines);
}

std::string TSVFormatter::sessions(const std::vector<InstallerSession>& sessions) {
  Lines lines;
  for (const InstallerSession& session : sessions)
    lines.push_back(ReportText::tabSeparated({"session", session.id, session.optionID, session.sourcePath}));
  return ReportText::joined(lines);
}

std::string InstallHumanFormatter::options(const std::vector<InstallerOption>& options) {
  Lines lines;
  for (const InstallerOption& option : options)
    lines.push_back(ReportText::tabSeparated({option.id, option.label}));
  return ReportText::joinedOrNothing(lines);
}

std::string InstallHumanFormatter::inspection(const InstallerInspection& inspection) {
  Lines lines = {word(inspection.kind) + ": " + inspection.sourcePath};
  for (const InstallableItem& item : inspection.items)
    lines.push_back("- " + ReportText::tabSeparated({word(item.kind), item.path}));
  append(lines, each(inspection.warnings, "warning: "));
  return ReportText::joinedOrNothing(lines);
}

std::string InstallHumanFormatter::plan(const InstallerPlan& plan) {
  Lines lines = plan.actions;
  append(lines, each(plan.warnings, "warning: "));
  return ReportText::joinedOrNothing(lines);
}

std::string InstallHumanFormatter::sessions(const std::vector<InstallerSession>& sessions) {
  Lines lines;
  for (const InstallerSession& session : sessions)
    lines.push_back(ReportText::tabSeparated({session.id, session.sourcePath}));
  return ReportText::joinedOrNothing(lines);
}

}  // namespace quarn
