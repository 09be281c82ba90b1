#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/uninstall/InstalledAppsScanner.h"
#include "QuarnCore/uninstall/RelatedFileScanner.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

/// What the tests of uninstalling share.
namespace quarn::uninstalling {

using Texts = std::vector<std::string>;

inline const std::string foo = "/Applications/Foo.app";
inline const std::string copyOfFoo = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
inline const std::string library = "/Users/me/Library";

inline std::optional<AppRecord> inspected(const std::string& path = foo) {
  return InstalledAppsScanner::inspect(hostPlatform(), Path(path));
}

/// A bundle whose property list has these keys, whatever their values are.
inline void makeBundle(const std::string& bundle, const std::string& keys) {
  scene::write(
      bundle + "/Contents/Info.plist",
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + keys + "</dict></plist>");
}

inline std::string key(const std::string& name, const std::string& text) {
  return "<key>" + name + "</key><string>" + text + "</string>";
}

inline std::vector<UninstallCandidate> scanned(const AppRecord& record) {
  return RelatedFileScanner::scan(hostPlatform(), record);
}

inline Texts pathsOf(const std::vector<UninstallCandidate>& candidates) {
  Texts paths;
  for (const auto& candidate : candidates) paths.push_back(candidate.path);
  return paths;
}

inline const UninstallCandidate& at(const std::vector<UninstallCandidate>& candidates,
                                    const std::string& path) {
  for (const auto& candidate : candidates) {
    if (candidate.path == path) return candidate;
  }
  throw std::out_of_range(path);
}

inline Texts namesIn(const std::string& folder) {
  Texts names;
  if (!scene::exists(folder)) return names;
  for (const auto& item : std::filesystem::directory_iterator(folder))
    names.push_back(item.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string inTrash(const std::string& name) {
  return "/Users/me/.Trash/" + name;
}

}  // namespace quarn::uninstalling
