#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/Scene.h"

/// What every command that moves something is put through: one scene, in which an item of each kind stands
/// among things of other people, and one judgement of whatever a fault left behind.
namespace campaign {

using Lines = std::vector<std::string>;

struct Item {
  std::string source;       ///< where a program looks for it
  std::string destination;  ///< its place on the drive
};

enum class Way { out, path, home, launcher };

struct Command {
  std::string name;
  Way way;
  Lines arguments;  ///< behind "quarn"
  std::vector<Item> items;

  Lines words() const;
};

/// `move one`, `next`, `all`, `path`, `back`, and `restore` of a link and of a launcher.
const std::vector<Command>& commands();
std::ostream& operator<<(std::ostream& out, const Command& command);

/// What a run left for the judge.
struct Outcome {
  int status = 0;
  std::string said;
  bool wasEnded = false;  ///< by a signal, so that its status says nothing
  bool wasBlind = false;  ///< looks failed, so that a record may have counted as empty
};

/// The scene of one command, set anew by the constructor.
class Trial {
 public:
  explicit Trial(const Command& command);

  /// What is wrong after a run, a line each: bytes that stand whole at none of the places that
  /// docs/recovery.md names, foreign things that changed, words that aren't true, a wrong exit status,
  /// records that don't parse or tell what isn't. Empty is good.
  std::string problems(const Outcome& outcome);
  /// Runs the command once more, without a fault, and says in the same way what is wrong then: also that it
  /// didn't do what the state that it found lets it do.
  std::string problemsOfNextRun();

 private:
  const Command& command_;
  std::map<std::string, Lines> original_;       ///< the tree of each item, by its source
  std::map<std::string, Lines> found_;          ///< the same as the run found it
  std::map<std::string, std::string> foreign_;  ///< facts of everything else, by path
  Lines launcher_;
  bool wasBlind_ = false;

  void lookAgain();
  std::string itemProblems() const;
  std::string launcherProblems() const;
  std::string foreignProblems() const;
  std::string wordProblems(const Outcome& outcome) const;
  std::string statusProblems(const Outcome& outcome) const;
  std::string manifestProblems() const;
  std::string ledgerProblems() const;
  std::string expectedOfNextRun() const;
  Lines placesOf(const Item& item) const;
  bool isWhole(const Item& item, const std::string& place) const;
  bool isDone(const Item& item) const;
  bool isAllowed(const std::string& path) const;
};

}  // namespace campaign
