#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>

#include "tests/cli/UninstallHomes.h"
#include "tests/cli/UninstallRules.h"
#include "tests/cli/UninstallTrees.h"
#include "tests/support/CampaignExtent.h"
#include "tests/support/Scene.h"

/// Whatever a home holds and whatever a bundle says of itself: only what belongs to the application goes,
/// each item to a Trash or beside its place, byte for byte, and the recipe of the documents brings all of it
/// back. Fifty homes by default; a thousand with QUARN_CAMPAIGN=all; one, and what was done in it, with
/// QUARN_HOME=<seed>.

namespace {

namespace fs = std::filesystem;
using homes::Home;
using homes::Lines;
using rules::Candidate;
using trees::Session;
using trees::Tree;
using Candidates = std::map<std::string, Candidate>;

/// One home: made, uninstalled from, judged, and put back.
class Trial {
 public:
  explicit Trial(std::uint64_t seed) : home_(homes::make(seed)), candidates_(rules::candidates(home_)) {
    for (const auto& [path, candidate] : candidates_) {
      realPlaces_[path] = rules::realPlace(path);
      if (rules::isStuck(home_, path)) stuck_.insert(path);
      if (rules::holdsVolume(home_, path)) volumes_.insert(path);
    }
    before_ = trees::all();
  }
  ~Trial() { homes::unmount(home_); }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  std::string problems() {
    plan_ = quarn("plan");
    std::string problems = planProblems();
    quarn("run", {"--dry-run"});
    problems += rest("planning and trying", before_);
    run_ = quarn("run", {"--progress"});
    problems += run_.status == 0 ? runProblems() : refusalProblems();
    return problems;
  }

  std::string description() const {
    std::string text = "seed " + std::to_string(home_.seed) + "\n" + home_.operand;
    for (const std::string& flag : home_.flags) text += " " + flag;
    return text + "\nplan:\n" + plan_.out + plan_.err + "run:\n" + run_.out + run_.err;
  }

  std::size_t moved() const { return moved_; }
  std::size_t names() const { return before_.size(); }

 private:
  scene::Run quarn(const std::string& action, const Lines& more = {}) const {
    Lines words = {"uninstall", action, home_.operand};
    words.insert(words.end(), home_.flags.begin(), home_.flags.end());
    words.insert(words.end(), more.begin(), more.end());
    return scene::quarn(words, {.folder = home_.folder});
  }

  static std::string rest(const std::string& what, const Tree& expected) {
    const std::string found = trees::differences(expected, trees::all());
    return found.empty() ? "" : what + ":\n" + found;
  }

  // The plan.

  /// A quoted text from its first quote on, and where it ends.
  static std::pair<std::string, std::size_t> quoted(const std::string& text, std::size_t at) {
    std::string value;
    for (++at; text[at] != '"'; ++at) {
      if (text[at] == '\\') ++at;
      value += text[at];
    }
    return {value, at + 1};
  }

  /// The candidates that the plan shows, with their categories.
  std::map<std::string, std::string> shown() const {
    std::map<std::string, std::string> found;
    const std::string begin = "[[candidates]]\npath = ", next = "\ncategory = ";
    for (auto at = plan_.out.find(begin); at != std::string::npos; at = plan_.out.find(begin, at)) {
      const auto [path, end] = quoted(plan_.out, at + begin.size());
      if (plan_.out.compare(end, next.size(), next) != 0) scene::fail("the plan can't be read");
      const auto [category, after] = quoted(plan_.out, end + next.size());
      if (category != "receipts") found[path] = category;
      at = after;
    }
    return found;
  }

  std::string planProblems() const {
    if (plan_.status != 0) return home_.mayBeRefused ? "" : "there is no plan\n";
    const auto found = shown();
    std::string problems;
    for (const auto& [path, category] : found) {
      const auto rule = candidates_.find(path);
      if (rule == candidates_.end())
        problems += "listed, and belongs to something else: " + path + "\n";
      else if (rule->second.category != category)
        problems += "listed as " + category + ": " + path + "\n";
    }
    for (const auto& [path, candidate] : candidates_)
      if (candidate.isCertain && !found.contains(path)) problems += "not listed: " + path + "\n";
    return problems;
  }

  // The run.

