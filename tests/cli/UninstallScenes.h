#pragma once

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/Expected.h"
#include "tests/support/Scene.h"

/// What the tests of the group "uninstall" share.
namespace uninstalls {

using Words = std::vector<std::string>;

inline const std::string foo = "/Applications/Foo.app";
inline const std::string copyOfFoo = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
inline const std::string library = scene::home + "/Library";
inline const std::string trash = scene::home + "/.Trash";
inline const std::string sessions = library + "/Application Support/Quarn/UninstallSessions";

inline scene::Run quarn(Words words) {
  words.insert(words.begin(), "uninstall");
  return scene::quarn(words);
}

inline std::string answerTo(const Words& words) {
  return expected::shown(quarn(words));
}

/// A number of bytes as the reports tell it.
inline std::string bytes(const std::string& path) {
  return std::to_string(expected::allocated(path));
}

/// The identifier of the only session.
inline std::string onlySession() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(sessions))
    names.push_back(entry.path().filename().string());
  return names.size() == 1 ? names.front() : "not one session";
}

inline void writeSession(const std::string& id, const std::string& members) {
  scene::write(sessions + "/" + id + "/session.json", "{\"id\":\"" + id + "\",\"appPath\":\"/Applications/" +
                                                          id + ".app\",\"appName\":\"" + id + "\"," +
                                                          members + "}");
}

}  // namespace uninstalls
