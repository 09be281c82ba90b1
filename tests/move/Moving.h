#pragma once

#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/move/MoverEngine.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

/// What the tests of the mover say to each other.
namespace quarn::moving {

inline const std::string appsFolder = scene::drive + "/ExternalQuarn/Apps";
using scene::driveTrash;

inline const std::string app = "/Applications/Foo.app";
inline const std::string movedApp = appsFolder + "/Foo.app";
inline const std::string support = scene::home + "/Library/Application Support/Foo";
inline const std::string supportFolder = scene::drive + "/ExternalQuarn/Data/Library/Application Support";
inline const std::string movedSupport = supportFolder + "/Foo";

/// Moves; what a person would be told, "nothing" for success.
inline std::string move(const Platform& platform = hostPlatform(), const std::string& source = app,
                        const std::string& folder = appsFolder, bool quitRunning = false) {
  Platform mine = platform;
  return thrown([&] {
    MoverEngine::moveAndLink(mine, Path(source), Path(folder), quitRunning, [](const JobStatus&) {}, {});
  });
}

inline std::string restore(const Platform& platform = hostPlatform(), const std::string& link = app) {
  Platform mine = platform;
  return thrown([&] { MoverEngine::restore(mine, Path(link)); });
}

}  // namespace quarn::moving