  std::string refusalProblems() const {
    const std::string refused = home_.mayBeRefused ? "" : "refused\n";
    return refused + rest("refusing", before_);
  }

  bool shouldGo(const std::string& path) const {
    const auto rule = candidates_.find(path);
    return rule != candidates_.end() && rules::isTaken(home_, path, rule->second);
  }

  std::string itemProblems(const Session::Item& item, Tree& expected) {
    if (!shouldGo(item.place)) return "taken without being asked for: " + item.place + "\n";
    std::string problems;
    if (item.category != candidates_.at(item.place).category)
      problems += "of another category: " + item.place + "\n";
    if (!item.succeeded) {
      if (!stuck_.contains(item.place)) problems += "stayed: " + item.place + "\n";
      return problems;
    }
    if (volumes_.contains(item.place)) problems += "gone with a volume in it: " + item.place + "\n";
    const std::string now = trees::placeNow(item, before_);
    if (now.empty()) return problems + "nobody says where it is: " + item.place + "\n";
    if (!scene::exists(now)) return problems + "isn't where it is said to be: " + item.place + "\n";
    trees::move(expected, realPlaces_.at(item.place), rules::realPlace(now));
    ++moved_;
    return problems;
  }

  std::string missingProblems(const Session& session) const {
    std::set<std::string> handled;
    std::string problems;
    for (const auto& item : session.items)
      if (!handled.insert(item.place).second) problems += "taken twice: " + item.place + "\n";
    for (const auto& [path, candidate] : candidates_) {
      const bool mayStay = stuck_.contains(path) || !candidate.isCertain;
      if (shouldGo(path) && !mayStay && !handled.contains(path)) problems += "forgotten: " + path + "\n";
    }
    return problems;
  }

  std::string runProblems() {
    auto names = trees::sessionNames();
    names.erase("20200101_000000");
    if (names.size() != 1) return std::to_string(names.size()) + " sessions\n";
    const auto session = trees::session(*names.begin());
    if (!session || session->id != *names.begin()) return "the session can't be read\n";
    std::string problems;
    Tree expected = before_;
    for (const auto& item : session->items) problems += itemProblems(item, expected);
    if (!session->receipts.empty()) problems += "a receipt was forgotten\n";
    if (run_.out.find("id = \"" + session->id + "\"\n") == std::string::npos)
      problems += "the session isn't shown\n";
    problems += missingProblems(*session) + rest("running", expected);
    putBack(session->id);
    return problems + rest("putting back", before_);
  }

  static void putBack(const std::string& id) {
    const auto run = scene::shell(". " QUARN_SOURCE "/tests/support/put-back.sh; put_back " + id);
    if (run.status != 0 || !run.err.empty()) ADD_FAILURE() << run.err;
  }

  const Home home_;
  const Candidates candidates_;
  std::map<std::string, std::string> realPlaces_;
  std::set<std::string> stuck_, volumes_;
  Tree before_;
  scene::Run plan_, run_;
  std::size_t moved_ = 0;
};

/// A home of it takes a tenth of a second; the shell of a stand-in would take most of that.
void quickenTools() {
  scene::replaceTool("/usr/bin/mdutil", "#!/bin/sh\nexit 0\n");
  scene::replaceTool("/usr/sbin/pkgutil", "#!/bin/sh\necho com.example.foo.receipt\n");
}

TEST(UninstallProperty, onlyWhatBelongsToTheApplicationGoesAndAllOfItComesBack) {
  quickenTools();
  const char* one = std::getenv("QUARN_HOME");
  const std::uint64_t first = one ? std::strtoull(one, nullptr, 10) : 1;
  const auto count = static_cast<std::uint64_t>(one ? 1 : extent::count(50, 1000));
  std::size_t wrong = 0, moved = 0, names = 0;
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    Trial trial(seed);
    const std::string problems = trial.problems();
    moved += trial.moved();
    names += trial.names();
    if (one) std::cout << trial.description();
    if (problems.empty()) continue;
    ++wrong;
    ADD_FAILURE() << problems << trial.description();
    if (wrong == 20) break;
  }
  std::cout << count << " homes with " << names << " names, of which " << moved << " went; " << wrong
            << " homes with something wrong\n";
  // Else nothing was shown.
  EXPECT_TRUE(one || moved > 3 * count);
}

}  // namespace
