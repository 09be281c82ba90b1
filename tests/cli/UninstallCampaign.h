#pragma once

#include <string>
#include <vector>

#include "tests/cli/UninstallTrees.h"
#include "tests/support/Scene.h"

/// What `uninstall run` is put through: a scene with data of all kinds, things of other people and things of
/// the same names in the Trash, and one judgement of whatever a fault left behind.
namespace uninstalls {

using Lines = std::vector<std::string>;

struct Job {
  std::string name;
  Lines arguments;  ///< behind "quarn"
  Lines goes;       ///< what a run without a fault takes; the application first
  void (*setScene)();

  Lines words() const;
  /// For a shell.
  std::string line() const;
};

/// An application with data of every kind; a link, with the copy on the drive; a launcher, without it; and a
/// link to a copy that no Trash takes.
const std::vector<Job>& jobs();
const Job& jobOf(const std::string& name);
std::ostream& operator<<(std::ostream& out, const Job& job);

inline const std::string application = "/Applications/Foo.app";
inline const std::string driveCopy = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
/// The session that is there before.
inline const std::string formerSession = "20200101_000000";

/// Quick ones, which say nothing.
void quickenTools();
/// Those of the room, which obey orders.
void slowTools();
/// Gives the sessions that are there names of a time long ago: a run would wait for the next second.
void ageSessions();

/// What a run left for the judge.
struct Outcome {
  int status = 0;
  std::string said;
  bool wasEnded = false;  ///< by a signal, or it couldn't tell, so that its status says nothing
};

/// The scene of one job, set anew by the constructor.
class Trial {
 public:
  /// What is `outOfSight` for a while may be taken for gone meanwhile.
  explicit Trial(const Job& job, Lines outOfSight = {});

  /// What is wrong after a run, a line each: an item that stands whole nowhere or at two places, something
  /// else that changed, sessions that don't parse or tell what isn't, words that aren't true, a wrong exit
  /// status. Empty is good.
  std::string problems(const Outcome& outcome) const;
  /// Goes on as docs/uninstalling.md says, without a fault: by the same command, or, where the application is
  /// gone already, by moving everything back before. Says in the same way what is wrong then.
  std::string problemsOfNextRun() const;
  /// Where an item stands whole: at its place, in a Trash or beside its place.
  Lines placesOf(const std::string& item) const;
  /// Without the former one.
  std::vector<trees::Session> sessions() const;
  /// How many of the items that are to go are at their places.
  std::size_t left() const;
  /// The files of which nothing has the content and the mode any more, a line each.
  std::string lostContents() const;

 private:
  const Job& job_;
  const Lines outOfSight_;
  trees::Tree before_;

  Lines placesOf(const std::string& item, const trees::Tree& now) const;
  std::string treeProblems(const trees::Tree& now) const;
  std::string sessionProblems(const trees::Tree& now) const;
  std::string itemProblems(const trees::Session::Item& item, bool isLast, const trees::Tree& now) const;
  bool isRecorded(const std::string& place) const;
  std::string recordProblems(const trees::Tree& now) const;
  std::string wordProblems(const Outcome& outcome, const trees::Tree& now) const;
  std::string progressProblems(const std::string& line, const trees::Tree& now) const;
  std::string takenBack() const;
  std::string finished() const;
  std::string again(bool isThere) const;
};

}  // namespace uninstalls
