#pragma once

#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/dedupe/AppDedupeService.h"
#include "tests/support/Scene.h"

/// What the tests of duplicates have in common: a real application, and a launcher beside it.
namespace quarn::deduping {

using Lines = std::vector<std::string>;

inline const std::string app = "/Applications/Foo.app";
inline const std::string launcher = "/Applications/Foo Launcher.app";
inline const std::string own = "/Users/me/Applications";
inline const std::string copy = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
inline const std::string targetFile = "/Contents/Resources/ExternalAppTarget.txt";

inline void makeDuplicate() {
  scene::makeApp(app);
  scene::makeLauncher(launcher, app);
}

/// An application whose property list is `text`.
inline void makeWithPlist(const std::string& bundle, const std::string& text) {
  scene::write(bundle + "/Contents/Info.plist", text);
}

inline AppDedupePlan planned(const ReadOnlyPlatform& platform = hostPlatform()) {
  return AppDedupeService::plan(platform, AppDedupeService::applicationRoots(platform));
}

/// Each group in a few lines.
inline Lines told(const AppDedupePlan& plan) {
  Lines lines;
  for (const AppDedupeGroup& group : plan.groups) {
    lines.push_back(group.displayName + " (" + group.bundleIdentifier + ")");
    lines.push_back("keep " + group.keep.path);
    for (const AppDedupeItem& item : group.remove) lines.push_back("remove " + item.path);
  }
  return lines;
}

inline const Lines duplicateTold = {"Foo (com.example.foo)", "keep " + app, "remove " + launcher};

/// What each item came to: its path, and where it is now or why it stayed.
inline Lines told(const AppDedupeRunResult& result) {
  Lines lines;
  for (const auto& item : result.movedItems) {
    lines.push_back(item.originalPath + (item.succeeded ? " -> " : ": ") + item.trashedTo.value_or("") +
                    item.error.value_or(""));
  }
  return lines;
}

}  // namespace quarn::deduping
