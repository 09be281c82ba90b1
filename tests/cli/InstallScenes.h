#pragma once

#include <ctime>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

#include "tests/cli/Expected.h"
#include "tests/support/Packages.h"
#include "tests/support/Patterns.h"

/// What the tests of the install commands share: sources, options, sessions, and running the program.
namespace installs {

using Words = std::vector<std::string>;

inline const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
inline const std::string support = scene::home + "/Library/Application Support/Quarn";
inline const std::string sessionsRoot = support + "/InstallerSessions";
inline const std::string optionsRoot = support + "/InstallerOptions";
inline const std::string temporary = "/tmp/quarn-test";

inline scene::Run quarn(Words words, scene::RunOptions options = {}) {
  scene::makeFolder(temporary);
  words.insert(words.begin(), "install");
  options.environment.push_back("TMPDIR=" + temporary);
  options.mayMount = true;
  return scene::quarn(words, options);
}

/// `install run` onto the drive, by the option that lets only trusted sources be installed.
inline scene::Run run(const std::string& source, const Words& more = {},
                      const std::string& option = "trusted-external") {
  Words words = {"run", source, "--option", option, "--target-drive", scene::drive};
  words.insert(words.end(), more.begin(), more.end());
  return quarn(words);
}

/// The same by the option that lets everything be installed.
inline scene::Run runLenient(const std::string& source, const Words& more = {}) {
  return run(source, more, "tracked-script-external");
}

/// What is shown with each identifier that is made from the time as "ID", and each number of paths as "N".
inline std::string timeless(const scene::Run& done) {
  std::string text = expected::shown(done);
  text = patterns::replace(text, "[0-9]{8}_[0-9]{6}", "ID");
  return patterns::replace(text, "(\tfiles\t)[0-9]+", "$1N");
}

inline void orders(const std::string& tool, const std::string& text) {
  scene::write("/var/db/quarn-room-tools/" + tool, text);
}

inline void noOrders() {
  std::filesystem::remove_all("/var/db/quarn-room-tools");
}

/// An option file with all its keys, each of which `keys` can replace or add. An empty value leaves it out.
inline std::string optionFile(const std::string& id, const std::map<std::string, std::string>& keys = {}) {
  std::map<std::string, std::string> all = {{"id", "\"" + id + "\""},
                                            {"label", "\"Label of " + id + "\""},
                                            {"strategy", "\"own\""},
                                            {"sourceKinds", "[\"app\"]"},
                                            {"allowUntrustedPackages", "false"},
                                            {"externalRootName", "\"ExternalQuarn\""},
                                            {"applicationLinkRoot", "\"/Applications\""},
                                            {"track", "true"},
                                            {"relocateSafeApps", "true"}};
  for (const auto& [key, value] : keys) all[key] = value;
  std::string text;
  for (const auto& [key, value] : all)
    if (!value.empty()) text.append(key).append(" = ").append(value).append("\n");
  return text;
}

inline void writeOption(const std::string& id, const std::map<std::string, std::string>& keys = {}) {
  scene::write(optionsRoot + "/" + id + ".toml", optionFile(id, keys));
}

/// An archive of a folder that bsdtar(1) makes; its path.
inline std::string archive(const std::string& format, const std::string& folder, const std::string& file,
                           const Words& more = {}) {
  Words command = {"/usr/bin/bsdtar", "--format", format};
  command.insert(command.end(), more.begin(), more.end());
  command.insert(command.end(), {"-cf", file, "-C", folder, "."});
  const auto made = scene::run(command);
  if (made.status != 0) scene::fail("can't make " + file + ": " + made.err);
  return file;
}

inline std::string image(const std::string& folder, const std::string& file = "/Users/me/Image.dmg") {
  return archive("iso9660", folder, file);
}

inline std::string zip(const std::string& folder, const std::string& file = "/Users/me/Archive.zip") {
  return archive("zip", folder, file);
}

/// A trusted package that brings an application and a helper; its path.
inline std::string package(const std::string& name = "New") {
  const std::string payload = "/Users/me/payload of " + name;
  scene::makeApp(payload + "/Applications/" + name + ".app", {.identifier = "com.example." + name});
  scene::write(payload + "/Library/LaunchAgents/com.example." + name + ".plist", "helper");
  const std::string file = "/Users/me/" + name + ".pkg";
  packages::component(file, {.identifier = "com.example.pkg." + name, .payload = payload});
  packages::sign(file);
  return file;
}

inline Words namesIn(const std::string& folder) {
  Words names;
  if (!scene::exists(folder)) return names;
  for (const auto& item : std::filesystem::directory_iterator(folder))
    names.push_back(item.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string launcherTarget(const std::string& launcher) {
  return scene::read(launcher + "/Contents/Resources/ExternalAppTarget.txt");
}

/// JSON of a session, each of whose values `keys` can replace or add. An empty value leaves a key out.
inline std::string sessionFile(const std::string& id, const std::map<std::string, std::string>& keys = {}) {
  std::map<std::string, std::string> all = {{"id", "\"" + id + "\""},
                                            {"sourcePath", "\"/Users/me/" + id + ".pkg\""},
                                            {"optionID", "\"trusted-external\""},
                                            {"createdAt", "800000000"},
                                            {"actions", "[]"},
                                            {"changedPaths", "[]"},
                                            {"newReceipts", "[]"},
                                            {"status", "\"done\""},
                                            {"targetDrivePath", "\"/Volumes/X9\""},
                                            {"pendingExternalizeApps", "[]"}};
  for (const auto& [key, value] : keys) all[key] = value;
  std::string text;
  for (const auto& [key, value] : all)
    if (!value.empty()) text += (text.empty() ? "{\"" : ",\"") + key + "\":" + value;
  return text + "}";
}

inline void writeSession(const std::string& id, const std::map<std::string, std::string>& keys = {}) {
  scene::write(sessionsRoot + "/" + id + "/session.json", sessionFile(id, keys));
}

/// The texts of the sessions on the disk, in the order of their identifiers.
inline Words savedSessions() {
  Words texts;
  for (const std::string& name : namesIn(sessionsRoot))
    texts.push_back(scene::read(sessionsRoot + "/" + name + "/session.json"));
  return texts;
}

/// Expects that the only session is one of a run that failed, and removes it.
inline void expectOneFailedSession(const std::string& source) {
  const Words sessions = savedSessions();
  ASSERT_EQ(sessions.size(), 1U) << testing::PrintToString(sessions);
  std::string escaped = patterns::replace(source, "/", "\\/");
  for (const std::string& key :
       {std::string("\"status\":\"failed\""), std::string("\"actions\":[]"),
        std::string("\"changedPaths\":[]"), std::string("\"newReceipts\":[]"),
        std::string("\"pendingExternalizeApps\":[]"), "\"sourcePath\":\"" + escaped + "\""})
    EXPECT_NE(sessions[0].find(key), std::string::npos) << key << " in " << sessions[0];
  std::filesystem::remove_all(sessionsRoot);
}

/// Everything that a person has, without the records of this tool and the Trash.
inline Words wholeTree() {
  Words all;
  for (const std::string top : {"/Applications", "/Library", "/Users", "/Volumes"}) {
    for (const std::string& line : scene::tree(top)) {
      if (line.find("Application Support/Quarn") != std::string::npos) continue;
      if (line.find(".Trash") != std::string::npos) continue;
      all.push_back(top + " " + line);
    }
  }
  return all;
}

/// Waits until the clock shows another second, so that the next session gets another identifier.
inline void nextSecond() {
  const auto begin = std::time(nullptr);
  while (std::time(nullptr) == begin) ::usleep(5000);
}

/// Tests that need archives, which bsdtar(1) makes.
class WithArchives : public testing::Test {
 protected:
  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
  }
};

}  // namespace installs
