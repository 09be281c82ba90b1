#include <algorithm>
#include <filesystem>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaignLooks.h"

// Whether the sessions and the words tell what is so.

namespace installs {

namespace fs = std::filesystem;

bool Trial::isDone(const std::string& app) const {
  const std::string copy = drivesApps + "/" + app;
  return launcherTarget("/Applications/" + app) == copy && scene::tree(copy) == whole_.at(app);
}

/// "A launcher in the place of the copy": the recipe puts the copy back from the Trash.
bool Trial::isTakenForApp(const std::string& app) const {
  const std::string copy = drivesApps + "/" + app;
  return launcherTarget("/Applications/" + app) == copy && launcherTarget(copy) == copy &&
         standsSomewhere(whole_.at(app));
}

std::string Trial::problemsOf(const std::string& name) const {
  const std::string file = sessionRoot + "/" + name + "/session.json";
  if (!scene::exists(file)) return name == sceneSession ? "SESSION gone\n" : "";
  const auto session = loadSession(name);
  if (!session) return "SESSION doesn't parse: " + file + "\n";
  using Status = quarn::InstallerSessionStatus;
  std::string problems;
  const bool isPending = session->status == Status::pendingExternalize;
  if (isPending == session->pendingExternalizeApps.empty())
    problems += "SESSION with the wrong list of what is pending\n";
  if (session->status == Status::failed && (!session->actions.empty() || !session->changedPaths.empty()))
    problems += "SESSION failed, and tells of changes\n";
  for (const std::string& path : session->changedPaths) {
    const auto found = foreign_.find(path);
    if ((found != foreign_.end() && !fs::is_directory(path)) ||
        campaign::isAtOrBelow(path, "/Applications/Other.app"))
      problems += "SESSION names what is foreign: " + path + "\n";
  }
  return problems;
}

std::string Trial::sessionProblems() const {
  std::string problems;
  for (const std::string& name : fault::names(sessionRoot))
    if (name != foreignSession) problems += problemsOf(name);
  return problems;
}

std::string Trial::undonesOf(const Lines& apps) const {
  std::string problems;
  for (const std::string& app : apps)
    if (!isDone(app) && !isTakenForApp(app)) problems += "UNTRUE: " + app + " isn't installed\n";
  return problems;
}

/// The name of the session that a run says it has made.
std::string sessionSaid(const std::string& said) {
  for (const std::string& line : campaign::linesOf(said))
    if (line.starts_with("id = \"")) return line.substr(6, line.size() - 7);
  return {};
}

std::string Trial::actionProblems(const std::string& name) const {
  const auto session = loadSession(name);
  if (!session) return "UNTRUE: there is no session " + name + "\n";
  std::string problems;
  for (const std::string& action : session->actions) {
    if (action.starts_with("installed-app\t")) problems += undonesOf({fs::path(action).filename()});
    if (action.starts_with("installed-pkg\t") && receipts().empty())
      problems += "UNTRUE: the package isn't installed\n";
  }
  const bool isDone = session->status == quarn::InstallerSessionStatus::done;
  if (job_.way == Way::bundle && !isDone) problems += "UNTRUE: the session isn't done\n";
  if (job_.way == Way::bundle) problems += undonesOf(job_.apps);
  return problems;
}

std::string Trial::wordProblems(const Outcome& outcome) const {
  const bool hasError = campaign::count(outcome.said, "error\t") > 0;
  std::string problems;
  if (!outcome.wasEnded && outcome.status != (hasError ? 1 : 0))
    problems += "STATUS " + std::to_string(outcome.status) + "\n";
  if (const std::string made = sessionSaid(outcome.said); !made.empty()) problems += actionProblems(made);
  const bool isInstall = job_.way == Way::bundle || job_.way == Way::package;
  if (isInstall && !outcome.wasEnded && !hasError && sessionSaid(outcome.said).empty() &&
      !outcome.said.empty() && !campaign::says(outcome.said, "session\t"))
    problems += "SAID neither that it was done nor why not\n";
  if (job_.way == Way::resume || campaign::says(outcome.said, "session-finalized\t")) {
    const bool saysDone = campaign::says(outcome.said, "session\t" + sceneSession + "\tdone");
    const auto session = loadSession(sceneSession);
    if (saysDone && (!session || session->status != quarn::InstallerSessionStatus::done))
      problems += "UNTRUE: the session isn't done\n";
    if (saysDone) problems += undonesOf(job_.apps);
  }
  if (job_.way == Way::undo && !hasError && !outcome.said.empty()) problems += "SAID something\n";
  return problems;
}

/// What a package brought stands somewhere, once its receipt tells that it was installed.
std::string Trial::installedProblems() const {
  std::string problems;
  if (job_.way != Way::package || receipts().empty()) return problems;
  for (const std::string& app : job_.apps) {
    const bool isOfPackage = job_.name != "image" || app == "Bar.app";
    if (isOfPackage && !standsSomewhere(whole_.at(app)))
      problems += "LOST: what was installed as " + app + "\n";
  }
  return problems;
}

}  // namespace installs
