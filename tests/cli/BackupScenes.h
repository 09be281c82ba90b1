#pragma once

#include <filesystem>

#include "tests/cli/Faults.h"

/// What the tests of backups share: sources with every kind of item, and the word in many names.
namespace backups {

using Lines = std::vector<std::string>;

inline const std::string source = "/Users/me/quarn";
inline const std::string app = "/Applications/Quarn.app";
inline const std::string folder = "/Volumes/X9/QuarnBackups";

inline scene::RunOptions from(const std::string& sourceRoot) {
  return {.environment = {"QUARN_SOURCE_ROOT=" + sourceRoot}};
}

inline scene::Run create(const scene::RunOptions& options = from(source)) {
  return scene::quarn({"backup", "create", "--target-drive", "/Volumes/X9"}, options);
}

inline scene::Run list(const std::string& drive = "/Volumes/X9") {
  return scene::quarn({"backup", "list", "--target-drive", drive});
}

inline void setScene() {
  scene::write(source + "/quarn.cpp", "a file with the word");
  scene::write(source + "/QuarnCore/deep/quarn/Quarn.h", "words all the way down");
  scene::write(source + "/.hidden/plain", "without the word");
  scene::makeFolder(source + "/quarn-empty");
  scene::link(source + "/quarn-link", "plain");
  scene::makeApp(app, {.executable = "quarn"}, 5'000);
}

/// The identifier that a run printed; the test fails if it printed anything else.
inline std::string idOf(const scene::Run& run) {
  const auto cut = run.out.find('\t', 7);
  if (run.status != 0 || !run.out.starts_with("backup\t") || cut == std::string::npos) return "";
  return run.out.substr(7, cut - 7);
}

}  // namespace backups
