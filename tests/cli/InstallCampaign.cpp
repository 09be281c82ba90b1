#include "tests/cli/InstallCampaign.h"

#include <algorithm>
#include <filesystem>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaignLooks.h"

namespace installs {

using campaign::everything;
using campaign::facts;

Trial::Trial(const Job& job, Lines changedByOthers)
    : job_(job), changedByOthers_(std::move(changedByOthers)) {
  clearScene();
  job.setScene();
  contents_ = contents();
  for (const std::string& app : job.apps) {
    whole_[app] = scene::tree(stockOf(app));
    for (const std::string& place : {"/Applications/" + app, drivesApps + "/" + app}) {
      // What a package brought is taken away file by file.
      const bool isTakenApart = job.name == "undoPackage" && place.starts_with("/Applications");
      if (scene::exists(place) && !scene::isLink(place) && !isTakenApart)
        precious_[place] = scene::tree(place);
    }
  }
  for (const std::string& path : everything())
    if (!isAllowed(path)) foreign_[path] = facts(path);
}

std::string Trial::problems(const Outcome& outcome) const {
  return lostProblems() + foreignProblems() + sessionProblems() + wordProblems(outcome) + installedProblems();
}

// What comes next.

std::string Trial::wrongAfter(const Lines& arguments, const std::string& expected) const {
  const auto run = scene::quarn(arguments);
  std::string problems = this->problems({run.status, run.out + run.err});
  if (run.status != 0) problems += "the next run fails\n";
  if (!campaign::says(run.out + run.err, expected))
    problems += "the next run doesn't say: " + expected + "\n";
  return problems.empty() ? "" : problems + "it said:\n" + run.out + run.err;
}

std::string Trial::finished(const std::string& session) const {
  const Lines pending = loadSession(session)->pendingExternalizeApps;
  const std::string done = "session\t" + session + "\tdone";
  std::string problems = wrongAfter({"install", "resume", session}, done);
  for (const std::string& app : job_.apps) {
    // What couldn't be looked into after the package was installed isn't pending, and stays.
    const bool isPending = std::count(pending.begin(), pending.end(), "/Applications/" + app) > 0;
    if (isPending || scene::tree("/Applications/" + app) != whole_.at(app)) problems += undonesOf({app});
  }
  if (!problems.empty()) problems += scene::read(sessionRoot + "/" + session + "/session.json") + "\n";
  return problems + wrongAfter({"install", "resume", session}, "resume-noop\t" + session + "\tdone\n");
}

std::string Trial::installedAgain() const {
  const auto left = temporaryFolders();
  const bool wasInstalled = !receipts().empty();
  Lines arguments = job_.arguments;
  // "An application without a launcher": it is installed from where it is on the drive.
  const bool isSourceGone = job_.name == "appInPlace" && !scene::exists("/Applications/Foo.app");
  if (isSourceGone) arguments[2] = drivesApps + "/Foo.app";
  std::string problems = wrongAfter(arguments, "id = \"");
  // What a package had brought before its run was killed isn't new any more, and stays in /Applications.
  for (const std::string& app : job_.apps) {
    // So does one that was a link before, and isn't new either.
    const bool mayStay = wasInstalled || job_.name == "namedPackage";
    const bool staysAtHome = mayStay && scene::tree("/Applications/" + app) == whole_.at(app);
    if (!staysAtHome) problems += undonesOf({app});
  }
  if (temporaryFolders() != left) problems += "LEFT among the temporary files\n";
  if (scene::exists(attachedImage)) problems += "LEFT attached\n";
  return problems;
}

std::string Trial::undone() const {
  std::string problems = wrongAfter(job_.arguments, "");
  for (const std::string& app : job_.apps) {
    if (scene::exists("/Applications/" + app)) problems += "LEFT: " + app + "\n";
    if (job_.name == "undoApp" && scene::exists(drivesApps + "/" + app))
      problems += "LEFT on the drive: " + app + "\n";
  }
  if (scene::exists("/Library/LaunchAgents/com.example.setup.plist")) problems += "LEFT: the agent\n";
  if (!receipts().empty()) problems += "LEFT: the receipt\n";
  return problems;
}

std::string Trial::problemsOfNextRun() const {
  if (job_.way == Way::undo) return undone();
  for (const std::string& name : fault::names(sessionRoot)) {
    const auto session = loadSession(name);
    if (session && session->status == quarn::InstallerSessionStatus::pendingExternalize)
      return finished(name);
  }
  const auto isInstalled = [this](const std::string& app) { return isDone(app); };
  const bool isAll = std::all_of(job_.apps.begin(), job_.apps.end(), isInstalled);
  // To install from a launcher, or over it, is another matter.
  if (isAll && (job_.way == Way::package || job_.name == "appInPlace")) return "";
  if (job_.way == Way::resume) return wrongAfter(job_.arguments, "resume-noop\t" + sceneSession + "\tdone\n");
  return installedAgain();
}

}  // namespace installs
