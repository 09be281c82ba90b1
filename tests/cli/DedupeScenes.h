#pragma once

#include <string>
#include <vector>

#include "tests/cli/Expected.h"
#include "tests/support/Patterns.h"

/// What the tests of the dedupe commands share.
namespace dedupes {

using Lines = std::vector<std::string>;

inline const std::string app = "/Applications/Foo.app";
inline const std::string launcher = "/Applications/Foo Launcher.app";
inline const std::string own = "/Users/me/Applications";
inline const std::string trash = "/Users/me/.Trash";
inline const std::string targetFile = "/Contents/Resources/ExternalAppTarget.txt";
inline const std::string reason =
    "Top-level launcher duplicates a real local app with the same bundle identifier.";

/// A real application with two launchers beside it, one of which records no application, and one of another
/// application that exists. Another real application has a launcher in the user's own folder.
inline void setScene() {
  scene::makeApp(app, {.displayName = "The \"Foo\""});
  scene::makeLauncher(launcher, app);
  scene::makeLauncher("/Applications/Without.app", "");
  scene::makeApp("/Volumes/X9/Foo.app");
  scene::makeLauncher("/Applications/Elsewhere.app", "/Volumes/X9/Foo.app");
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
  scene::makeApp(own + "/Bar.app", {.identifier = "com.example.bar.externallauncher"}, 70'000);
}

inline scene::Run dedupe(Lines words) {
  words.insert(words.begin(), "dedupe");
  return scene::quarn(words);
}

/// Whole, but for the moment of the scan.
inline std::string timeless(const scene::Run& run) {
  const std::string moment("scannedAt = \"[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z\"");
  return patterns::replace(expected::shown(run), moment, "scannedAt = \"NOW\"");
}

inline std::string said(int status, const std::string& out) {
  return expected::shown({status, out, ""});
}

inline std::string bytes(const std::string& path) {
  return std::to_string(expected::allocated(path));
}

}  // namespace dedupes
