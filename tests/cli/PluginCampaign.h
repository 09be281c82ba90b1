#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>

#include "tests/cli/CallSweep.h"
#include "tests/cli/PluginScenes.h"

/// Installing plug-ins while something goes wrong, judged by the whole tree: no only copy is lost, nothing
/// foreign changes, and each word is so.
namespace plugins {

/// What is run in a crowded scene.
struct Job {
  std::string name;
  std::string source;
  int failures = 0;  ///< how many plug-ins are refused even if nothing goes wrong

  Lines arguments() const;
  Lines words() const;
  /// Names a test.
  friend void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }
  std::string line() const;
};

/// From a folder, over what stands in the system and on the drive.
Job fromFolder();
/// From the system's own folder of plug-ins, one of which is on the drive already.
Job fromSystem();

/// Tools that do the same in less time.
void quickenTools();
/// Long enough that two runs, or a signal, meet at every step.
void slowDown(const std::string& tool);

/// A run that came to its end, or was ended.
struct Outcome {
  int status = 0;
  std::string said;
  bool wasEnded = false;
  bool wasBlind = false;
};

/// Sets the scene and remembers it.
class Trial {
 public:
  explicit Trial(const Job& job);

  /// What is lost, changed or not so; empty is good.
  std::string problems(const Outcome& outcome) const;
  /// The same after one more run, in which nothing goes wrong.
  std::string problemsOfNextRun() const;

 private:
  struct Plugin {
    std::string link, external;
    Lines whole;
    bool isOnlyCopy = false;  ///< what is installed has no other source
    Lines native{};           ///< what stands at the link's place, and only a whole copy may replace
  };

  void addPlugin(const std::string& from, const std::string& link, const std::string& external,
                 bool isOnlyCopy);
  bool isCopied(const Plugin& plugin) const { return unsignedTree(plugin.external) == plugin.whole; }
  std::string losses() const;
  std::string lies(const Outcome& outcome) const;

  const Job job_;
  std::map<std::string, Plugin> plugins_;  ///< by the path on the drive
  std::map<std::string, Lines> foreign_;
};

}  // namespace plugins
