#include "QuarnCLI/report/ReportText.h"
#include "QuarnCLI/uninstall/UninstallFormatters.h"

namespace quarn::UninstallTSVFormatter {
namespace {

using ReportText::tabSeparated;
using ReportText::word;

std::string orDash(const std::optional<std::string>& text) {
  return text.value_or("-");
}

}  // namespace

std::string apps(const std::vector<AppRecord>& apps) {
  std::vector<std::string> lines = {"app\tkind\tid\tname\tpath"};
  for (const AppRecord& app : apps) {
    lines.push_back(tabSeparated({"app", std::string(rawValue(app.kind)), orDash(app.bundleIdentifier),
                                  app.displayName, app.bundlePath}));
  }
  return ReportText::joined(lines);
}

std::string inspection(const AppRecord& app) {
  std::vector<std::string> lines = {
      "inspect\t" + app.bundlePath,
      "kind\t" + std::string(rawValue(app.kind)),
      "name\t" + app.displayName,
      "bundle-id\t" + orDash(app.bundleIdentifier),
      "version\t" + orDash(app.version),
      "developer\t" + orDash(app.developer),
      "mac-app-store\t" + word(app.isMacAppStore),
      "login-items\t" + word(app.hasLoginItems),
      "system-extension\t" + word(app.hasSystemExtension),
      "symlink\t" + word(app.isSymlink),
      "quarn-launcher\t" + word(app.isQuarnLauncher),
  };
  if (app.externalTargetPath) lines.push_back("external-target\t" + *app.externalTargetPath);
  return ReportText::joined(lines);
}

std::string plan(const AppUninstallPlan& plan) {
  std::vector<std::string> lines = {
      tabSeparated({"plan", plan.app.bundlePath, std::to_string(plan.totalBytes)})};
  for (const std::string& warning : plan.warnings) lines.push_back("warning\t" + warning);
  for (const UninstallCandidate& candidate : plan.candidates) {
    lines.push_back(tabSeparated(
        {"candidate", std::string(rawValue(candidate.category)), std::string(rawValue(candidate.confidence)),
         std::to_string(candidate.sizeBytes), word(candidate.defaultSelected), candidate.path}));
  }
  return ReportText::joined(lines);
}

std::string sessions(const std::vector<AppUninstallSession>& sessions) {
  std::vector<std::string> lines = {"session\tid\tapp\tdry\titems"};
  for (const AppUninstallSession& session : sessions) {
    lines.push_back(tabSeparated({"session", session.id, session.appPath, word(session.dryRun),
                                  std::to_string(session.movedItems.size())}));
  }
  return ReportText::joined(lines);
}

}  // namespace quarn::UninstallTSVFormatter
