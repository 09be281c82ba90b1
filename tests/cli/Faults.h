#pragma once

#include <algorithm>
#include <map>

#include "tests/cli/Expected.h"

/// What the fault tests share: one application to move, and what must hold whatever goes wrong.
namespace fault {

inline const std::string app = "/Applications/Foo.app";
inline const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
inline const std::string moved = apps + "/Foo.app";

inline scene::Run moveOne(const std::vector<std::string>& flags = {}) {
  std::vector<std::string> command = {"move", "one", app, "--yes"};
  command.insert(command.end(), flags.begin(), flags.end());
  scene::Run run = scene::quarn(command);
  run.out = expected::timeless(run.out);
  return run;
}

/// What is printed up to the outcome of a move of the bundle alone, whose size is `bytes`.
inline std::string started(const std::string& bytes, const std::string& drive = "X9") {
  return "Foo  ->  " + drive + "   " + bytes + " (1 jobs)\n[1/1] Foo (" + bytes + ")\n";
}

/// A whole run whose only job failed.
inline std::string refused(const std::string& bytes, const std::string& message,
                           const std::string& drive = "X9") {
  return expected::printed(started(bytes, drive) + "    FAIL: " + message + "\nfailed: 1\n");
}

/// A whole run whose only job failed when the copy was compared.
inline std::string unverified(const std::string& bytes, const std::string& reason) {
  return expected::printed(started(bytes) + "    verifying\n    FAIL: Verification failed: " + reason +
                           "\nfailed: 1\n");
}

/// A whole run that moved the bundle.
inline std::string succeeded(const std::string& bytes) {
  return expected::printed(started(bytes) + "    verifying\n    linking\n    ok in #.#s -> " + moved + "\n");
}

/// The names in a folder; empty for a missing one.
inline std::vector<std::string> names(const std::string& folder) {
  std::vector<std::string> found;
  if (!scene::exists(folder)) return found;
  for (const auto& item : std::filesystem::directory_iterator(folder)) {
    found.push_back(item.path().filename().string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

/// The content of every file below a folder, by its path there.
using Contents = std::map<std::string, std::string>;
inline Contents contents(const std::string& folder) {
  Contents files;
  for (const auto& item : std::filesystem::recursive_directory_iterator(folder)) {
    if (!item.is_regular_file() || item.is_symlink()) continue;
    files[item.path().lexically_relative(folder).string()] = scene::read(item.path().string());
  }
  return files;
}

/// The files whose content is found at none of the places. Nothing is lost if there is none.
inline std::vector<std::string> lost(const Contents& files, const std::vector<std::string>& places) {
  std::vector<std::string> missing;
  for (const auto& file : files) {
    const bool found = std::any_of(places.begin(), places.end(), [&file](const std::string& place) {
      const std::string path = place + "/" + file.first;
      return std::filesystem::is_regular_file(path) && scene::read(path) == file.second;
    });
    if (!found) missing.push_back(file.first);
  }
  return missing;
}

/// Everything in the room that no move of the application may touch, as it is now.
inline std::vector<std::string> foreign() {
  std::vector<std::string> lines = scene::tree(scene::home);
  std::erase_if(lines, [](const std::string& line) {
    return line.find("Application Support/Quarn") != std::string::npos || line.starts_with(".Trash");
  });
  for (const std::string folder : {"/Library", "/System", "/Users/Shared"}) {
    for (const std::string& line : scene::tree(folder)) lines.push_back(folder + " " + line);
  }
  return lines;
}

inline void replaceDitto(const std::string& body) {
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\n" + body + "\n");
}

/// The command that copies as the real tool does.
inline const std::string realDitto = "/usr/libexec/quarn-room/ditto \"$@\"";

}  // namespace fault
