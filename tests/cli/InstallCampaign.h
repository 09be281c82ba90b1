#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

#include "QuarnCore/installer/InstallerSession.h"
#include "tests/support/Scene.h"

/// What every command that installs, finishes or undoes an installation is put through: a scene with things
/// of other people and with earlier versions in the way, and one judgement of whatever a fault left behind.
namespace installs {

using Lines = std::vector<std::string>;

enum class Way { bundle, package, resume, undo };

struct Job {
  std::string name;
  Way way;
  Lines arguments;  ///< behind "quarn"
  Lines apps;       ///< the names of the applications that it is about
  void (*setScene)();

  Lines words() const;
  /// For a shell.
  std::string line() const;
};

/// An application by itself, over others, in its launcher's place, in an archive, in an image with a package;
/// packages; a pending session; and taking back what an application and a package brought.
const std::vector<Job>& jobs();
const Job& jobOf(const std::string& name);
std::ostream& operator<<(std::ostream& out, const Job& job);

/// The session of the scenes that have one.
inline const std::string sceneSession = "20260101_000000";
inline const std::string sessionRoot = scene::home + "/Library/Application Support/Quarn/InstallerSessions";
inline const std::string drivesApps = "/Volumes/X9/ExternalQuarn/Apps";

/// Makes what the jobs install from; the reason to skip where that can't be made.
std::string whyNoStock();
/// The bundle that a job installs under a name.
std::string stockOf(const std::string& app);

/// Attaches images with the rights of the test. A program that is run as an ordinary person can't mount.
class ImageServer {
 public:
  ImageServer();
  ~ImageServer();
  ImageServer(const ImageServer&) = delete;
  ImageServer& operator=(const ImageServer&) = delete;

 private:
  pid_t pid_;
};

/// What a run left for the judge.
struct Outcome {
  int status = 0;
  std::string said;
  bool wasEnded = false;  ///< by a signal, or it couldn't tell, so that its status says nothing
};

/// The scene of one job, set anew by the constructor.
class Trial {
 public:
  /// What another command changes meanwhile isn't judged here.
  explicit Trial(const Job& job, Lines changedByOthers = {});

  /// What is wrong after a run, a line each: bytes that stand whole at none of the places that
  /// docs/recovery.md names, foreign things that changed, sessions that don't parse or tell what isn't, words
  /// that aren't true, a wrong exit status. Empty is good.
  std::string problems(const Outcome& outcome) const;
  /// Goes on as docs/recovery.md says, without a fault: by the same command, or by finishing the session that
  /// is pending. Says in the same way what is wrong then: also that it isn't done.
  std::string problemsOfNextRun() const;

 private:
  const Job& job_;
  const Lines changedByOthers_;
  std::map<std::string, Lines> precious_;       ///< the tree of each bundle that stood there
  std::map<std::string, Lines> whole_;          ///< the tree of each application that is installed
  std::set<std::string> contents_;              ///< of all files
  std::map<std::string, std::string> foreign_;  ///< facts of everything else, by path

  std::string lostProblems() const;
  std::string foreignProblems() const;
  std::string sessionProblems() const;
  std::string wordProblems(const Outcome& outcome) const;
  std::string installedProblems() const;
  std::string undone() const;
  std::string problemsOf(const std::string& session) const;
  std::string actionProblems(const std::string& session) const;
  std::string wrongAfter(const Lines& arguments, const std::string& expected) const;
  std::string installedAgain() const;
  std::string finished(const std::string& session) const;
  bool isAllowed(const std::string& path) const;
  bool isDone(const std::string& app) const;
  bool isTakenForApp(const std::string& app) const;
  bool standsSomewhere(const Lines& tree) const;
  std::string undonesOf(const Lines& apps) const;
};

}  // namespace installs
