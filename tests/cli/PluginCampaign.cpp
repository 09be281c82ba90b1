#include "tests/cli/PluginCampaign.h"

#include <filesystem>
#include <sstream>

namespace plugins {
namespace {

namespace fs = std::filesystem;

const std::string a = "/VST3/A.vst3", other = "/VST3/Other.vst3", linked = "/VST3/L.vst3";

void clear() {
  for (const std::string& folder : {system, scene::home, scene::drive}) {
    scene::makeFolder(folder);
    fs::permissions(folder, fs::perms::owner_all);
    for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
  }
  for (const std::string item : {"/Users/me/elsewhere/file", "/Users/me/Documents/letter"})
    scene::write(item, "foreign");
  makeBundle(system + other, "another one of the system");
  makeBundle(onDrive + other, "another one on the drive");
}

void setScene(const std::string& from) {
  clear();
  makeBundle(onDrive + "/AU/B.component", "old");
  if (from == source) {
    makeBundle(source + "/A.vst3", "new");
    makeBundle(source + "/deep/B.component", "new");
    makeBundle(source + "/C \"c\".clap", "new");
    makeBundle(system + a, "native");
    scene::link(system + "/Components/B.component", "/Users/me/elsewhere");
  } else {
    makeBundle(system + a, "native");
    makeBundle(system + "/Components/B.component", "native");
    makeBundle(onDrive + linked, "the only one");
    scene::link(system + linked, onDrive + linked);
  }
}

Lines fields(const std::string& line) {
  Lines found;
  std::istringstream text(line);
  for (std::string field; std::getline(text, field, '\t');) found.push_back(field);
  found.resize(3);
  return found;
}

}  // namespace

Lines Job::arguments() const {
  return {"install", "plugins", "install", source, "--target-drive", scene::drive, "--yes"};
}

Lines Job::words() const {
  Lines all = arguments();
  all.insert(all.begin(), "quarn");
  return all;
}

std::string Job::line() const {
  return "quarn install plugins install " + source + " --target-drive " + scene::drive + " --yes";
}

Job fromFolder() {
  return {"folder", source, 0};
}

Job fromSystem() {
  // The others of the system are sources, too.
  return {"system", system, 1};
}

void quickenTools() {
  scene::replaceTool("/usr/local/bin/gantrix", "#!/bin/sh\nexec \"$@\"\n");
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\nexec /usr/libexec/quarn-room/quarn-ditto \"$@\"\n");
  scene::replaceTool("/usr/bin/xattr", "#!/bin/sh\nexit 0\n");
  scene::replaceTool("/usr/bin/codesign",
                     "#!/bin/sh\nmkdir -p \"$5/Contents/_CodeSignature\" && echo seal "
                     ">\"$5/Contents/_CodeSignature/CodeResources\"\n");
}

void slowDown(const std::string& tool) {
  const std::string work = tool == "/usr/local/bin/gantrix"
                               ? "\"$@\""
                               : "/usr/libexec/quarn-room/" + fs::path(tool).filename().string() + " \"$@\"";
  scene::replaceTool(tool, "#!/bin/sh\nsleep 0.03; " + work + "; code=$?; sleep 0.03; exit $code\n");
}

Trial::Trial(const Job& job) : job_(job) {
  setScene(job.source);
  const bool isSystem = job.source == system;
  addPlugin(isSystem ? system + a : source + "/A.vst3", system + a, onDrive + a, isSystem);
  addPlugin(isSystem ? system + "/Components/B.component" : source + "/deep/B.component",
            system + "/Components/B.component", onDrive + "/AU/B.component", isSystem);
  if (isSystem) {
    addPlugin(onDrive + linked, system + linked, onDrive + linked, true);
    addPlugin(system + other, system + other, onDrive + other, true);
  } else {
    const std::string c = "/CLAP/C \"c\".clap";
    addPlugin(source + "/C \"c\".clap", system + c, onDrive + c, false);
    for (const std::string& item : {source, system + other, onDrive + other})
      foreign_[item] = scene::tree(item);
  }
  for (const std::string item : {"/Users/me/elsewhere", "/Users/me/Documents"})
    foreign_[item] = scene::tree(item);
}

