#include "tests/cli/UninstallCampaign.h"

#include <algorithm>
#include <filesystem>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"

namespace uninstalls {

namespace fs = std::filesystem;
using trees::Session;
using trees::Tree;

namespace {

/// What an item holds, by the paths in it.
Tree in(const Tree& tree, const std::string& item) {
  Tree part;
  for (auto at = tree.lower_bound(item); at != tree.end() && at->first.starts_with(item); ++at)
    if (campaign::isAtOrBelow(at->first, item)) part[at->first.substr(item.size())] = at->second;
  return part;
}

bool stands(const Tree& now, const std::string& path) {
  return now.contains(path);
}

}  // namespace

// Where the bytes are.

Lines Trial::placesOf(const std::string& item, const Tree& now) const {
  const Tree whole = in(before_, item);
  Lines places = {item};
  const Lines folders = {scene::home + "/.Trash", scene::driveTrash(), scene::driveTrash(""),
                         fs::path(item).parent_path().string() + "/.QuarnTrash"};
  for (const std::string& folder : folders)
    for (const std::string& name : fault::names(folder)) places.push_back(folder + "/" + name);
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  std::erase_if(places, [&](const std::string& place) {
    return in(now, place) != whole || (place != item && before_.contains(place));
  });
  return places;
}

Lines Trial::placesOf(const std::string& item) const {
  return placesOf(item, trees::all());
}

std::size_t Trial::left() const {
  return static_cast<std::size_t>(std::count_if(job_.goes.begin(), job_.goes.end(),
                                                [](const std::string& item) { return scene::exists(item); }));
}

std::string Trial::lostContents() const {
  std::set<std::string> now;
  for (const auto& [path, facts] : trees::all()) now.insert(facts);
  std::string problems;
  for (const auto& [path, facts] : before_)
    if (!trees::isLink(facts) && !now.contains(facts)) problems += "LOST: " + path + "\n";
  return problems;
}

std::string Trial::treeProblems(const Tree& now) const {
  Tree expected = before_;
  std::string problems;
  for (const std::string& item : job_.goes) {
    const Lines places = placesOf(item, now);
    if (places.empty()) problems += "LOST: " + item + " stands whole nowhere\n";
    if (places.size() > 1) problems += "TWICE: " + item + "\n";
    if (!places.empty()) trees::move(expected, item, places.front());
  }
  return problems + trees::differences(expected, now);
}

// Whether the sessions tell what is so.

std::vector<Session> Trial::sessions() const {
  std::vector<Session> all;
  for (const std::string& name : trees::sessionNames()) {
    if (name == formerSession) continue;
    if (const auto session = trees::session(name)) all.push_back(*session);
  }
  return all;
}

/// What is gone stands in a session: as gone, or as what its run was just about to move.
bool Trial::isRecorded(const std::string& place) const {
  for (const Session& session : sessions())
    for (const auto& item : session.items)
      if (item.place == place && (item.succeeded || &item == &session.items.back())) return true;
  return false;
}

std::string Trial::itemProblems(const Session::Item& item, bool isLast, const Tree& now) const {
  if (std::count(job_.goes.begin(), job_.goes.end(), item.place) == 0)
    return "SESSION names what was to stay: " + item.place + "\n";
  const bool isThere = stands(now, item.place);
  const bool wasOutOfSight =
      std::count(outOfSight_.begin(), outOfSight_.end(), item.place) > 0 && !item.trashedTo;
  if (wasOutOfSight) return "";
  if (item.succeeded && isThere) return "SESSION says that it is gone: " + item.place + "\n";
  if (item.trashedTo && in(now, *item.trashedTo) != in(before_, item.place))
    return "SESSION says that it is at " + *item.trashedTo + ": " + item.place + "\n";
  if (item.succeeded && !item.trashedTo && !item.stashedTo)
    return "SESSION doesn't say where it is: " + item.place + "\n";
  if (item.succeeded && item.stashedTo) {
    const std::string place = trees::placeNow(item, before_);
    if (place.empty() || in(now, place) != in(before_, item.place))
      return "SESSION says that it was set aside: " + item.place + "\n";
  }
  // A later run may have taken it.
  if (!item.succeeded && !isThere && !isLast && !isRecorded(item.place))
    return "SESSION says that it is there: " + item.place + "\n";
  return "";
}

std::string Trial::sessionProblems(const Tree& now) const {
  std::string problems;
  for (const std::string& name : trees::sessionNames()) {
    const std::string folder = trees::sessionRoot + "/" + name;
    const auto session = trees::session(name);
    if (session && session->id != name) problems += "SESSION of another name: " + name + "\n";
    if (!session && scene::exists(folder + "/session.json"))
      problems += "SESSION doesn't parse: " + name + "\n";
    if (!session || name == formerSession) continue;
    for (const auto& item : session->items)
      problems += itemProblems(item, &item == &session->items.back(), now);
  }
  return problems;
}

std::string Trial::recordProblems(const Tree& now) const {
  std::string problems;
  for (const std::string& place : job_.goes)
    if (!stands(now, place) && !isRecorded(place))
      problems += "SESSION without what has gone: " + place + "\n";
  return problems;
}

// Words.

std::string Trial::progressProblems(const std::string& line, const Tree& now) const {
  const auto isGone = [&](const std::string& path) { return !stands(now, path); };
  const std::string path = line.substr(line.find_last_of('\t') + 1);
  if (line.starts_with("trash\t") && !isGone(path)) return "UNTRUE: " + line + "\n";
  // Why it stays stands behind it.
  const std::string kept = line.substr(0, line.find_last_of('\t'));
  if (line.starts_with("keep\t") && isGone(kept.substr(kept.find_last_of('\t') + 1)))
    return "UNTRUE: " + line + "\n";
  if (line.starts_with("session\t") && !trees::session(path)) return "UNTRUE: " + line + "\n";
  return "";
}

std::string Trial::wordProblems(const Outcome& outcome, const Tree& now) const {
  const bool hasError = campaign::count(outcome.said, "error\t") > 0;
  std::string problems;
  if (!outcome.wasEnded && outcome.status != (hasError ? 1 : 0))
    problems += "STATUS " + std::to_string(outcome.status) + "\n";
  bool hasShown = false;
  for (const std::string& line : campaign::linesOf(outcome.said)) {
    if (line.starts_with("progress\t")) problems += progressProblems(line.substr(9), now);
    if (!line.starts_with("id = \"")) continue;
    hasShown = true;
    const auto session = trees::session(line.substr(6, line.size() - 7));
    // What couldn't be recorded was shown instead.
    if (hasError) continue;
    if (!session) {
      problems += "UNTRUE: " + line + "\n";
    } else if (campaign::count(outcome.said, "[[items]]") != static_cast<long>(session->items.size())) {
      problems += "SAID another number of items than the session has\n";
    }
  }
  if (!outcome.wasEnded && !hasError && !hasShown) problems += "SAID neither that it was done nor why not\n";
  return problems;
}

std::string Trial::problems(const Outcome& outcome) const {
  const Tree now = trees::all();
  std::string problems =
      treeProblems(now) + sessionProblems(now) + recordProblems(now) + wordProblems(outcome, now);
  const auto listed = scene::quarn({"uninstall", "sessions"});
  if (listed.status != 0) problems += "SESSIONS can't be listed: " + listed.err;
  for (const Session& session : sessions()) {
    const std::string row = "session\t" + session.id + "\t" + application + "\tfalse\t" +
                            std::to_string(session.items.size()) + "\n";
    if (!campaign::says(listed.out, row)) problems += "SESSIONS without " + row;
  }
  return problems;
}

// What comes next.

/// As docs/uninstalling.md says: by the recipe, and by hand what a run was just moving when it ended.
std::string Trial::takenBack() const {
  auto all = sessions();
  for (auto session = all.rbegin(); session != all.rend(); ++session) {
    const auto run = scene::shell(". " QUARN_SOURCE "/tests/support/put-back.sh; put_back " + session->id);
    if (run.status != 0 || !run.err.empty()) return "the recipe fails: " + run.err;
    if (session->items.empty() || scene::exists(session->items.back().place)) continue;
    const std::string place = session->items.back().place;
    const Lines places = placesOf(place);
    if (places.size() == 1) fs::rename(places.front(), place);
  }
  // What they tell is past.
  for (const Session& session : all) fs::remove_all(trees::sessionRoot + "/" + session.id);
  const std::string left = trees::differences(before_, trees::all());
  return left.empty() ? "" : "after the way back:\n" + left;
}

std::string Trial::finished() const {
  const auto run = scene::quarn(job_.arguments);
  std::string problems = this->problems({run.status, run.out + run.err});
  if (run.status != 0) problems += "the next run fails\n";
  for (const std::string& item : job_.goes)
    if (scene::exists(item)) problems += "LEFT: " + item + "\n";
  return problems.empty() ? "" : problems + "it said:\n" + run.out + run.err;
}

std::string Trial::problemsOfNextRun() const {
  ageSessions();
  if (left() == 0) return takenBack();
  if (scene::exists(application)) return finished();
  const auto refused = scene::quarn(job_.arguments);
  std::string problems = this->problems({refused.status, refused.out + refused.err});
  if (!campaign::says(refused.err, "App not found: " + application))
    problems += "it isn't said that it is gone\n";
  problems += takenBack();
  return problems.empty() ? finished() : problems;
}

}  // namespace uninstalls