void Trial::addPlugin(const std::string& from, const std::string& link, const std::string& external,
                      bool isOnlyCopy) {
  Plugin plugin{.link = link, .external = external, .whole = scene::tree(from), .isOnlyCopy = isOnlyCopy};
  if (!scene::isLink(link) && scene::exists(link)) plugin.native = scene::tree(link);
  plugins_[external] = plugin;
}

std::string Trial::losses() const {
  std::string found;
  for (const auto& [item, tree] : foreign_) {
    if (!scene::exists(item) || scene::tree(item) != tree) found += "CHANGED: " + item + "\n";
  }
  for (const auto& [external, plugin] : plugins_) {
    if (isCopied(plugin)) continue;
    const bool isNative = !scene::isLink(plugin.link) && scene::exists(plugin.link) &&
                          scene::tree(plugin.link) == plugin.native;
    if (plugin.isOnlyCopy && !isNative) found += "LOST: " + external + "\n";
    if (!plugin.native.empty() && !isNative) found += "REPLACED BY NOTHING: " + plugin.link + "\n";
  }
  return found;
}

std::string Trial::lies(const Outcome& outcome) const {
  std::string found;
  std::size_t linkedOnes = 0, failed = 0;
  std::optional<std::string> count;
  std::istringstream lines(outcome.said);
  for (std::string line; std::getline(lines, line);) {
    const Lines field = fields(line);
    if (field[0] == "  copied" && !(plugins_.contains(field[1]) && isCopied(plugins_.at(field[1]))))
      found += "NOT COPIED: " + line + "\n";
    if (field[0] == "  symlinked") {
      ++linkedOnes;
      const std::string to = field[2].substr(3);
      if (scene::target(field[1]) != to || !isCopied(plugins_.at(to))) found += "NOT LINKED: " + line + "\n";
    }
    if (line.starts_with("  [failed] ")) ++failed;
    if (line.starts_with("  [failed] ") && line.ends_with(": ")) found += "NO REASON: " + line + "\n";
    if (line.starts_with("Installed: ")) count = line;
  }
  if (outcome.wasEnded) return found;
  const std::size_t installed = count ? std::stoul(count->substr(11)) : 0;
  if (installed > linkedOnes) found += "INSTALLED? " + *count + "\n";
  const bool hasError = outcome.said.find("error\t") != std::string::npos;
  if ((outcome.status == 0) == hasError) found += "STATUS " + std::to_string(outcome.status) + "\n";
  if (failed > 0 && !hasError) found += "FAILED AND NOT TOLD\n";
  if (!count && !hasError && !outcome.wasBlind) found += "SAID NOTHING\n";
  return found;
}

std::string Trial::problems(const Outcome& outcome) const {
  return losses() + lies(outcome);
}

std::string Trial::problemsOfNextRun() const {
  // A plug-in whose link a kill prevented isn't found in the system any more.
  std::map<std::string, bool> wereThere;
  for (const auto& [external, plugin] : plugins_)
    wereThere[external] = job_.source == source || scene::exists(plugin.link);
  const auto again = scene::quarn(job_.arguments());
  std::string problems = this->problems({again.status, again.out + again.err});
  for (const auto& [external, plugin] : plugins_) {
    if (!wereThere[external]) continue;
    if (scene::target(plugin.link) != external) problems += "NO LINK: " + plugin.link + "\n";
    if (!isCopied(plugin)) problems += "NOT WHOLE: " + external + "\n";
  }
  if (job_.failures == 0 && again.status != 0) problems += "STATUS " + std::to_string(again.status) + "\n";
  return problems.empty() ? "" : problems + "it said:\n" + again.out + again.err;
}

}  // namespace plugins
